// The line-21 decoder by behaviour, and the caption memory's banks and row readers.

#include <gtest/gtest.h>

#include "line21/inl21.h"
#include "platform/codepage.h"
#include "support/l21fakes.h"

namespace zelvan {
namespace {

using testing::l21Pair;

const std::string kRCL = l21Pair(0x14, 0x20), kBS = l21Pair(0x14, 0x21), kRU2 = l21Pair(0x14, 0x25),
                  kEDM = l21Pair(0x14, 0x2C), kCR = l21Pair(0x14, 0x2D), kENM = l21Pair(0x14, 0x2E),
                  kEOC = l21Pair(0x14, 0x2F), kRow15 = l21Pair(0x14, 0x70),
                  kRow1 = l21Pair(0x11, 0x40);

struct DecoderTest : ::testing::Test {
    InL21 m;
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
    char32_t storedAtRow1(const std::string& bytes) {
        startAt(1);
        feed(bytes);
        return codepage::toUnicode(static_cast<std::uint8_t>(m.rowString(2, 1)[0]));
    }
};

TEST_F(DecoderTest, PopOnLoadsOffScreenAndWritesOnInTheBankOnShow) {
    feed(kRCL + kRow15 + "Hi");
    EXPECT_EQ(m.getExternalTextL21(15), "") << "loaded off screen";
    feed(kEOC + kRow1 + "B");
    EXPECT_EQ(m.getExternalTextL21(15) + m.getExternalTextL21(1), "HiB")
        << "no RCL: writing goes on in the bank now on show";
    EXPECT_EQ(feed(kRCL + kENM + kEOC), 1);
    EXPECT_TRUE(blank(m.iDM)) << "a flip of an emptied bank blanks the display";
    m.initL21();
    feed(kRCL + "AB");  // text before any preamble starts at row 1, column 1
    EXPECT_EQ(row(m.iNM, 1), "AB");
    EXPECT_NE(m.dump().find("bank 2 (NM):\n 1|AB"), std::string::npos) << m.dump();
}

TEST_F(DecoderTest, RollUpEntryErasesBothBanksAndACrEndsTheLine) {
    feed(kRCL + kRow15 + "shown" + kEOC + kRCL + kRow15 + "loaded" + kRU2);
    EXPECT_TRUE(blank(1) && blank(2));
    feed(kRow15 + "AB" + l21Pair(0x14, 0x26));
    EXPECT_EQ(m.getExternalTextL21(15), "AB")
        << "on show as it comes; a depth change erases nothing";
    EXPECT_EQ(feed(kCR), 3);
    EXPECT_EQ(out, "AB" + std::string(30, ' '));
    EXPECT_EQ(feed("\x14"), 0);
    EXPECT_EQ(m.getExternalTextL21(15), "") << "erased by a byte that itself does nothing";
    // The CR code of the second field ends the line but carries no text.
    EXPECT_EQ(feed("\x2D" + l21Pair(0x15, 0x2D)), 3);
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
        // Roll-up and paint-on follow an EDM with a row code: no change there.
        for (const std::string& mode : {kRU2, l21Pair(0x14, 0x29)}) {
            m.initL21();
            feed(mode + kRow15 + "older" + kEDM + kRow15 + "new");
            EXPECT_EQ(m.getExternalTextL21(15), "new") << keep;
        }
    }
}

// Row codes and special characters act whatever the gate; the second
// channel's mid-row, special, tab and other row codes do nothing here.
TEST_F(DecoderTest, SecondChannelTakesOnlyItsOwnCommands) {
    m.iChannel = 1;
    feed(kRCL + kRow15 + "one" + l21Pair(0x1C, 0x20) + "two");
    feed(l21Pair(0x19, 0x20) + l21Pair(0x19, 0x37) + l21Pair(0x1F, 0x21) + l21Pair(0x1A, 0x40) +
         "2");
    feed(l21Pair(0x1D, 0x2F) + l21Pair(0x14, 0x30) + "!");
    EXPECT_EQ(m.getExternalTextL21(15), "two2");
    EXPECT_EQ(m.getExternalTextL21(1), "!") << "0x14 0x30 is no command and shuts no gate";
    feed(kCR + "x" + l21Pair(0x11, 0x37));
    EXPECT_EQ(row(m.iDM, 1), "!\x95") << "the flush pair belongs to the first channel";
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
    feed(kEOC + "t");
    EXPECT_EQ(m.getExternalTextL21(1), "t") << "a repeat makes no channel test";
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

// Pop-on from row 1, column `col`: text past column 32 piles up there, a tab
// moves up to 32, a backspace stops at 1, a mid-row code writes a blank, an
// extended character replaces the fallback before it. A row code picks its row
// and indent (underline bit ignored); codes with no row leave the position.
TEST_F(DecoderTest, WritePositionStaysWithinTheRow) {
    const std::string dots30(30, '.');
    const struct {
        int col;
        std::string stream, row;
        int endRowCol;
    } cases[] = {
        {1, dots30 + ".abc" + kBS, dots30 + " c", 131},
        {1, "a" + kBS + kRow1 + kBS, "", 101},
        {1, "a" + l21Pair(0x11, 0x2E) + "b", "a b", 104},
        {31, "a" + l21Pair(0x12, 0x30) + "bc" + l21Pair(0x12, 0x31), dots30 + "\xC0\xC2", 132},
        {1, l21Pair(0x17, 0x21), "", 102},
        {31, l21Pair(0x17, 0x23), dots30, 132},
        {5, l21Pair(0x17, 0x24), "....", 105},
        {5, l21Pair(0x10, 0x60), "....", 105},
        {1, l21Pair(0x14, 0x53), "", 1405},
        {1, l21Pair(0x1C, 0x5F), "", 1429},
    };
    for (const auto& c : cases) {
        startAt(c.col);
        feed(c.stream);
        EXPECT_EQ(row(2, 1), c.row) << ::testing::PrintToString(c.stream);
        EXPECT_EQ(m.iRow * 100 + m.iCol, c.endRowCol) << ::testing::PrintToString(c.stream);
    }
    // A character of the two-byte sets is offered as it is; a row code with no
    // indent, underlined or not, offers a blank.
    for (const auto& [code, ch] : {std::pair{l21Pair(0x13, 0x34), "\xDF"},
                                   {l21Pair(0x11, 0x37), "\x95"},
                                   {l21Pair(0x14, 0x61), " "}}) {
        startAt(1);
        feed(code);
        EXPECT_EQ(out, ch) << ::testing::PrintToString(code);
    }
}

// Both ends of each two-byte table, so a shifted one fails; text bytes are
// stored as they are but for nine substitutions.
TEST_F(DecoderTest, CharactersLandAsTheirCodesSay) {
    const std::tuple<int, int, char32_t> cases[] = {
        {0x11, 0x30, U'\u00AE'}, {0x11, 0x37, U'\u2022'}, {0x11, 0x3F, U'\u00FB'},
        {0x12, 0x20, U'\u00C1'}, {0x12, 0x3F, U'\u00BB'}, {0x13, 0x20, U'\u00C3'},
        {0x13, 0x3B, U'\u00F8'}};
    for (const auto& [first, second, expected] : cases)
        EXPECT_EQ(storedAtRow1(l21Pair(first, second)), expected)
            << std::hex << first << " " << second;
    const std::u32string from = U"*\\^_`{|}~";
    const std::u32string to = U"\u00E1\u00E9\u00ED\u00F3\u00FA\u00E7\u00F7\u00D1\u00F1";
    for (int c = 0x20; c <= 0x7E; ++c) {
        const std::size_t sub = from.find(static_cast<char32_t>(c));
        EXPECT_EQ(storedAtRow1(std::string(1, static_cast<char>(c))),
                  sub == from.npos ? static_cast<char32_t>(c) : to[sub])
            << std::hex << "text byte 0x" << c;
    }
}

// Fill patterns belong to bank numbers and flips swap the roles; init blanks
// both banks and leaves the channel alone.
TEST_F(DecoderTest, CaptionMemoryPatternsFlipsAndInit) {
    m.fillMemory(m.iDM);
    m.flipMemory();
    m.fillMemory(m.iDM);
    EXPECT_EQ(m.getExternalTextL21(15) + m.memoryText(m.iNM).substr(0, 32),
              std::string(32, '2') + std::string(32, '1'));
    EXPECT_EQ(m.getExternalTextL21(0) + m.getExternalTextL21(16), "") << "rows out of range";
    m.iChannel = 1;
    m.initL21();
    EXPECT_EQ(m.iDM * 10 + m.iNM + m.iChannel, 13);
    std::string blank;
    for (int row = 1; row <= 15; ++row) blank += std::string(32, ' ') + (row < 15 ? "\r\n" : "");
    EXPECT_EQ(m.memoryText(1) + m.memoryText(2), blank + blank);
}

}  // namespace
}  // namespace zelvan
