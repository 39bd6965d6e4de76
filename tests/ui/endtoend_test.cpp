// The road from a decoder box to the sign, through the real program: started
// offscreen with COM1 and COM2 mapped to pseudo-terminals, fed line-21 bytes on
// one and read back as frames on the other, through a model of the sign.

#include <gtest/gtest.h>

#include "display/signmodel.h"
#include "support/programrig.h"
#include "support/testdata.h"

namespace zelvan {
namespace {

using testing::l21Pair;
using testing::popOnCaption;
using testing::ProgramRig;

const std::string kBright("\x01\x20\x7F\x20\x01", 5);
const std::string kDim("\x01\x20\x7F\x2F\x01", 5);
const std::string kRollup("\x01\x20\x7F\x46\x20\x20\x01", 7);

std::string trimmed(const std::string& s) {
    const auto first = s.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

struct EndToEnd : ::testing::Test {
    explicit EndToEnd(const std::string& extraIni = "") : rig(ZELVAN_BINARY, extraIni) {}
    ProgramRig rig;
    SignModel sign;

    // Up once the display has its startup caption and the decoder port is held.
    void SetUp() override {
        ASSERT_TRUE(rig.running());
        ASSERT_TRUE(rig.waitUntil([&] { return rig.holds(rig.box.slave); }, 20000))
            << "the program never opened the decoder port";
        rig.waitUntil([] { return false; }, 500);  // lets the open's purge pass
        sign.feed(rig.signBytes);
    }

    // Sends bytes and collects what reaches the sign until `done` holds.
    std::string exchange(const std::string& bytes, const std::function<bool()>& done, int ms) {
        const std::size_t before = rig.signBytes.size();
        rig.sendToBox(bytes);
        rig.waitUntil(
            [&] {
                sign = SignModel();
                sign.feed(rig.signBytes);
                return done();
            },
            ms);
        return rig.signBytes.substr(before);
    }

    bool signShows(const std::string& text) {
        for (int r = 1; r <= 3; ++r)
            if (trimmed(sign.rowThroughReflector(r)) == text) return true;
        return false;
    }
};

TEST_F(EndToEnd, StartupCaptionStandsOnTheSignReversed) {
    EXPECT_TRUE(rig.waitUntil(
        [&] {
            sign = SignModel();
            sign.feed(rig.signBytes);
            return signShows("Welcome to Halvane Captions.");
        },
        5000))
        << sign.dump();
    EXPECT_EQ(trimmed(sign.row(1)), ".snoitpaC enavlaH ot emocleW");
}

TEST_F(EndToEnd, PopOnCaptionGoesOutDimErasedRowsBright) {
    const std::string frames = exchange(
        popOnCaption("Hello there"), [&] { return signShows("Hello there") && sign.bright; }, 5000);
    ASSERT_TRUE(signShows("Hello there")) << sign.dump();
    EXPECT_EQ(frames.rfind(kDim, 0), 0u) << "the repaint starts dimmed";
    EXPECT_EQ(frames.substr(frames.size() - kBright.size()), kBright) << "and ends bright";
    EXPECT_TRUE(sign.bright);
    bool reversedOnTheSign = false;
    for (int r = 1; r <= 3; ++r) reversedOnTheSign |= trimmed(sign.row(r)) == "ereht olleH";
    EXPECT_TRUE(reversedOnTheSign) << sign.dump();
}

TEST_F(EndToEnd, RollUpLinesGoOutOneFrameEachAndAPauseFlushesAPartialLine) {
    std::string setup;
    for (int i = 0; i < 2; ++i) setup += l21Pair(0x14, 0x25);  // roll-up, two rows
    for (int i = 0; i < 2; ++i) setup += l21Pair(0x14, 0x70);  // row 15, column 1
    const std::string cr = l21Pair(0x14, 0x2D) + l21Pair(0x14, 0x2D);

    const std::string first = exchange(
        setup + "First line" + cr, [&] { return signShows("First line"); }, 5000);
    ASSERT_TRUE(signShows("First line")) << sign.dump();
    EXPECT_EQ(first.find(kBright), 0u);
    EXPECT_NE(first.find(kRollup), std::string::npos);
    EXPECT_EQ(trimmed(sign.rowThroughReflector(3)), "First line");

    // The line ended, so the flush timer runs: a partial line goes out after a pause.
    const auto sent = ProgramRig::Clock::now();
    exchange(
        "Partial", [&] { return signShows("Partial"); }, 9000);
    const auto waited =
        std::chrono::duration_cast<std::chrono::milliseconds>(ProgramRig::Clock::now() - sent)
            .count();
    EXPECT_TRUE(signShows("Partial")) << sign.dump();
    EXPECT_GT(waited, 3000) << "sent before any pause";
    EXPECT_EQ(trimmed(sign.rowThroughReflector(2)), "First line");
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
    const auto shown = [&] {
        return signShows("Yes, I'm supporting") && signShows("Donald Trump.");
    };
    exchange(opening, shown, 5000);
    EXPECT_TRUE(shown()) << sign.dump();
}

}  // namespace
}  // namespace zelvan
