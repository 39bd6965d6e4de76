// The real program playing the simulated board's recording: its captions reach
// the sign at the pace of the timecodes, byte for byte as from a decoder box.

#include <gtest/gtest.h>

#include "support/logicframes.h"
#include "support/programrig.h"
#include "support/testdata.h"

namespace zelvan {
namespace {

using testing::ProgramRig;
using testing::signShows;

TEST(BoardEndToEnd, AShortRecordingReachesTheSignInRealTimeAsFromADecoderBox) {
    const std::string path = testing::samplePath("popon-short.scc");
    // Its first two lines: a caption, and 2 s after the first timecode its erase.
    SccRecording head = testing::sample("popon-short.scc");
    head.lines.resize(2);
    const std::string expected = testing::logicFrames(head.stream());

    ProgramRig rig(ZELVAN_BINARY,
                   "[General]\nInputFilterType=2\n[Board]\nRecording=" + path + "\n");
    ASSERT_TRUE(rig.running());
    const std::string caption = "( horn ho";
    ASSERT_TRUE(rig.waitUntil([&] { return signShows(rig.signBytes, caption); }, 20000, 1))
        << "the caption never reached the sign";
    const auto shown = ProgramRig::Clock::now();
    ASSERT_TRUE(rig.waitUntil([&] { return !signShows(rig.signBytes, caption); }, 5000, 1));
    const auto erased = ProgramRig::Clock::now();
    // The erase's last frames follow; the next caption is half a minute away.
    rig.waitUntil([&] { return rig.signBytes.ends_with(expected); }, 5000, 1);

    // The caption flips into view at frame 20 and is erased at frame 60.
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(erased - shown).count();
    EXPECT_NEAR(ms, (60 - 20) * 1001 / 30, 400);  // room for a busy machine
    ASSERT_GE(rig.signBytes.size(), expected.size());
    EXPECT_EQ(rig.signBytes.substr(rig.signBytes.size() - expected.size()), expected);
}

}  // namespace
}  // namespace zelvan
