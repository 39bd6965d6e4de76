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

// The keyboard and serial windows enter their capture loop inside showForm,
// so their flag has to be up first, or the loop would feed nobody; the others
// raise it after.
TEST_F(SelectionTest, FiltersThatCaptureInShowFormAreFedByTheirOwnLoop) {
    for (FilterKind kind : {FilterKind::Key, FilterKind::L21Serial}) {
        FakeFilter* shown = nullptr;
        rig.shell.onMake = [&](FilterKind, FakeFilter& f) {
            shown = &f;
            f.onShow = [&] { tavo.captureLoop(); };
        };
        rig.dispatch.postAt(rig.dispatch.nowMs() + 10, [&] { rig.queue("typed"); });
        rig.dispatch.postAt(rig.dispatch.nowMs() + 20, [&] { tavo.stopCapture(); });
        console.select(kind);
        ASSERT_NE(shown, nullptr);
        EXPECT_EQ(shown->received, "typed");
    }
    rig.shell.onMake = [&](FilterKind, FakeFilter& f) {
        f.onShow = [&] { EXPECT_FALSE(tavo.bInAscii) << "raised after showForm"; };
    };
    console.select(FilterKind::Ascii);
    EXPECT_TRUE(tavo.bInAscii);
}

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
