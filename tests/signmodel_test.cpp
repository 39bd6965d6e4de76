// The sign model: frames split from a byte stream and applied to three rows.

#include "display/signmodel.h"

#include <gtest/gtest.h>

#include "support/displaybytes.h"

namespace zelvan {
namespace {

using testing::bytes;
using testing::esc;

std::string text(int row, int column, const std::string& body) {
    return bytes({0x01, 0x20, 0x1F + row, 0x1F + column}) + body + bytes({0x01});
}

std::string padded(const std::string& s) {
    return s + std::string(32 - s.size(), ' ');
}

TEST(SignModelTest, TextLandsFromItsColumnAndClearRowBlanksTheRow) {
    SignModel sign;
    sign.feed(text(1, 1, "HELLO") + text(2, 30, "ABC") + text(3, 5, "xyz"));
    EXPECT_EQ(sign.row(1), padded("HELLO"));
    EXPECT_EQ(sign.row(2), padded(std::string(29, ' ') + "ABC"));
    EXPECT_EQ(sign.rowThroughReflector(2), padded("CBA"));
    sign.feed(bytes({0x01, 0x20, 0x21, 0x20, 0x0F, 0x01}));
    EXPECT_EQ(sign.row(2), padded(""));
    EXPECT_EQ(sign.row(1), padded("HELLO"));
    EXPECT_EQ(sign.frames, 4);
}

TEST(SignModelTest, TextPastTheRowIsClippedAndCounted) {
    SignModel sign;
    sign.feed(text(1, 30, "ABCDE"));
    EXPECT_EQ(sign.row(1), padded(std::string(29, ' ') + "ABC"));
    sign.feed(bytes({0x01, 0x20, 0x20, 0x1E, 'x', 'y', 'z', 0x01}));  // column -1
    EXPECT_EQ(sign.row(1).substr(0, 2), "z ");
    EXPECT_EQ(sign.clippedChars, 4);
}

TEST(SignModelTest, ControlFramesSetBrightnessBoardAndRollRows) {
    SignModel sign;
    sign.feed(text(1, 1, "one") + text(2, 1, "two") + text(3, 1, "three"));
    sign.feed(bytes({0x01, 0x20, 0x7F, 0x2F, 0x01}));
    EXPECT_FALSE(sign.bright);
    sign.feed(bytes({0x01, 0x20, 0x7F, 0x46, 0x20, 0x20, 0x01}));
    EXPECT_EQ(sign.row(1), padded("two"));
    EXPECT_EQ(sign.row(2), padded("three"));
    EXPECT_EQ(sign.row(3), padded(""));
    sign.feed(bytes({0x01, 0x20, 0x7F, 0x20, 0x01}));
    EXPECT_TRUE(sign.bright);
    sign.feed(bytes({0x01, 0x20, 0x7F, 0x7E, 0x28, 0x01}));
    EXPECT_FALSE(sign.frontBoard);
    EXPECT_TRUE(sign.boardReversed);
    sign.feed(bytes({0x01, 0x20, 0x7F, 0x7E, 0x25, 0x01}));
    EXPECT_TRUE(sign.frontBoard);
    EXPECT_FALSE(sign.boardReversed);
    sign.feed(bytes({0x01, 0x20, 0x7F, 0x7E, 0x20, 0x01}));
    sign.feed(bytes({0x01, 0x20, 0x7F, 0x45, 0x20, 0x20, 0x01}));
    EXPECT_EQ(sign.row(1), padded(""));
    EXPECT_EQ(sign.rollups, 1);
    EXPECT_EQ(sign.resets, 1);
    EXPECT_EQ(sign.boardResets, 1);
    EXPECT_EQ(sign.unknownFrames, 0);
}

TEST(SignModelTest, ReadsAStreamCutAnywhereAndSkipsWhatIsNoFrame) {
    const std::string stream = bytes({'j', 'u', 'n', 'k'}) + text(1, 1, "AB") +
                               bytes({0x01, 0x01, 0x20, 0x7F, 0x2F, 0x01}) +  // stray 01 in front
                               bytes({0x01, 0x20, 0x7F, 0x99, 0x01}) +        // unknown code
                               bytes({0x01, 0x55, 0x01}) +                    // no header
                               text(2, 1, "CD");
    SignModel whole;
    whole.feed(stream);
    SignModel piecewise;
    for (char b : stream) piecewise.feed(std::string(1, b));
    EXPECT_EQ(piecewise.dump(), whole.dump());
    EXPECT_EQ(whole.row(1), padded("AB"));
    EXPECT_EQ(whole.row(2), padded("CD"));
    EXPECT_FALSE(whole.bright);
    EXPECT_EQ(whole.strayBytes, 5);
    EXPECT_EQ(whole.unknownFrames, 2);
    EXPECT_EQ(whole.frames, 3);
}

TEST(SignModelTest, DumpShowsRowsAndState) {
    SignModel sign;
    sign.feed(text(1, 1, "A\x7F"));
    EXPECT_EQ(sign.dump(),
              esc("|A^7F") + std::string(30, ' ') + "|\n|" + std::string(32, ' ') + "|\n|" +
                  std::string(32, ' ') +
                  "|\nbright front frames=1 rollups=0 resets=0 boardResets=0 stray=0 unknown=0 "
                  "clipped=0\n");
}

}  // namespace
}  // namespace zelvan
