// The sign's frames: each routine against its bytes, the writing of a row in
// its three forms, the erase, the board switch and a closed port.

#include "display/protocol.h"

#include <gtest/gtest.h>

#include "support/displaybytes.h"

#include <functional>

#include "core/readable.h"
#include "display/signmodel.h"

namespace zelvan {
namespace {

using testing::bytes;
using testing::esc;

std::string textFrame(int row, int column, const std::string& body) {
    return bytes({0x01, 0x20, 0x1F + row, 0x1F + column}) + body + bytes({0x01});
}

struct ProtocolTest : ::testing::Test {
    RecordingDisplayLink link;
    DisplayProtocol out{link};
};

TEST_F(ProtocolTest, EachLiteralReadsAsTheBytesBesideIt) {
    for (const ControlFrameEntry& entry : kControlFrames)
        EXPECT_EQ(fromReadable(entry.literal), entry.wire) << entry.literal;
}

TEST_F(ProtocolTest, EachControlRoutineSendsItsOneFrame) {
    struct Case {
        const char* name;
        bool reverse;
        std::function<void(DisplayProtocol&)> send;
        std::string wire;
    };
    const Case cases[] = {
        {"bright", false, &DisplayProtocol::sendBright, bytes({1, 0x20, 0x7F, 0x20, 1})},
        {"dim", false, &DisplayProtocol::sendDim, bytes({1, 0x20, 0x7F, 0x2F, 1})},
        {"reset", false, &DisplayProtocol::sendReset, bytes({1, 0x20, 0x7F, 0x45, 0x20, 0x20, 1})},
        {"rollup", false, &DisplayProtocol::sendRollup,
         bytes({1, 0x20, 0x7F, 0x46, 0x20, 0x20, 1})},
        {"board reset", true, &DisplayProtocol::sendBoardReset,
         bytes({1, 0x20, 0x7F, 0x7E, 0x20, 1})},
        {"front", false, &DisplayProtocol::sendBoardFront, bytes({1, 0x20, 0x7F, 0x7E, 0x25, 1})},
        {"front reversed", true, &DisplayProtocol::sendBoardFront,
         bytes({1, 0x20, 0x7F, 0x7E, 0x27, 1})},
        {"rear", false, &DisplayProtocol::sendBoardRear, bytes({1, 0x20, 0x7F, 0x7E, 0x26, 1})},
        {"rear reversed", true, &DisplayProtocol::sendBoardRear,
         bytes({1, 0x20, 0x7F, 0x7E, 0x28, 1})},
    };
    for (const Case& c : cases) {
        link.clear();
        out.bReverse = c.reverse;
        c.send(out);
        ASSERT_EQ(link.writes.size(), 1u) << c.name;
        EXPECT_EQ(link.writes[0], c.wire) << c.name;
    }
}

TEST_F(ProtocolTest, ToggleBoardStartsWithTheRearInTheFormOfTheMoment) {
    out.toggleBoard();
    out.bReverse = false;
    out.toggleBoard();
    EXPECT_EQ(link.writes, (std::vector<std::string>{bytes({1, 0x20, 0x7F, 0x7E, 0x28, 1}),
                                                     bytes({1, 0x20, 0x7F, 0x7E, 0x25, 1})}));
    EXPECT_TRUE(out.bBoardFront);
}

// An empty text still carries its row and column bytes.
TEST_F(ProtocolTest, PlainLineGoesOutFromItsColumn) {
    out.bReverse = false;
    out.writeLine("", 1, 1);
    out.writeLine("  AB", 3, 1);
    EXPECT_EQ(link.writes,
              (std::vector<std::string>{bytes({1, 0x20, 0x20, 0x20, 1}), textFrame(3, 1, "  AB")}));
}

TEST_F(ProtocolTest, ReversedLineEndsInColumn32) {
    out.writeLine("AB", 2, 1);
    out.writeLine("  AB", 1, 1);
    out.writeLine(std::string(31, 'x') + "Y", 1, 1);
    EXPECT_EQ(link.writes[0], bytes({1, 0x20, 0x21, 0x3E, 'B', 'A', 1}));
    EXPECT_EQ(link.writes[1], textFrame(1, 29, "BA  "));
    EXPECT_EQ(link.writes[2], textFrame(1, 1, "Y" + std::string(31, 'x')));
}

TEST_F(ProtocolTest, MusicNoteLeavesAsTheSignGlyphEitherWay) {
    out.writeLine("A\x95", 1, 1);
    out.bReverse = false;
    out.writeLine("A\x95", 1, 1);
    EXPECT_EQ(link.writes[0], textFrame(1, 31,
                                        "\x7F"
                                        "A"));
    EXPECT_EQ(link.writes[1], textFrame(1, 1, "A\x7F"));
}

TEST_F(ProtocolTest, EscapeInCaptionTextBecomesOneByte) {
    out.bReverse = false;
    out.writeLine(esc("A^42C"), 1, 1);
    EXPECT_EQ(link.writes[0], textFrame(1, 1, "ABC"));
}

TEST_F(ProtocolTest, SunriseSendsFourPaddedFramesFromColumn1) {
    out.bSunrise = true;
    out.writeLine("AB", 2, 1);
    ASSERT_EQ(link.writes.size(), 4u);
    for (const std::string& w : link.writes)
        EXPECT_EQ(w, textFrame(2, 1, std::string(30, ' ') + "BA"));
}

// A sign row has 32 columns: a longer text keeps its first 32 characters as
// the reader sees them, and no column byte falls below 0x20.
TEST_F(ProtocolTest, LongRowIsCutToTheSignInEveryForm) {
    const std::string head = "0123456789abcdefghijklmnopqrstuv";
    const std::string row = head + "WXYZ";
    for (bool reverse : {false, true}) {
        for (bool sunrise : {false, true}) {
            link.clear();
            out.bReverse = reverse;
            out.bSunrise = sunrise;
            out.writeLine(row, 1, 1);
            SignModel sign;
            sign.feed(link.bytes());
            for (const std::string& w : link.writes) {
                EXPECT_EQ(w.size(), 4u + 32 + 1);
                EXPECT_EQ(w[3], 0x20);
            }
            EXPECT_EQ(reverse ? sign.rowThroughReflector(1) : sign.row(1), head)
                << reverse << sunrise;
        }
    }
}

TEST_F(ProtocolTest, EraseClearsTheRowsInUse) {
    out.iLines = 2;
    out.DWErase();
    EXPECT_EQ(link.writes, (std::vector<std::string>{bytes({1, 0x20, 0x20, 0x20, 0x0F, 1}),
                                                     bytes({1, 0x20, 0x21, 0x20, 0x0F, 1})}));
}

TEST_F(ProtocolTest, SunriseEraseWritesBlanksBetweenDimAndBright) {
    out.bSunrise = true;
    out.DWErase();
    ASSERT_EQ(link.writes.size(), 14u);
    EXPECT_EQ(link.writes.front(), bytes({1, 0x20, 0x7F, 0x2F, 1}));
    EXPECT_EQ(link.writes[12], textFrame(3, 1, std::string(32, ' ')));
    EXPECT_EQ(link.writes.back(), bytes({1, 0x20, 0x7F, 0x20, 1}));
}

TEST_F(ProtocolTest, ClosedPortGivesOneNoticePerFrame) {
    link.open = false;
    out.DWErase();
    out.sendBright();
    EXPECT_TRUE(link.writes.empty());
    ASSERT_EQ(link.notices.size(), 4u);
    EXPECT_EQ(link.notices[0], std::make_pair(true, std::string("Open port first.")));
}

}  // namespace
}  // namespace zelvan
