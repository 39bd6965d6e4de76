// The sign model: frames split from any cut of the stream, nothing rejected.
// Text, clear-row and roll-up frames are checked through the end-to-end tests.

#include "display/signmodel.h"

#include <gtest/gtest.h>

#include "support/displayfakes.h"

namespace zelvan {
namespace {

using testing::bytes;

TEST(SignModelTest, ReadsAStreamCutAnywhereAndCountsWhatIsNoFrame) {
    const std::string stream = "junk" + bytes({1, 0x20, 0x21, 0x3F, 'A', 'B', 1}) +
                               bytes({1, 1, 0x20, 0x7F, 0x2F, 1}) +  // a stray 01 in front
                               bytes({1, 0x20, 0x7F, 0x7E, 0x28, 1}) +
                               bytes({1, 0x20, 0x7F, 0x99, 1, 1, 0x55, 1});
    SignModel whole, piecewise;
    whole.feed(stream);
    for (char b : stream) piecewise.feed(std::string(1, b));
    EXPECT_EQ(piecewise.dump(), whole.dump());
    EXPECT_EQ(whole.row(2), std::string(31, ' ') + "A");
    EXPECT_EQ(whole.clippedChars, 1);
    EXPECT_FALSE(whole.bright);
    EXPECT_FALSE(whole.frontBoard);
    EXPECT_TRUE(whole.boardReversed);
    EXPECT_EQ(whole.strayBytes, 5);
    EXPECT_EQ(whole.unknownFrames, 2);
    EXPECT_EQ(whole.frames, 3);
}

}  // namespace
}  // namespace zelvan
