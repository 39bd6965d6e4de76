// The demo's decoder box and its reader of the sign.

#include <gtest/gtest.h>

#include "demo/captionwatch.h"
#include "demo/sccplayer.h"
#include "support/displayfakes.h"

namespace zelvan {
namespace {

using testing::bytes;
using Clock = SccPlayer::Clock;
using std::chrono::milliseconds;

// Frames 0 and 30 are a second apart at 29.97 frames a second, half that at
// 2x; a player stops after the last word, or starts over after a pause.
TEST(DemoBox, PlaysOnceOrLoopsAndReportsEachCaptionOnceTheSignStandsStill) {
    const std::vector<SccTimedWord> schedule{{0, 0x9420}, {30, 0xC845}};
    const Clock::time_point t0{}, lastWord = t0 + milliseconds(501);
    for (const bool loop : {false, true}) {
        SccPlayer player(schedule, 2.0, loop);
        player.start(t0);
        EXPECT_EQ(player.due(t0 + milliseconds(490)), bytes({0x14, 0x20}));
        EXPECT_EQ(player.due(t0 + milliseconds(510)), "HE");
        EXPECT_EQ(player.due(lastWord + SccPlayer::kLoopPause - milliseconds(5)), "");
        EXPECT_EQ(player.due(lastWord + SccPlayer::kLoopPause + milliseconds(5)),
                  loop ? bytes({0x14, 0x20}) : "");
        EXPECT_EQ(player.finished(), !loop);
    }

    // A caption is reported once the sign stands still, as the reflector reads it.
    RecordingDisplayLink link;
    DisplayProtocol sign{link};
    CaptionWatch watch;
    const auto show = [&](int ms) {
        watch.take(link.bytes(), t0 + milliseconds(ms));
        link.clear();
    };
    const auto settled = [&](int ms) { return watch.settled(t0 + milliseconds(ms)); };
    sign.writeLine("ab\x95", 1, 1);  // reversed on the wire, the note as 7F
    sign.writeLine("cd", 3, 1);
    show(0);
    EXPECT_FALSE(settled(1)) << "frames may still be coming";
    EXPECT_EQ(settled(10), "ab\u266A / cd");
    EXPECT_FALSE(settled(20)) << "reported once";
    sign.DWErase();
    show(30);
    EXPECT_FALSE(settled(40)) << "a blank sign is no caption";
    sign.writeLine("cd", 3, 1);
    show(50);
    EXPECT_EQ(settled(60), "cd") << "the same text after a blank";
}

}  // namespace
}  // namespace zelvan
