// The road from a decoder box to the sign, through the real program: started
// offscreen with COM1 and COM2 mapped to pseudo-terminals, fed line-21 bytes on
// one and read back as frames on the other, through a model of the sign.

#include <gtest/gtest.h>

#include "display/signmodel.h"
#include "support/logicframes.h"
#include "support/programrig.h"
#include "support/testdata.h"

namespace zelvan {
namespace {

using testing::l21Pair;
using testing::popOnCaption;
using testing::ProgramRig;

std::string trimmed(const std::string& s) {
    const auto first = s.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

struct EndToEnd : ::testing::Test {
    explicit EndToEnd(const std::string& extraIni = "") : rig(ZELVAN_BINARY, extraIni) {}
    ProgramRig rig;
    SignModel sign;

    // Up once the decoder port is held and the open's purge has passed.
    void SetUp() override {
        ASSERT_TRUE(rig.running());
        ASSERT_TRUE(rig.waitUntil([&] { return rig.holds(rig.box.slave); }, 20000))
            << "the program never opened the decoder port";
        rig.waitUntil([] { return false; }, 500);
    }

    // Waits until the sign, fed all it got, passes `done`.
    bool signPasses(const std::function<bool()>& done, int ms) {
        return rig.waitUntil(
            [&] {
                sign = SignModel();
                sign.feed(rig.signBytes);
                return done();
            },
            ms);
    }
    bool signShows(const std::string& text) {
        for (int r = 1; r <= 3; ++r)
            if (trimmed(sign.rowThroughReflector(r)) == text) return true;
        return false;
    }
    bool signEndsWith(const std::string& frames) {
        const std::string& got = rig.signBytes;
        return got.size() >= frames.size() &&
               got.compare(got.size() - frames.size(), frames.size(), frames) == 0;
    }
};

// The startup caption stands reversed for the reflector; a pop-on caption and
// then roll-up lines leave byte for byte as the logic sends them.
TEST_F(EndToEnd, CaptionsFromTheSerialDecoderReachTheSignAsTheLogicSendsThem) {
    EXPECT_TRUE(signPasses([&] { return signShows("Welcome to Halvane Captions."); }, 5000))
        << sign.dump();
    EXPECT_EQ(trimmed(sign.row(1)), ".snoitpaC enavlaH ot emocleW");

    const std::string popOn = popOnCaption("Hello there");
    std::string rollUp;
    for (int code : {0x25, 0x25, 0x70, 0x70}) rollUp += l21Pair(0x14, code);  // two rows, at 15
    rollUp += "First line" + l21Pair(0x14, 0x2D) + l21Pair(0x14, 0x2D);
    rig.sendToBox(popOn);
    const std::string popOnFrames = testing::logicFrames(popOn);
    EXPECT_TRUE(rig.waitUntil([&] { return signEndsWith(popOnFrames); }, 5000));
    EXPECT_TRUE(signPasses([&] { return signShows("Hello there") && sign.bright; }, 100))
        << sign.dump();
    rig.sendToBox(rollUp);
    const std::string bothFrames = testing::logicFrames(popOn + rollUp);
    EXPECT_TRUE(rig.waitUntil([&] { return signEndsWith(bothFrames); }, 5000));
    EXPECT_TRUE(signPasses([&] { return signShows("First line"); }, 100)) << sign.dump();
}

struct BroadcastEndToEnd : EndToEnd {
    BroadcastEndToEnd() : EndToEnd("[L21Decoder]\nEdmKeepsPosition=True\n") {}
};

// The news broadcaster erases the screen in the middle of loading its third
// caption; with the setting read at start-up the caption keeps its order.
TEST_F(BroadcastEndToEnd, NewsCaptionLoadedAcrossAnEdmReachesTheSignAsViewersSawIt) {
    std::string opening;
    for (const SccLine& line : testing::sample("news-2018-12-17-popon.scc").lines)
        if (line.frame < 18 * 30) opening += line.bytes();
    rig.sendToBox(opening);
    EXPECT_TRUE(signPasses(
        [&] { return signShows("Yes, I'm supporting") && signShows("Donald Trump."); }, 5000))
        << sign.dump();
}

}  // namespace
}  // namespace zelvan
