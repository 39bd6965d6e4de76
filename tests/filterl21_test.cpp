// The line-21 decoder, by behaviour: the three caption modes, the channel
// gate, repeated pairs, byte assembly, and the write position at its limits.

#include <gtest/gtest.h>

#include <initializer_list>

#include "line21/inl21.h"
#include "support/l21fakes.h"

namespace zelvan {
namespace {

using testing::FakeL21View;
using testing::feedL21;

std::string bytes(std::initializer_list<int> codes) {
    std::string s;
    for (int c : codes) s += static_cast<char>(c);
    return s;
}
std::string pair(int f, int s) {
    return bytes({f, s});
}
std::string twice(int f, int s) {
    return pair(f, s) + pair(f, s);
}

// Commands of channel index 0, first field.
const std::string kRCL = pair(0x14, 0x20);
const std::string kBS = pair(0x14, 0x21);
const std::string kRU2 = pair(0x14, 0x25);
const std::string kRU3 = pair(0x14, 0x26);
const std::string kRDC = pair(0x14, 0x29);
const std::string kEDM = pair(0x14, 0x2C);
const std::string kCR = pair(0x14, 0x2D);
const std::string kENM = pair(0x14, 0x2E);
const std::string kEOC = pair(0x14, 0x2F);
const std::string kRow15 = pair(0x14, 0x70);
const std::string kRow1 = pair(0x11, 0x40);

struct DecoderTest : ::testing::Test {
    InL21 m;
    std::string out;

    std::int16_t feed(const std::string& b) {
        std::int16_t style = 0;
        for (char c : b) style = m.FilterL21(std::string(1, c), out);
        return style;
    }
    std::int16_t one(int c) { return m.FilterL21(std::string(1, static_cast<char>(c)), out); }
    std::string row(std::int16_t bank, std::int16_t r) {
        std::string s = m.rowString(bank, r);
        return s.erase(s.find_last_not_of(' ') + 1);
    }
    // Channel CC1 active, pop-on, write position at row 1, column `col`.
    void startAt(int col) {
        feed(kRCL + kRow1);
        for (int i = 1; i < col; ++i) feed(".");
        ASSERT_EQ(m.iCol, col);
    }
};

// --- pop-on ---

TEST_F(DecoderTest, PopOnCaptionLoadsOffScreenAndFlipsIntoViewOnce) {
    const auto styles = feedL21(
        m, twice(0x14, 0x20) + twice(0x14, 0x2E) + twice(0x14, 0x70) + "Hi" + twice(0x14, 0x2F));
    EXPECT_TRUE(m.bChannelActive);
    EXPECT_EQ(row(2, 15), "Hi");
    EXPECT_EQ(m.iDM, 2);
    EXPECT_EQ(m.iNM, 1);
    EXPECT_EQ(styles[styles.size() - 3], 1) << "the first EOC flips";
    EXPECT_EQ(styles.back(), 0) << "the doubled EOC is dropped";
    EXPECT_EQ(m.getExternalTextL21(15), "Hi");
    EXPECT_EQ(m.iRow, 1);
    EXPECT_EQ(m.iCol, 1);
    for (std::size_t i = 0; i + 3 < styles.size(); ++i) EXPECT_EQ(styles[i], 0) << i;
}

TEST_F(DecoderTest, TextBeforeTheFlipStaysOffTheDisplayedBank) {
    feed(kRCL + kRow15 + "Hello");
    EXPECT_EQ(m.getExternalTextL21(15), "");
    EXPECT_EQ(row(m.iNM, 15), "Hello");
}

TEST_F(DecoderTest, FlipOfAnEmptyBankBlanksTheDisplay) {
    feed(kRCL + kRow15 + "One" + kEOC + kENM);
    EXPECT_EQ(m.getExternalTextL21(15), "One");
    EXPECT_EQ(feed(kEOC), 1);
    for (std::int16_t i = 1; i <= 15; ++i) EXPECT_EQ(m.getExternalTextL21(i), "");
}

TEST_F(DecoderTest, WriteBankStaysTheSamePhysicalBankUntilTheNextModeCommand) {
    feed(kRCL + kRow15 + "A" + kEOC + kRow1 + "B");
    EXPECT_EQ(m.getExternalTextL21(1), "B") << "no RCL: writing goes on in the bank now shown";
    feed(kRCL + kRow1 + "C");
    EXPECT_EQ(m.iWriteBank, m.iNM);
    EXPECT_EQ(row(m.iNM, 1), "C");
}

// --- roll-up ---

TEST_F(DecoderTest, RollUpLineEndsAtCrAndIsErasedByTheNextByte) {
    const auto styles = feedL21(m, twice(0x14, 0x25) + twice(0x14, 0x70) + "AB");
    EXPECT_EQ(m.iMode, InL21::kRollUp);
    EXPECT_EQ(m.iWriteBank, m.iDM);
    EXPECT_EQ(m.getExternalTextL21(15), "AB") << "roll-up text is on show as it comes";
    EXPECT_EQ(feed(kCR), 3);
    EXPECT_EQ(out, "AB" + std::string(30, ' ')) << "the line carries all 32 columns";
    EXPECT_EQ(m.getExternalTextL21(15), "AB");
    EXPECT_EQ(one(0x14), 0);
    EXPECT_EQ(m.getExternalTextL21(15), "") << "the first byte after a CR erases";
    EXPECT_EQ(one(0x2D), 0) << "the doubled CR is a repeat";
    EXPECT_FALSE(m.bErasePending);
}

TEST_F(DecoderTest, EraseAfterCrHappensEvenForADroppedByte) {
    feed(kRU2 + kRow15 + "AB" + kCR);
    one(0x01);
    EXPECT_EQ(m.getExternalTextL21(15), "");
    EXPECT_TRUE(m.bIgnoreText);
}

TEST_F(DecoderTest, TextAfterCrWithoutRowCodeGoesToRow15Column1) {
    feed(kRU2 + pair(0x11, 0x40) + "first" + kCR + "second");
    EXPECT_EQ(m.getExternalTextL21(15), "second");
    EXPECT_EQ(m.getExternalTextL21(1), "");
    EXPECT_EQ(m.iCol, 7);
}

TEST_F(DecoderTest, EnteringRollUpErasesBothBanksButChangingDepthDoesNot) {
    feed(kRCL + kRow15 + "shown" + kEOC + kRCL + kRow15 + "loaded");
    feed(kRU2);
    EXPECT_EQ(m.memoryText(1).find_first_not_of(" \r\n"), std::string::npos);
    EXPECT_EQ(m.memoryText(2).find_first_not_of(" \r\n"), std::string::npos);
    feed(kRow15 + "kept");
    feed(kRU3 + pair(0x14, 0x27));
    EXPECT_EQ(m.getExternalTextL21(15), "kept");
}

TEST_F(DecoderTest, CrOutsideRollUpDoesNothing) {
    feed(kRCL + kRow1 + "x");
    EXPECT_EQ(feed(kCR), 0);
    EXPECT_FALSE(m.bErasePending);
    EXPECT_EQ(m.iRow, 1);
    feed(kRDC + "y");
    EXPECT_EQ(feed(kCR), 0);
    EXPECT_EQ(m.getExternalTextL21(1), " y") << "RDC keeps the write position";
}

TEST_F(DecoderTest, CrOfTheSecondFieldCodeEndsTheLineWithoutTextOrTimer) {
    VirtualDispatch dispatch;
    FakeL21View window(m, dispatch);
    m.view = &window;
    feed(kRU2 + kRow15 + "AB");
    EXPECT_EQ(feed(pair(0x15, 0x2D)), 3);
    EXPECT_EQ(out, "");
    EXPECT_FALSE(window.timer->enabled());
    EXPECT_TRUE(m.bErasePending);
    EXPECT_EQ(m.iRow, 15);
}

// The flush timer queues 0x14 0x2D; here it goes straight into the decoder.
struct FlushTimerTest : DecoderTest {
    VirtualDispatch dispatch;
    FakeL21View window{m, dispatch};
    std::vector<std::int16_t> flushStyles;

    void SetUp() override {
        m.view = &window;
        window.onFlush = [this] {
            const auto styles = feedL21(m, kCR);
            flushStyles.insert(flushStyles.end(), styles.begin(), styles.end());
        };
    }
};

TEST_F(FlushTimerTest, NotRunningUntilTheFirstFinishedLine) {
    feed(kRU2 + kRow15 + "partial");
    dispatch.advance(20000);
    EXPECT_EQ(window.firings, 0);
    EXPECT_EQ(feed(kCR), 3);
    EXPECT_TRUE(window.timer->enabled());
    EXPECT_EQ(window.timer->interval(), 5000);
}

TEST_F(FlushTimerTest, PauseEndsAPartialLineAndSilenceAddsNoEmptyLines) {
    feed(kRU2 + kRow15 + "one" + kCR + "tw");
    dispatch.advance(4999);
    EXPECT_EQ(window.firings, 0);
    dispatch.advance(1);
    EXPECT_EQ(window.firings, 1);
    EXPECT_EQ(flushStyles, (std::vector<std::int16_t>{0, 3}));
    EXPECT_EQ(m.getExternalTextL21(15), "tw");
    flushStyles.clear();
    dispatch.advance(15000);
    EXPECT_EQ(window.firings, 4);
    EXPECT_EQ(flushStyles, std::vector<std::int16_t>(6, 0)) << "each further CR is a repeat";
}

TEST_F(FlushTimerTest, EachFinishedLinePushesTheNextFiringAway) {
    feed(kRU2 + kRow15 + "one" + kCR);
    dispatch.advance(4000);
    feed("two" + kCR);
    dispatch.advance(4000);
    EXPECT_EQ(window.firings, 0);
    dispatch.advance(1000);
    EXPECT_EQ(window.firings, 1);
}

// --- paint-on ---

TEST_F(DecoderTest, PaintOnWritesIntoTheDisplayedBankInPlace) {
    feed(kRCL + kRow15 + "loaded" + kEOC + kRCL + kRow1 + "next");
    const auto styles = feedL21(m, kRDC + kRow15 + "XY");
    EXPECT_EQ(m.iMode, InL21::kPaintOn);
    EXPECT_EQ(m.getExternalTextL21(15), "XYaded") << "RDC erases nothing";
    EXPECT_EQ(row(m.iNM, 1), "next");
    EXPECT_EQ(styles, std::vector<std::int16_t>(6, 0));
}

// --- EDM, ENM ---

TEST_F(DecoderTest, EdmBlanksTheDisplayInEveryModeAndGoesToRow1) {
    for (const std::string& mode : {kRCL, kRDC, kRU2}) {
        m.initL21();
        feed(mode + kRow15 + pair(0x17, 0x22));
        m.fillMemory(m.iDM);
        m.fillMemory(m.iNM);
        EXPECT_EQ(feed(kEDM), 1);
        EXPECT_EQ(m.getExternalTextL21(1), "");
        EXPECT_EQ(row(m.iNM, 1), std::string(32, m.iNM == 1 ? '1' : '2'));
        EXPECT_EQ(m.iRow, 1);
        EXPECT_EQ(m.iCol, 1);
    }
}

TEST_F(DecoderTest, EnmErasesOnlyTheNonDisplayedBank) {
    m.fillMemory(1);
    m.fillMemory(2);
    EXPECT_EQ(feed(kENM), 0);
    EXPECT_EQ(m.getExternalTextL21(1), std::string(32, '1'));
    EXPECT_EQ(row(2, 1), "");
}

// --- the channel gate ---

TEST_F(DecoderTest, TextBeforeTheFirstCommandIsDroppedUntouched) {
    VirtualDispatch dispatch;
    FakeL21View window(m, dispatch);
    m.view = &window;
    out = "left alone";
    EXPECT_EQ(one('A'), 0);
    EXPECT_EQ(out, "left alone");
    EXPECT_EQ(m.memoryText(2).find('A'), std::string::npos);
    EXPECT_TRUE(window.refreshes.empty());
}

TEST_F(DecoderTest, ActiveChannelRefreshesBothPanesForEveryByte) {
    VirtualDispatch dispatch;
    FakeL21View window(m, dispatch);
    m.view = &window;
    feed(kRCL);
    EXPECT_EQ(window.refreshes, (std::vector<std::string>{"NM", "DM"}));
    feed(kRow15 + "H");
    EXPECT_EQ(window.refreshes.size(), 8u) << "first bytes are refreshed too";
    EXPECT_EQ(window.rtbNM.substr(14 * 34, 1), "H");
}

TEST_F(DecoderTest, SecondChannelTakesOnlyItsOwnCommands) {
    m.iChannel = 1;
    feed(kRCL + kRow15 + "one");
    EXPECT_FALSE(m.bChannelActive);
    EXPECT_EQ(row(2, 15), "");
    feed(pair(0x1C, 0x20) + pair(0x1C, 0x70) + "two" + pair(0x1D, 0x2F));
    EXPECT_TRUE(m.bChannelActive);
    EXPECT_EQ(m.getExternalTextL21(15), "two");
    feed(kCR);
    EXPECT_FALSE(m.bChannelActive) << "a flush pair of the first channel shuts the gate";
    feed(pair(0x1C, 0x2C) + "x");
    EXPECT_TRUE(m.bChannelActive);
    EXPECT_EQ(m.getExternalTextL21(1), "x");
}

TEST_F(DecoderTest, SecondChannelRowCodesWorkButItsOtherCodesAreDropped) {
    m.iChannel = 1;
    feed(pair(0x1C, 0x20) + pair(0x1D, 0x60) + "a");
    EXPECT_EQ(m.iRow, 6);
    feed(pair(0x19, 0x20) + pair(0x19, 0x37) + pair(0x1F, 0x21) + pair(0x1A, 0x40));
    EXPECT_EQ(row(2, 6), "a");
    EXPECT_EQ(m.iRow, 6);
    EXPECT_EQ(m.iCol, 2);
}

TEST_F(DecoderTest, ChannelsWithoutCommandsNeverTakeText) {
    for (std::int16_t channel = 2; channel <= 8; ++channel) {
        m.initL21();
        m.iChannel = channel;
        feed(kRCL + pair(0x1C, 0x20) + kRow1 + "abc" + pair(0x1C, 0x2F) + kEOC);
        EXPECT_FALSE(m.bChannelActive);
        EXPECT_EQ((m.memoryText(1) + m.memoryText(2)).find_first_not_of(" \r\n"), std::string::npos)
            << channel;
    }
}

TEST_F(DecoderTest, RowCodesAndSpecialCharactersActOnAnInactiveChannel) {
    m.iChannel = 1;
    feed(kRow15);
    EXPECT_EQ(m.iRow, 15);
    feed("dropped" + pair(0x11, 0x37));
    EXPECT_EQ(row(2, 15), "\x95") << "a special character is stored whatever the gate says";
    EXPECT_EQ(m.iCol, 2);
}

// --- repeated pairs ---

TEST_F(DecoderTest, APairRepeatedAnyNumberOfTimesActsOnce) {
    feed(kEOC + kEOC + kEOC);
    EXPECT_EQ(m.iDM, 2);
    feed(kRCL + kRow1 + "x" + kEOC);
    EXPECT_EQ(m.iDM, 1);
}

TEST_F(DecoderTest, AcceptedTextEndsTheRepeat) {
    feed(kEOC + "x" + kEOC);
    EXPECT_EQ(m.iDM, 1) << "two flips";
}

TEST_F(DecoderTest, RepeatSurvivesIgnoringStateAndDroppedText) {
    feed(kEOC + bytes({0x01}) + "noise" + kEOC);
    EXPECT_EQ(m.iDM, 2);
    // A mid-row code acts on a shut gate, so a repeat that wasn't caught would show.
    m.initL21();
    feed(kRCL + kRow1 + pair(0x1C, 0x20) + pair(0x11, 0x20) + "dropped" + pair(0x11, 0x20));
    EXPECT_FALSE(m.bChannelActive);
    EXPECT_EQ(m.iCol, 2);
}

TEST_F(DecoderTest, PairOfTheOtherChannelCountsAsThePreviousPair) {
    feed(kEOC + pair(0x1C, 0x2F) + kEOC);
    EXPECT_EQ(m.iDM, 1) << "flipped twice; the middle pair shut the gate";
    EXPECT_TRUE(m.bChannelActive);
}

TEST_F(DecoderTest, RepeatMakesNoChannelTest) {
    feed(kEOC);
    m.iChannel = 1;
    feed(kEOC);
    EXPECT_TRUE(m.bChannelActive);
}

// --- byte assembly ---

enum class State { Idle, FirstHeld, Ignoring };

struct AssemblyCase {
    State from;
    int byte;
    State to;
    const char* what;
};

class ByteAssembly : public ::testing::TestWithParam<AssemblyCase> {};

State stateOf(const InL21& m) {
    EXPECT_FALSE(m.bHaveFirst && m.bIgnoreText);
    if (m.bHaveFirst) return State::FirstHeld;
    return m.bIgnoreText ? State::Ignoring : State::Idle;
}

TEST_P(ByteAssembly, FollowsTheStateTable) {
    const AssemblyCase& c = GetParam();
    InL21 m;
    feedL21(m, kRCL + kRow1);  // channel active, write position at row 1
    if (c.from == State::FirstHeld) feedL21(m, bytes({0x11}));
    if (c.from == State::Ignoring) feedL21(m, bytes({0x7F}));
    ASSERT_EQ(stateOf(m), c.from);
    feedL21(m, bytes({c.byte}));
    EXPECT_EQ(stateOf(m), c.to) << c.what;
}

INSTANTIATE_TEST_SUITE_P(
    Table, ByteAssembly,
    ::testing::Values(AssemblyCase{State::Idle, 'a', State::Idle, "text"},
                      AssemblyCase{State::Idle, 0x10, State::FirstHeld, "first byte"},
                      AssemblyCase{State::Idle, 0x1F, State::FirstHeld, "first byte"},
                      AssemblyCase{State::Idle, 0x0F, State::Ignoring, "below 0x10"},
                      AssemblyCase{State::Idle, 0x7F, State::Ignoring, "0x7F"},
                      AssemblyCase{State::Idle, 0xC1, State::Ignoring, "bit 7 set"},
                      AssemblyCase{State::FirstHeld, 0x20, State::Idle, "pair"},
                      AssemblyCase{State::FirstHeld, 0x7E, State::Idle, "pair"},
                      AssemblyCase{State::FirstHeld, 0x14, State::FirstHeld, "replaced"},
                      AssemblyCase{State::FirstHeld, 0x01, State::Ignoring, "pair lost"},
                      AssemblyCase{State::FirstHeld, 0x7F, State::Ignoring, "pair lost"},
                      AssemblyCase{State::Ignoring, 'a', State::Ignoring, "dropped"},
                      AssemblyCase{State::Ignoring, 0x80, State::Ignoring, "stays"},
                      AssemblyCase{State::Ignoring, 0x15, State::FirstHeld, "pair opens"}));

TEST_F(DecoderTest, IgnoringDropsTextUntilTheNextPair) {
    feed(kRCL + kRow1 + "a" + bytes({0x7F}) + "bc" + pair(0x11, 0x40) + "d");
    EXPECT_EQ(row(2, 1), "d");
}

TEST_F(DecoderTest, ByteBelow0x10BehindAFirstByteLosesThePair) {
    feed(kRCL + kRow1 + bytes({0x14, 0x03, 0x2F}));
    EXPECT_EQ(m.iDM, 1);
    EXPECT_EQ(m.sFirst, "");
    EXPECT_EQ(row(2, 1), "") << "the second byte is dropped as text too";
}

TEST_F(DecoderTest, SecondFirstByteReplacesTheFirst) {
    feed(kRCL + kRow1 + bytes({0x11, 0x14, 0x2F}));
    EXPECT_EQ(m.iDM, 2) << "0x14 0x2F, not 0x11 0x2F";
}

TEST_F(DecoderTest, FirstByte0x7FSecondDropsTheRowCode) {
    feed(kRCL + kRow1 + bytes({0x14, 0x7F}) + "x");
    EXPECT_EQ(m.iRow, 1);
    EXPECT_EQ(row(2, 1), "");
}

TEST_F(DecoderTest, EmptyInputIsADroppedByteAfterThePendingErase) {
    feed(kRU2 + kRow15 + "AB" + kCR);
    EXPECT_EQ(m.FilterL21("", out), 0);
    EXPECT_EQ(m.getExternalTextL21(15), "");
    EXPECT_EQ(m.iCol, 1);
}

// --- the write position at its limits ---

TEST_F(DecoderTest, TextPastColumn32PilesUpOnColumn32) {
    feed(kRCL + kRow1 + std::string(31, '.') + "abc");
    EXPECT_EQ(row(2, 1), std::string(31, '.') + "c");
    EXPECT_EQ(m.iCol, 32);
    EXPECT_EQ(m.iRow, 1) << "no wrap";
}

TEST_F(DecoderTest, TabOffsetAddsUpToThreeColumnsAndStopsAt32) {
    struct Case {
        int col, second, expected;
    };
    for (const Case& c : {Case{1, 0x21, 2}, Case{1, 0x22, 3}, Case{1, 0x23, 4}, Case{30, 0x23, 32},
                          Case{31, 0x21, 32}, Case{31, 0x23, 32}, Case{32, 0x21, 32}}) {
        m.initL21();
        startAt(c.col);
        feed(pair(0x17, c.second));
        EXPECT_EQ(m.iCol, c.expected) << c.col << " " << c.second;
        EXPECT_EQ(row(2, 1), std::string(c.col - 1, '.')) << "a tab writes nothing";
    }
    m.initL21();
    startAt(5);
    feed(pair(0x17, 0x24) + pair(0x17, 0x20));
    EXPECT_EQ(m.iCol, 5) << "only 0x21-0x23 are tab offsets";
}

TEST_F(DecoderTest, BackspaceBlanksTheColumnBeforeAndStopsAtColumn1) {
    startAt(1);
    feed(kBS);
    EXPECT_EQ(m.iCol, 1);
    feed("a" + kBS);
    EXPECT_EQ(m.iCol, 1);
    EXPECT_EQ(row(2, 1), "");
    EXPECT_TRUE(m.memBank[1].rowUsed[0]) << "BS leaves rowUsed alone";
    feed(std::string(40, 'z') + kBS);
    EXPECT_EQ(m.iCol, 31);
    EXPECT_EQ(row(2, 1), std::string(30, 'z') + " z");
}

TEST_F(DecoderTest, MidRowCodeWritesABlank) {
    startAt(3);
    feed(pair(0x11, 0x2E) + "x");
    EXPECT_EQ(row(2, 1), ".. x");
    EXPECT_EQ(m.iCol, 5);
    EXPECT_TRUE(m.memBank[1].rowUsed[0]);
}

// Rows each first byte names with second bytes 0x40 and 0x60 (0 = none), and
// which first bytes have no row codes at all.
struct RowCase {
    int first, upper, lower;
};
constexpr RowCase kRowCases[] = {
    {0x10, 11, 0},  {0x11, 1, 2},  {0x12, 3, 4}, {0x13, 12, 13}, {0x14, 14, 15}, {0x15, 5, 6},
    {0x16, 7, 8},   {0x17, 9, 10}, {0x18, 0, 0}, {0x19, 0, 0},   {0x1A, 0, 0},   {0x1B, 0, 0},
    {0x1C, 14, 15}, {0x1D, 5, 6},  {0x1E, 0, 0}, {0x1F, 0, 0},
};

TEST_F(DecoderTest, RowCodesNameTheRowsOfTheirFirstByte) {
    const std::string blank = m.memoryText(1) + m.memoryText(2);
    for (const RowCase& c : kRowCases) {
        for (int s = 0x40; s <= 0x7E; ++s) {
            const int expected = s < 0x60 ? c.upper : c.lower;
            m.initL21();
            m.iRow = 7;
            m.iCol = 9;
            std::string line;
            const std::string p = pair(c.first, s);
            m.FilterL21(p.substr(0, 1), line);
            m.FilterL21(p.substr(1, 1), line);
            if (expected == 0) {
                EXPECT_EQ(m.iRow, 7) << std::hex << c.first << " " << s;
                EXPECT_EQ(m.iCol, 9);
                continue;
            }
            EXPECT_EQ(m.iRow, expected) << std::hex << c.first << " " << s;
            const bool indented = (s & 0x10) != 0;
            EXPECT_EQ(m.iCol, indented ? 4 * ((s & 0x0F) / 2) + 1 : 1);
            EXPECT_EQ(m.memoryText(1) + m.memoryText(2), blank) << "row codes write nothing";
        }
    }
}

TEST_F(DecoderTest, IndentColumnsRunFrom1To29AndIgnoreTheUnderlineBit) {
    const int expected[16] = {1, 1, 5, 5, 9, 9, 13, 13, 17, 17, 21, 21, 25, 25, 29, 29};
    for (int k = 0; k < 16; ++k) {
        feed(kRCL + pair(0x14, 0x50 + k));
        EXPECT_EQ(m.iCol, expected[k]) << k;
        EXPECT_EQ(m.iRow, 14);
        if (k == 15) continue;  // 0x7F is no second byte
        feed(kRCL + pair(0x14, 0x70 + k));
        EXPECT_EQ(m.iCol, expected[k]) << k;
        EXPECT_EQ(m.iRow, 15);
    }
}

TEST_F(DecoderTest, PlainRowCodeSetsLineToABlankAndIndentLeavesItEmpty) {
    feed(kRCL + bytes({0x14}));
    one(0x40);
    EXPECT_EQ(out, " ");
    one(0x14);
    one(0x52);
    EXPECT_EQ(out, "");
}

// --- extended characters ---

TEST_F(DecoderTest, ExtendedCharacterReplacesItsFallbackAndKeepsTheColumn) {
    feed(kRCL + kRow1 + "caf" + "e" + pair(0x12, 0x21));
    EXPECT_EQ(out, "\xC9");
    EXPECT_EQ(row(2, 1), "caf\xC9");
    EXPECT_EQ(m.iCol, 5);
    feed("!");
    EXPECT_EQ(row(2, 1), "caf\xC9!");
}

TEST_F(DecoderTest, ExtendedCharacterAtColumn1IsStoredAndAdvances) {
    EXPECT_EQ(feed(kRCL + kRow1 + pair(0x13, 0x34)), 0);
    EXPECT_EQ(row(2, 1), "\xDF");
    EXPECT_EQ(m.iCol, 2);
}

TEST_F(DecoderTest, ExtendedCharacterFindsItsFallbackAtTheRowEnd) {
    startAt(31);
    feed("a" + pair(0x12, 0x30));
    EXPECT_EQ(row(2, 1), std::string(30, '.') + "\xC0") << "fallback on column 31";
    EXPECT_EQ(m.iCol, 32);
    feed("bc" + pair(0x12, 0x31));
    EXPECT_EQ(row(2, 1), std::string(30, '.') + "\xC0\xC2") << "fallback piled on column 32";
}

TEST_F(DecoderTest, ExtendedCharacterActsOnAnInactiveChannel) {
    m.iChannel = 1;
    feed(kRow1 + pair(0x12, 0x2B));
    EXPECT_EQ(row(2, 1), "\xA9");
    EXPECT_EQ(out, "") << "the gate is shut: nothing goes out";
}

}  // namespace
}  // namespace zelvan
