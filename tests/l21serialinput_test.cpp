// The line-21 serial window's rules over a fake port on virtual time: opening
// and capturing, the way bytes from the box reach the caption memory, the
// flush timer, a selection made while capturing (hideForm) and the test button.

#include <gtest/gtest.h>

#include <algorithm>

#include "line21/l21serialinput.h"
#include "support/fakes.h"
#include "support/fakeserialport.h"
#include "support/l21fakes.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

using testing::Log;
using testing::Rig;

const std::string kBlankBank = InL21().memoryText(1);

const std::string kPopOnHi = testing::popOnCaption("Hi");
// Into roll-up, at row 15.
const std::string kRollUpStart = "\x14\x25\x14\x25\x14\x70\x14\x70";
const std::string kCR = "\x14\x2D\x14\x2D";

struct L21SerialTest : ::testing::Test {
    Rig rig;
    Tavo& tavo = rig.tavo;
    FakeSerialPort port{rig.dispatch};
    InL21 memory;
    testing::RecordingL21SerialView view;
    testing::CaptionRecorder display{rig.tavo};
    std::unique_ptr<L21SerialInput> input;

    L21SerialTest() {
        rig.console();
        display.stamp = [this] { return std::to_string(rig.dispatch.nowMs()) + ":"; };
        tavo.frmOutDW = &display;
        tavo.bOutDW = true;
        input = std::make_unique<L21SerialInput>(tavo, memory, port, view);
    }
    // As the selection does it: the flag up first, then showForm.
    void select() {
        tavo.frmL21Serial = input.get();
        tavo.bInL21Serial = true;
        input->showForm();
    }
    void deliverAt(long long ms, const std::string& bytes) {
        rig.dispatch.postAt(ms, [this, bytes] { port.deliver(bytes); });
    }
    void closeAt(long long ms) {
        rig.dispatch.postAt(ms, [this] { input->cmdPortOpen_Click(); });
    }
    int markers(const char* text) const {
        const std::string& pane = rig.shell.view.read.text();
        int n = 0;
        for (auto at = pane.find(text); at != std::string::npos; at = pane.find(text, at + 1)) ++n;
        return n;
    }
};

// showForm in its order, with the stored section and channel CC1; the port
// doesn't open, so there is one message, no capture, and the window stays.
TEST_F(L21SerialTest, PortThatWontOpenGivesOneMessageNoCaptureAndTheWindowStays) {
    rig.store.set("L21Port", "baud", "9600");
    memory.iChannel = 5;
    port.failNextOpen("No such file or directory");
    view.calls.clear();
    select();  // returns: no capture loop to stay in
    EXPECT_EQ(view.calls, (Log{"place", "setup:1:9600,o,7,1", "channel:0", "show",
                               "box:Couldn't open port.|No such file or directory"}));
    EXPECT_EQ(memory.iChannel, 0);
    EXPECT_EQ(tavo.InputFilterType, 1);
    EXPECT_EQ(markers("START CAPTURE"), 0);
    EXPECT_TRUE(view.visible);
    EXPECT_EQ(view.openCaption, kCaptionOpen);
    EXPECT_EQ(view.dm, kBlankBank);  // the panes show the memory all the same
}

// Bytes already on the ring from before are dropped when the port opens; what
// the box sends goes through the capture loop into the caption memory and
// the panes, and the history panes see it.
TEST_F(L21SerialTest, BytesFromTheBoxReachTheCaptionMemoryThroughTheCaptureLoop) {
    rig.queue(
        "\x14\x2C"
        "stale");
    rig.dispatch.postAt(50, [this] { EXPECT_EQ(view.openCaption, kCaptionClose); });
    deliverAt(100, kPopOnHi.substr(0, 9));
    deliverAt(200, kPopOnHi.substr(9));
    closeAt(1000);
    select();  // returns when the close stops capture
    EXPECT_NE(view.dm.find("Hi"), std::string::npos);
    EXPECT_EQ(display.captions, (std::vector<std::string>{"200:1: 15[Hi]"}));
    EXPECT_EQ(rig.shell.view.read.text().find("stale"), std::string::npos);
    EXPECT_EQ(markers("END CAPTURE"), 1);
}

// The first roll-up line waits for its CR, since the timer isn't running yet.
// From the first finished line on, a pause ends a partial line 5 seconds after
// the last line with text ended. A silent stream then changes nothing, however
// often the timer fires.
TEST_F(L21SerialTest, FlushTimerEndsAPartialRollUpLineAndLeavesSilenceAlone) {
    deliverAt(100, kRollUpStart + "AB");
    deliverAt(10000, kCR);
    deliverAt(11000, "CD");
    deliverAt(12000, kCR);
    deliverAt(13000, "EF");
    std::string memoryOnceSilent;
    rig.dispatch.postAt(22100, [&] { memoryOnceSilent = memory.dump(); });
    closeAt(60000);
    select();
    EXPECT_EQ(display.captions,
              (std::vector<std::string>{"10000:3: 15[AB]", "12000:3: 15[CD]", "17000:3: 15[EF]"}));
    EXPECT_EQ(memory.dump(), memoryOnceSilent);
    // The pair is counted and shown like received bytes.
    EXPECT_NE(rig.shell.view.read.dump().find("EF{T}-"), std::string::npos);
}

// Selecting the board filter while this one captures: the stop goes up, this
// window stops its flush timer, closes its port and saves its section, and the
// old loop ends once the handler has returned to it. No flush pair is queued
// for the board filter, which wouldn't reset the ring.
TEST_F(L21SerialTest, SelectingAnotherFilterWhileCapturingEndsThisOneCleanly) {
    deliverAt(100, kRollUpStart + "AB" + kCR);
    rig.dispatch.postAt(300, [this] { port.setBaud(4800); });
    bool closedBeforeTheNextShows = false;
    rig.shell.onMake = [&](FilterKind, testing::FakeFilter&) {
        closedBeforeTheNextShows = !port.openState() && tavo.bStopCapture && !view.visible;
    };
    rig.dispatch.postAt(1000, [this] { rig.console().obIFL21USB_Click(); });
    select();
    EXPECT_TRUE(closedBeforeTheNextShows);
    EXPECT_TRUE(tavo.bInL21USB);
    EXPECT_EQ(markers("END CAPTURE"), 1);
    EXPECT_EQ(rig.store.get("L21Port", "baud", ""), "4800");
    EXPECT_EQ(memory.view, nullptr);

    const std::int32_t counted = tavo.totalChars;
    rig.dispatch.advance(30000);
    EXPECT_EQ(tavo.totalChars, counted);
}

// A new window starts from blank memory; the test button writes the rows on
// show, wherever the flips have left the displayed bank.
TEST_F(L21SerialTest, NewWindowStartsBlankAndTheTestButtonWritesTheDisplayedRows) {
    memory.fillMemory(1);
    memory.fillMemory(2);
    L21SerialInput again(tavo, memory, port, view);
    EXPECT_EQ(memory.memoryText(1) + memory.memoryText(2), kBlankBank + kBlankBank);
    memory.flipMemory();
    again.Command1_Click();
    EXPECT_EQ(memory.getExternalTextL21(1) + "|" + memory.getExternalTextL21(2),
              "this is line 1|this is line 2");
    EXPECT_EQ(memory.memoryText(memory.iNM), kBlankBank);
}

}  // namespace
}  // namespace zelvan
