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
    out.bReverse = false;
    out.toggleBoard();
    out.toggleBoard();
    out.bReverse = true;
    out.toggleBoard();
    out.toggleBoard();
    std::string codes;
    for (const std::string& w : link.writes) codes += w.substr(3, w.size() - 4);
    EXPECT_EQ(codes, bytes({0x7E, 0x26, 0x7E, 0x25, 0x7E, 0x28, 0x7E, 0x27}));
}

TEST_F(ProtocolTest, RowGoesOutPlainOrReversedToEndInColumn32) {
    out.writeLine("AB", 2, 1);
    out.writeLine("  A\x95", 1, 1);
    out.bReverse = false;
    out.writeLine("", 1, 1);  // still carries its row and column bytes
    out.writeLine("  A\x95", 3, 1);
    out.writeLine(testing::esc("A^42C"), 3, 1);  // an escape in caption text is read
    EXPECT_EQ(link.writes, (Writes{bytes({1, 0x20, 0x21, 0x3E, 'B', 'A', 1}),
                                   textFrame(1, 29, std::string(1, 0x7F) + "A  "),
                                   bytes({1, 0x20, 0x20, 0x20, 1}), textFrame(3, 1, "  A\x7F"),
                                   textFrame(3, 1, "ABC")}));
}

TEST_F(ProtocolTest, SunriseSendsFourFramesPaddedFromColumn1) {
    out.bSunrise = true;
    out.writeLine("AB", 2, 1);
    EXPECT_EQ(link.writes, Writes(4, textFrame(2, 1, std::string(30, ' ') + "BA")));
}

// A longer text keeps the first 32 characters the reader sees; no column byte
// falls below 0x20, and a start right of the row sends no characters.
TEST_F(ProtocolTest, LongRowIsCutToTheSignInEveryForm) {
    const std::string head = "0123456789abcdefghijklmnopqrstuv";
    for (int form = 0; form < 4; ++form) {
        link.clear();
        out.bReverse = form & 1;
        out.bSunrise = form & 2;
        out.writeLine(head + "WXYZ", 1, 1);
        SignModel sign;
        sign.feed(link.bytes());
        for (const std::string& w : link.writes) {
            EXPECT_EQ(w.size(), 4u + 32 + 1);
            EXPECT_EQ(w[3], 0x20);
        }
        EXPECT_EQ(out.bReverse ? sign.rowThroughReflector(1) : sign.row(1), head) << form;
    }
    link.clear();
    out.bReverse = out.bSunrise = false;
    out.writeLine("AB", 1, 40);
    EXPECT_EQ(link.writes.at(0).size(), 5u);
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
