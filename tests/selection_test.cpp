// Selecting an input filter: which selections stop capture, how long they
// yield, when the flag goes up, and what happens to a loop already running.

#include <gtest/gtest.h>

#include "support/fakes.h"

namespace zelvan {
namespace {

using testing::FakeFilter;
using testing::Log;
using testing::Rig;

struct SelectionTest : ::testing::Test {
    Rig rig;
    Tavo& tavo = rig.tavo;
    MainConsole& console = rig.console();
};

struct SelectionCase {
    FilterKind kind;
    bool stops;
    long long minYields;
    bool flagUpDuringShow;
};

class SelectionRules : public SelectionTest, public ::testing::WithParamInterface<SelectionCase> {};

TEST_P(SelectionRules, StopYieldsAndFlagOrderFollowTheHandler) {
    const SelectionCase c = GetParam();
    bool flagSeenInShow = false;
    bool stopSeenInShow = false;
    rig.shell.onMake = [&](FilterKind, FakeFilter& f) {
        f.onShow = [&] {
            flagSeenInShow = tavo.flag(c.kind);
            stopSeenInShow = tavo.bStopCapture;
        };
    };
    const long long yieldsBefore = rig.dispatch.yieldCount();
    console.select(c.kind);
    EXPECT_EQ(stopSeenInShow, c.stops);
    EXPECT_EQ(flagSeenInShow, c.flagUpDuringShow);
    EXPECT_TRUE(tavo.flag(c.kind));
    EXPECT_EQ(tavo.filterRef(c.kind), rig.shell.lastFilter);
    EXPECT_EQ(rig.dispatch.yieldCount() - yieldsBefore, c.minYields);
}

INSTANTIATE_TEST_SUITE_P(EachHandler, SelectionRules,
                         ::testing::Values(SelectionCase{FilterKind::L21Serial, true, 0, true},
                                           SelectionCase{FilterKind::L21USB, true, 10000, false},
                                           SelectionCase{FilterKind::Ascii, false, 0, false},
                                           SelectionCase{FilterKind::Key, false, 0, true},
                                           SelectionCase{FilterKind::TDS, true, 0, false}));

TEST_F(SelectionTest, TheFilterGivenUpIsHiddenBeforeTheNewOneShowsAndForgotten) {
    console.obIFKey_Click();
    rig.log.clear();
    console.obIFAscii_Click();
    EXPECT_EQ(rig.log, (Log{"Key.hideForm", "Ascii.showForm"}));
    EXPECT_FALSE(tavo.bInKey);
    EXPECT_EQ(tavo.frmInKey, nullptr);
}

TEST_F(SelectionTest, StartUpsRaisedFlagIsNotTakenForAnotherFilter) {
    tavo.bInL21Serial = true;  // start-up raises it before it selects the filter
    console.obIFL21Serial_Click();
    EXPECT_EQ(rig.log, (Log{"mainWindow", "L21Serial.showForm"}));
}

TEST_F(SelectionTest, BoardSelectedWhileSerialCapturesStopsTheOldLoopAfterTheHandler) {
    std::vector<std::string> events;
    rig.shell.onMake = [&](FilterKind kind, FakeFilter& f) {
        if (kind == FilterKind::L21Serial) {
            f.onShow = [&] { tavo.captureLoop(); };  // the port opened: capture runs
            f.onHide = [&] { events.push_back(tavo.bStopCapture ? "hide with stop up" : "hide"); };
        }
    };
    rig.dispatch.postAt(100, [&] {
        console.obIFL21USB_Click();
        events.push_back("board handler returned");
    });
    console.obIFL21Serial_Click();  // returns only when the loop ends
    events.push_back("serial selection returned");
    EXPECT_EQ(events, (std::vector<std::string>{"hide with stop up", "board handler returned",
                                                "serial selection returned"}));
    EXPECT_TRUE(tavo.bInL21USB);
    EXPECT_FALSE(tavo.bInL21Serial);
    EXPECT_NE(rig.view().raw.text().find("[*** END CAPTURE ***]"), std::string::npos);
}

TEST_F(SelectionTest, AsciiSelectedWhileKeyboardCapturesKeepsTheLoopForTheNewFilter) {
    rig.shell.onMake = [&](FilterKind kind, FakeFilter& f) {
        if (kind == FilterKind::Key) f.onShow = [&] { tavo.captureLoop(); };
    };
    FakeFilter* ascii = nullptr;
    rig.dispatch.postAt(100, [&] {
        console.obIFAscii_Click();
        ascii = rig.shell.lastFilter;
    });
    rig.dispatch.postAt(200, [&] { rig.queue("still here"); });
    rig.dispatch.postAt(300, [&] { tavo.stopCapture(); });
    console.obIFKey_Click();
    ASSERT_NE(ascii, nullptr);
    EXPECT_EQ(ascii->received, "still here");
}

}  // namespace
}  // namespace zelvan
