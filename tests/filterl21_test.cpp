// The line-21 decoder, by behaviour: the caption modes, the channel gate,
// repeated pairs, byte assembly and the write position at its limits. (The
// flush timer is run by the decoder window's tests.)

#include <gtest/gtest.h>

#include "line21/inl21.h"
#include "support/l21fakes.h"

namespace zelvan {
namespace {

using testing::FakeL21View;
using testing::feedL21;
using Styles = std::vector<std::int16_t>;

std::string pair(int f, int s) {
    return {static_cast<char>(f), static_cast<char>(s)};
}
std::string twice(int f, int s) {
    return pair(f, s) + pair(f, s);
}

const std::string kRCL = pair(0x14, 0x20), kBS = pair(0x14, 0x21), kRU2 = pair(0x14, 0x25),
                  kRDC = pair(0x14, 0x29), kEDM = pair(0x14, 0x2C), kCR = pair(0x14, 0x2D),
                  kENM = pair(0x14, 0x2E), kEOC = pair(0x14, 0x2F), kRow15 = pair(0x14, 0x70),
                  kRow1 = pair(0x11, 0x40);

struct DecoderTest : ::testing::Test {
    InL21 m;
    VirtualDispatch dispatch;
    FakeL21View window{m, dispatch};
    std::string out;

    std::int16_t feed(const std::string& b) {
        std::int16_t style = 0;
        for (char c : b) style = m.FilterL21(std::string(1, c), out);
        return style;
    }
    std::string row(std::int16_t bank, std::int16_t r) {
        std::string s = m.rowString(bank, r);
        return s.erase(s.find_last_not_of(' ') + 1);
    }
    bool blank(std::int16_t bank) {
        return m.memoryText(bank).find_first_not_of(" \r\n") == std::string::npos;
    }
    // CC1 active, pop-on, write position at row 1, column `col`.
    void startAt(int col) {
        m.initL21();
        feed(kRCL + kRow1 + std::string(col - 1, '.'));
    }
};

TEST_F(DecoderTest, PopOnLoadsOffScreenAndFlipsOnceForADoubledEoc) {
    const Styles styles = feedL21(
        m, twice(0x14, 0x20) + twice(0x14, 0x2E) + twice(0x14, 0x70) + "Hi" + twice(0x14, 0x2F));
    Styles expected(styles.size(), 0);
    expected[expected.size() - 3] = 1;
    EXPECT_EQ(styles, expected);
    EXPECT_EQ(row(2, 15), "Hi");
    EXPECT_EQ(m.iDM, 2);
    EXPECT_EQ(m.getExternalTextL21(15), "Hi");
    EXPECT_EQ(m.iRow * 100 + m.iCol, 101);
    // No RCL: writing goes on in the same physical bank, now on show.
    feed(kRow1 + "B");
    EXPECT_EQ(m.getExternalTextL21(1), "B");
    // A flip of an emptied bank blanks the display.
    EXPECT_EQ(feed(kRCL + kENM + kEOC), 1);
    EXPECT_TRUE(blank(m.iDM));
}

TEST_F(DecoderTest, RollUpEntryErasesBothBanksButADepthChangeDoesNot) {
    feed(kRCL + kRow15 + "shown" + kEOC + kRCL + kRow15 + "loaded" + kRU2);
    EXPECT_TRUE(blank(1) && blank(2));
    feed(kRow15 + "kept" + pair(0x14, 0x26) + pair(0x14, 0x27));
    EXPECT_EQ(m.getExternalTextL21(15), "kept");
}

TEST_F(DecoderTest, RollUpLineEndsAtCrAndTheNextByteErasesIt) {
    feed(twice(0x14, 0x25) + twice(0x14, 0x70) + pair(0x11, 0x40) + "AB");
    EXPECT_EQ(m.getExternalTextL21(1), "AB") << "roll-up text is on show as it comes";
    EXPECT_EQ(feed(kCR), 3);
    EXPECT_EQ(out, "AB" + std::string(30, ' '));
    EXPECT_EQ(m.getExternalTextL21(1), "AB");
    EXPECT_EQ(feed("\x14"), 0);
    EXPECT_EQ(m.getExternalTextL21(1), "") << "erased by a byte that itself does nothing";
    EXPECT_EQ(feed("\x2D"), 0) << "the doubled CR is a repeat";
    feed("next");
    EXPECT_EQ(m.getExternalTextL21(15), "next") << "after a CR text goes to row 15, column 1";
    // The CR code of the second field ends the line but carries no text.
    EXPECT_EQ(feed(pair(0x15, 0x2D)), 3);
    EXPECT_EQ(out, "");
}

TEST_F(DecoderTest, EdmBlanksTheDisplayInEveryModeAndGoesToRow1) {
    for (const std::string& mode : {kRCL, kRDC, kRU2}) {
        m.initL21();
        feed(mode + kRow15 + "abc");
        m.fillMemory(m.iDM);
        m.fillMemory(m.iNM);
        EXPECT_EQ(feed(kEDM), 1);
        EXPECT_TRUE(blank(m.iDM));
        EXPECT_FALSE(blank(m.iNM));
        EXPECT_EQ(m.iRow * 100 + m.iCol, 101);
    }
}

// Some broadcasters send EDM while the next pop-on caption is loading.
TEST_F(DecoderTest, EdmWhileACaptionLoadsSendsTheRestToRow1UnlessSetToKeepThePosition) {
    for (const bool keep : {false, true}) {
        m.initL21();
        m.EdmKeepsPosition = keep;
        feed(kRCL + kRow15 + "old" + kEOC + kRCL + kRow15 + "Yes, ");
        EXPECT_EQ(feed(kEDM), 1);
        EXPECT_TRUE(blank(m.iDM)) << "the caption on show goes either way";
        feed("I'm in" + kEOC);
        EXPECT_EQ(m.getExternalTextL21(1), keep ? "" : "I'm in");
        EXPECT_EQ(m.getExternalTextL21(15), keep ? "Yes, I'm in" : "Yes,");
    }
}

TEST_F(DecoderTest, GateDropsTextBeforeTheFirstCommandWithoutTouchingAnything) {
    m.view = &window;
    out = "left alone";
    EXPECT_EQ(feed("A"), 0);
    EXPECT_EQ(out, "left alone");
    EXPECT_TRUE(window.refreshes.empty());
    EXPECT_TRUE(blank(2));
    feed(kRCL + "H");
    EXPECT_EQ(window.refreshes, (std::vector<std::string>{"NM", "DM", "NM", "DM"}))
        << "the opening byte of the first pair comes before the gate opens";
    EXPECT_EQ(window.rtbNM.substr(0, 1), "H");
}

TEST_F(DecoderTest, SecondChannelTakesOnlyItsOwnCommandsAndRowCodes) {
    m.iChannel = 1;
    feed(kRCL + kRow15 + "one");
    EXPECT_FALSE(m.bChannelActive);
    EXPECT_EQ(m.iRow, 15) << "a row code acts on a shut gate";
    EXPECT_TRUE(blank(2));
    feed(pair(0x1C, 0x20) + pair(0x1D, 0x60) + "two");
    // Mid-row, special, tab and other row codes of the second channel are dropped.
    feed(pair(0x19, 0x20) + pair(0x19, 0x37) + pair(0x1F, 0x21) + pair(0x1A, 0x40));
    EXPECT_EQ(m.iRow * 100 + m.iCol, 604);
    feed(pair(0x1D, 0x2F));
    EXPECT_EQ(m.getExternalTextL21(6), "two");
    feed(kCR);
    EXPECT_FALSE(m.bChannelActive) << "the flush pair belongs to the first channel";
    feed(pair(0x11, 0x37));
    EXPECT_EQ(row(m.iDM, 1), "\x95") << "special characters ignore the gate";
}

TEST_F(DecoderTest, RepeatsLastUntilAcceptedText) {
    struct Case {
        std::string stream;
        int flips;
    };
    const Case cases[] = {
        {kEOC + kEOC + kEOC, 1},
        {kEOC + "x" + kEOC, 2},
        {kEOC + "\x01" + "noise" + kEOC, 1},  // across the Ignoring state
        {kEOC + pair(0x1C, 0x2F) + kEOC, 2},  // the other channel's pair counts
    };
    for (const Case& c : cases) {
        m.initL21();
        feed(c.stream);
        EXPECT_EQ(m.iDM, c.flips % 2 ? 2 : 1) << ::testing::PrintToString(c.stream);
    }
    // A mid-row code acts on a shut gate: a repeat across dropped text shows.
    m.initL21();
    feed(kRCL + kRow1 + pair(0x1C, 0x20) + pair(0x11, 0x20) + "dropped" + pair(0x11, 0x20));
    EXPECT_EQ(m.iCol, 2);
    m.initL21();
    feed(kEOC);
    m.iChannel = 1;
    feed(kEOC);
    EXPECT_TRUE(m.bChannelActive) << "a repeat makes no channel test";
}

// The three assembly states: 0 idle, 1 first byte held, 2 ignoring text.
int stateOf(const InL21& m) {
    EXPECT_FALSE(m.bHaveFirst && m.bIgnoreText);
    return m.bHaveFirst ? 1 : m.bIgnoreText ? 2 : 0;
}

TEST(ByteAssembly, FollowsTheStateTable) {
    const std::string reach[] = {"", "\x11", "\x7F"};
    const struct {
        int from, byte, to;
    } cases[] = {{0, 'a', 0},  {0, 0x10, 1}, {0, 0x1F, 1}, {0, 0x0F, 2}, {0, 0x7F, 2},
                 {0, 0xC1, 2}, {1, 0x20, 0}, {1, 0x7E, 0}, {1, 0x14, 1}, {1, 0x01, 2},
                 {1, 0x7F, 2}, {2, 'a', 2},  {2, 0x80, 2}, {2, 0x15, 1}};
    for (const auto& c : cases) {
        InL21 m;
        feedL21(m, kRCL + kRow1 + reach[c.from]);
        ASSERT_EQ(stateOf(m), c.from);
        feedL21(m, std::string(1, static_cast<char>(c.byte)));
        EXPECT_EQ(stateOf(m), c.to) << c.from << " + 0x" << std::hex << c.byte;
    }
}

TEST_F(DecoderTest, PairsAreFoundByTheirFirstByteOnly) {
    feed(kRCL + kRow1 +
         "a\x7F"
         "bc" +
         kRow1 + "d");
    EXPECT_EQ(row(2, 1), "d") << "text after 0x7F is dropped until the next pair";
    feed(std::string("\x14\x03\x2F", 3) + "\x14\x7F" + "x");
    EXPECT_EQ(m.iDM, 1) << "a byte of class Other loses the waiting pair";
    EXPECT_EQ(row(2, 1), "d");
    feed("\x11\x14\x2F");
    EXPECT_EQ(m.iDM, 2) << "a second first byte replaces the first";
    feed(kRU2 + kRow15 + "AB" + kCR);
    EXPECT_EQ(m.FilterL21("", out), 0);
    EXPECT_TRUE(blank(m.iDM)) << "an empty call still runs the pending erase";
}

// Each case starts pop-on at row 1, column `col`, dots before it: text past
// column 32 piles up there, a tab moves 1 to 3 columns up to 32, a backspace
// stops at column 1, a mid-row code writes a blank, and an extended character
// replaces the fallback before it, even one piled up on column 32.
TEST_F(DecoderTest, WritePositionStaysWithinTheRow) {
    const std::string dots30(30, '.');
    const struct {
        int col;
        std::string stream, row;
        int endCol;
    } cases[] = {
        {1, dots30 + ".abc", dots30 + ".c", 32},
        {1, dots30 + ".abc" + kBS, dots30 + " c", 31},
        {1, kBS, "", 1},
        {1, "a" + kBS, "", 1},
        {1, "a" + pair(0x11, 0x2E) + "b", "a b", 4},
        {1, pair(0x13, 0x34), "\xDF", 2},
        {1, pair(0x13, 0x34) + "cafe" + pair(0x12, 0x21) + "!",
         "\xDF"
         "caf\xC9!",
         7},
        {31, "a" + pair(0x12, 0x30), dots30 + "\xC0", 32},
        {31, "a" + pair(0x12, 0x30) + "bc" + pair(0x12, 0x31), dots30 + "\xC0\xC2", 32},
    };
    for (const auto& c : cases) {
        startAt(c.col);
        feed(c.stream);
        EXPECT_EQ(row(2, 1), c.row) << ::testing::PrintToString(c.stream);
        EXPECT_EQ(m.iRow * 100 + m.iCol, 100 + c.endCol) << ::testing::PrintToString(c.stream);
    }
    const int tabs[][3] = {{1, 0x21, 2},   {1, 0x23, 4},   {30, 0x23, 32}, {31, 0x21, 32},
                           {31, 0x23, 32}, {32, 0x22, 32}, {5, 0x24, 5},   {5, 0x20, 5}};
    for (const auto& [col, second, expected] : tabs) {
        startAt(col);
        feed(pair(0x17, second));
        EXPECT_EQ(m.iCol, expected) << col << " + " << std::hex << second;
        EXPECT_EQ(row(2, 1), std::string(col - 1, '.'));
    }
    startAt(1);
    feed("a" + kBS);
    EXPECT_TRUE(m.memBank[1].rowUsed[0]) << "BS leaves rowUsed alone";
    startAt(1);
    feed(pair(0x13, 0x34));
    EXPECT_EQ(out, "\xDF") << "an extended character at column 1 is offered as it is";
}

TEST_F(DecoderTest, RowCodesSetRowAndIndentAndWriteNothing) {
    // The rows of second bytes 0x40 and 0x60 for each first byte (0 = none).
    const int rows[16][2] = {{11, 0}, {1, 2}, {3, 4}, {12, 13}, {14, 15}, {5, 6}, {7, 8}, {9, 10},
                             {0, 0},  {0, 0}, {0, 0}, {0, 0},   {14, 15}, {5, 6}, {0, 0}, {0, 0}};
    const int indent[16] = {1, 1, 5, 5, 9, 9, 13, 13, 17, 17, 21, 21, 25, 25, 29, 29};
    const std::string blankText = m.memoryText(1);
    for (int f = 0x10; f <= 0x1F; ++f) {
        for (int s = 0x40; s <= 0x7E; ++s) {
            m.initL21();
            m.iRow = 7;
            m.iCol = 9;
            feed(pair(f, s));
            const int expected = rows[f - 0x10][s < 0x60 ? 0 : 1];
            const bool indented = s & 0x10;
            EXPECT_EQ(m.iRow, expected ? expected : 7) << std::hex << f << " " << s;
            EXPECT_EQ(m.iCol, !expected ? 9 : indented ? indent[s & 0x0F] : 1);
            EXPECT_EQ(m.memoryText(2), blankText);
        }
    }
}

}  // namespace
}  // namespace zelvan
