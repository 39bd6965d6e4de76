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
using testing::l21Pair;

std::string twice(int f, int s) {
    return l21Pair(f, s) + l21Pair(f, s);
}

const std::string kRCL = l21Pair(0x14, 0x20), kBS = l21Pair(0x14, 0x21), kRU2 = l21Pair(0x14, 0x25),
                  kEDM = l21Pair(0x14, 0x2C), kCR = l21Pair(0x14, 0x2D), kENM = l21Pair(0x14, 0x2E),
                  kEOC = l21Pair(0x14, 0x2F), kRow15 = l21Pair(0x14, 0x70),
                  kRow1 = l21Pair(0x11, 0x40);

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

TEST_F(DecoderTest, PopOnLoadsOffScreenAndWritesOnInTheBankOnShow) {
    feed(kRCL + kRow15 + "Hi");
    EXPECT_EQ(m.getExternalTextL21(15), "") << "loaded off screen";
    EXPECT_EQ(feed(kEOC), 1);
    EXPECT_EQ(m.getExternalTextL21(15), "Hi");
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
    feed(kRow15 + "kept" + l21Pair(0x14, 0x26) + l21Pair(0x14, 0x27));
    EXPECT_EQ(m.getExternalTextL21(15), "kept");
}

TEST_F(DecoderTest, RollUpLineEndsAtCrAndTheNextByteErasesIt) {
    feed(twice(0x14, 0x25) + twice(0x14, 0x70) + kRow1 + "AB");
    EXPECT_EQ(m.getExternalTextL21(1), "AB") << "roll-up text is on show as it comes";
    EXPECT_EQ(feed(kCR), 3);
    EXPECT_EQ(out, "AB" + std::string(30, ' '));
    EXPECT_EQ(feed("\x14"), 0);
    EXPECT_EQ(m.getExternalTextL21(1), "") << "erased by a byte that itself does nothing";
    EXPECT_EQ(feed("\x2D"), 0) << "the doubled CR is a repeat";
    // The CR code of the second field ends the line but carries no text.
    EXPECT_EQ(feed(l21Pair(0x15, 0x2D)), 3);
    EXPECT_EQ(out, "");
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
    EXPECT_EQ(window.rtbNM.substr(0, 1), "H") << "the panes follow once the gate opens";
}

TEST_F(DecoderTest, SecondChannelTakesOnlyItsOwnCommandsAndRowCodes) {
    m.iChannel = 1;
    feed(kRCL + kRow15 + "one");
    EXPECT_FALSE(m.bChannelActive);
    EXPECT_EQ(m.iRow, 15) << "a row code acts on a shut gate";
    EXPECT_TRUE(blank(2));
    feed(l21Pair(0x1C, 0x20) + l21Pair(0x1D, 0x60) + "two");
    // Mid-row, special, tab and other row codes of the second channel are dropped.
    feed(l21Pair(0x19, 0x20) + l21Pair(0x19, 0x37) + l21Pair(0x1F, 0x21) + l21Pair(0x1A, 0x40));
    EXPECT_EQ(m.iRow * 100 + m.iCol, 604);
    feed(l21Pair(0x1D, 0x2F) + l21Pair(0x14, 0x30));
    EXPECT_EQ(m.getExternalTextL21(6), "two");
    EXPECT_TRUE(m.bChannelActive) << "0x14 0x30 is no command and makes no channel test";
    feed(kCR);
    EXPECT_FALSE(m.bChannelActive) << "the flush pair belongs to the first channel";
    feed(l21Pair(0x11, 0x37));
    EXPECT_EQ(row(m.iDM, 1), "\x95") << "special characters ignore the gate";
}

TEST_F(DecoderTest, RepeatsLastUntilAcceptedText) {
    const std::pair<std::string, int> cases[] = {
        {kEOC + kEOC + kEOC, 1},
        {kEOC + "x" + kEOC, 2},
        {kEOC + "\x01" + "noise" + kEOC, 1},     // across the Ignoring state
        {kEOC + l21Pair(0x1C, 0x2F) + kEOC, 2},  // the other channel's pair counts
    };
    for (const auto& [stream, flips] : cases) {
        m.initL21();
        feed(stream);
        EXPECT_EQ(m.iDM, flips % 2 ? 2 : 1) << ::testing::PrintToString(stream);
    }
    m.initL21();
    feed(kEOC);
    m.iChannel = 1;
    feed(kEOC);
    EXPECT_TRUE(m.bChannelActive) << "a repeat makes no channel test";
}

// A pair opens at a byte 0x10-0x1F; any byte below 0x10, 0x7F or with bit 7
// set drops the waiting pair and the text after it, up to the next pair.
TEST_F(DecoderTest, PairsAreFoundByTheirFirstByteOnly) {
    const std::pair<std::string, std::string> cases[] = {
        {"q\x7Fyz" + kRow1 + "d", "d"},
        {"x\x0Fyz", "x"},
        {"x\x10yz", "xz"},  // 0x10 0x79 is a row code that places nothing
        {"x\x1Fyz", "xz"},
        {"x\x11" + kBS, ""},     // a second first byte replaces the first
        {"x\x14\x03\x21", "x"},  // the waiting BS is lost, its second byte dropped
        {"\x7Fy\x11\x2Ez", " z"},
    };
    for (const auto& [stream, text] : cases) {
        startAt(1);
        feed(stream);
        EXPECT_EQ(row(2, 1), text) << ::testing::PrintToString(stream);
    }
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
        {1, dots30 + ".abc" + kBS, dots30 + " c", 31},
        {1, "a" + kBS + kRow1 + kBS, "", 1},
        {1, "a" + l21Pair(0x11, 0x2E) + "b", "a b", 4},
        {31, "a" + l21Pair(0x12, 0x30) + "bc" + l21Pair(0x12, 0x31), dots30 + "\xC0\xC2", 32},
        {1, l21Pair(0x17, 0x21), "", 2},
        {31, l21Pair(0x17, 0x23), dots30, 32},
        {5, l21Pair(0x17, 0x24), "....", 5},
    };
    for (const auto& c : cases) {
        startAt(c.col);
        feed(c.stream);
        EXPECT_EQ(row(2, 1), c.row) << ::testing::PrintToString(c.stream);
        EXPECT_EQ(m.iRow * 100 + m.iCol, 100 + c.endCol) << ::testing::PrintToString(c.stream);
    }
    for (const auto& [code, ch] :
         {std::pair{l21Pair(0x13, 0x34), "\xDF"}, {l21Pair(0x11, 0x37), "\x95"}}) {
        startAt(1);
        feed(code);
        EXPECT_EQ(out, ch) << "a character of the two-byte sets is offered as it is";
    }
}

// Upper or lower row by the second byte, indent 1, 5 ... 29 with the low
// (underline) bit ignored; codes with no row leave the position alone.
TEST_F(DecoderTest, RowCodesSetRowAndIndentAndWriteNothing) {
    const int cases[][4] = {
        {0x11, 0x41, 1, 1}, {0x10, 0x60, 7, 9}, {0x14, 0x53, 14, 5}, {0x1C, 0x5F, 14, 29}};
    for (const auto& [f, s, row, col] : cases) {
        m.initL21();
        m.iRow = 7;
        m.iCol = 9;
        feed(l21Pair(f, s));
        EXPECT_EQ(m.iRow * 100 + m.iCol, row * 100 + col) << std::hex << f << " " << s;
        EXPECT_TRUE(blank(1) && blank(2));
    }
}

}  // namespace
}  // namespace zelvan
