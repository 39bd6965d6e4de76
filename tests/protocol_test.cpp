// The sign's frames: the board switch, a row in its three forms of writing,
// and the erase; the closed port's notices are in the console test.

#include "display/protocol.h"

#include <gtest/gtest.h>

#include "display/signmodel.h"
#include "support/displayfakes.h"

namespace zelvan {
namespace {

using testing::bytes;
using Writes = std::vector<std::string>;

std::string textFrame(int row, int column, const std::string& body) {
    return bytes({1, 0x20, 0x1F + row, 0x1F + column}) + body + bytes({1});
}

struct ProtocolTest : ::testing::Test {
    RecordingDisplayLink link;
    DisplayProtocol out{link};
};

// Each switch picks the other board; reversed text has board codes of its own.
TEST_F(ProtocolTest, BoardToggleAlternatesInThePlainAndTheReversedCodes) {
    for (const bool reverse : {false, true}) {
        out.bReverse = reverse;
        out.toggleBoard();
        out.toggleBoard();
    }
    std::string codes;
    for (const std::string& w : link.writes) codes += w.substr(3, w.size() - 4);
    EXPECT_EQ(codes, bytes({0x7E, 0x26, 0x7E, 0x25, 0x7E, 0x28, 0x7E, 0x27}));
}

TEST_F(ProtocolTest, RowGoesOutPlainOrReversedToEndInColumn32) {
    out.writeLine("AB", 2, 1);
    out.writeLine("  A\x95", 1, 1);
    out.writeLine("AB\r\nCD", 3, 1);  // line breaks count in the length
    out.bReverse = false;
    out.writeLine("", 1, 1);  // still carries its row and column bytes
    out.writeLine("  A\x95", 3, 1);
    out.writeLine(testing::esc("A^42C"), 3, 1);  // an escape in caption text is read
    EXPECT_EQ(link.writes, (Writes{bytes({1, 0x20, 0x21, 0x3E, 'B', 'A', 1}),
                                   textFrame(1, 29, std::string(1, 0x7F) + "A  "),
                                   textFrame(3, 27, "DC\n\rBA"), bytes({1, 0x20, 0x20, 0x20, 1}),
                                   textFrame(3, 1, "  A\x7F"), textFrame(3, 1, "ABC")}));
}

// Nothing is cut but what a reversed text would put left of column 1: a
// longer row goes out whole with its column, and the sign shows what lands on
// it, the first 32 characters either way. A start right of the row stays too.
TEST_F(ProtocolTest, LongRowGoesOutWholeUnlessReversedPastColumn1) {
    const std::string head = "0123456789abcdefghijklmnopqrstuv";
    for (int form = 0; form < 4; ++form) {
        link.clear();
        out.bReverse = form & 1;
        out.bSunrise = form & 2;
        out.writeLine(head + "WXYZ", 1, 1);
        SignModel sign;
        sign.feed(link.bytes());
        for (const std::string& w : link.writes) {
            EXPECT_EQ(w.size(), 4u + (out.bReverse ? 32 : 36) + 1);
            EXPECT_EQ(w[3], 0x20);
        }
        EXPECT_EQ(out.bReverse ? sign.rowThroughReflector(1) : sign.row(1), head) << form;
    }
    link.clear();
    out.bSunrise = false;
    out.writeLine(std::string(30, 'a') + "\r\nCD", 2, 1);
    out.bReverse = false;
    out.writeLine("AB", 1, 40);
    EXPECT_EQ(link.writes,
              (Writes{textFrame(2, 1, "\n\r" + std::string(30, 'a')), textFrame(1, 40, "AB")}));
    link.clear();  // Sunrise sends four frames, padded from column 1
    out.bReverse = out.bSunrise = true;
    out.writeLine("AB", 2, 1);
    EXPECT_EQ(link.writes, Writes(4, textFrame(2, 1, std::string(30, ' ') + "BA")));
}

TEST_F(ProtocolTest, EraseClearsTheRowsInUseOrWritesBlanksUnderSunrise) {
    out.iLines = 2;
    out.DWErase();
    EXPECT_EQ(link.writes, (Writes{bytes({1, 0x20, 0x20, 0x20, 0x0F, 1}),
                                   bytes({1, 0x20, 0x21, 0x20, 0x0F, 1})}));
    link.clear();
    out.iLines = 3;
    out.bSunrise = true;
    out.DWErase();
    ASSERT_EQ(link.writes.size(), 14u);
    EXPECT_EQ(link.writes.front(), bytes({1, 0x20, 0x7F, 0x2F, 1}));
    EXPECT_EQ(link.writes[12], textFrame(3, 1, std::string(32, ' ')));
    EXPECT_EQ(link.writes.back(), bytes({1, 0x20, 0x7F, 0x20, 1}));
}

}  // namespace
}  // namespace zelvan
