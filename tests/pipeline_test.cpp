// The capture pipeline: the ring, the drain into panes and filter, the capture
// loops and the timed waits, all on virtual time.

#include <gtest/gtest.h>

#include "support/fakes.h"

namespace zelvan {
namespace {

using testing::FakeFilter;
using testing::Rig;

struct PipelineTest : ::testing::Test {
    Rig rig;
    Tavo& tavo = rig.tavo;
    FakeFilter* filter = nullptr;

    void SetUp() override {
        rig.console().obIFAscii_Click();  // a filter that starts nothing
        filter = rig.shell.lastFilter;
    }
    std::string drained(const std::string& bytes) {
        rig.queue(bytes);
        tavo.drainQueue();
        return filter->received;
    }
};

// --- the ring ---

TEST_F(PipelineTest, CursorsWrapFrom1024To1AndKeepByteOrder) {
    std::string first(1000, 'a');
    EXPECT_EQ(drained(first), first);
    EXPECT_EQ(drained("0123456789012345678901234567890123456789"),
              first + "0123456789012345678901234567890123456789");
    EXPECT_EQ(tavo.rawQueueIn, tavo.rawQueueOut);
    EXPECT_EQ(tavo.rawQueueIn, 1040 - 1024 + 1);
}

// --- one turn of the drain ---

TEST_F(PipelineTest, NullByteEndsTheTurnAndIsCountedButNotShown) {
    EXPECT_EQ(drained(std::string("A\0B", 3)), "A");
    EXPECT_EQ(rig.view().status, "null byte");
    EXPECT_EQ(rig.view().read.text(), "A");
    tavo.drainQueue();
    EXPECT_EQ(filter->received, "AB");
    EXPECT_EQ(rig.view().status, "");
    EXPECT_EQ(rig.view().raw.text(), "AB");
    EXPECT_EQ(tavo.totalChars, 3);
    EXPECT_EQ(rig.view().totChars, "3");
}

TEST_F(PipelineTest, ControlBytesShowAsRedLettersAndHighBytesAsThemselves) {
    drained("\r\n\x14Hi\x7f\xe9");
    EXPECT_EQ(rig.view().read.dump(), "{MJT}Hi\x7f\xe9");
    EXPECT_EQ(rig.view().raw.text(), "\r\n\x14Hi\x7f\xe9");
    EXPECT_EQ(rig.view().raw.dump(), rig.view().raw.text());  // all black
}

TEST_F(PipelineTest, EachPaneClearsPastThirtyThousandAtTheNextByte) {
    rig.view().raw.insertText(std::string(30000, 'r'));
    rig.view().read.insertText(std::string(29999, 'd'));
    tavo.totalChars = 30000;
    drained("a");  // raw holds exactly 30000 before it: no clear; read reaches 30000
    EXPECT_EQ(rig.view().raw.length(), 30001);
    EXPECT_EQ(rig.view().read.length(), 30000);

    drained("b");  // raw holds 30001: cleared; read holds 30000: kept
    EXPECT_EQ(rig.view().raw.text(), "b");
    EXPECT_EQ(rig.view().read.length(), 30001);
    EXPECT_EQ(tavo.totalChars, 0);  // the raw pane's clearing resets the count

    drained("c");  // now the read pane clears, and the count goes on from 0
    EXPECT_EQ(rig.view().read.text(), "c");
    EXPECT_EQ(rig.view().raw.text(), "bc");
    EXPECT_EQ(rig.view().totChars, "1");
}

TEST_F(PipelineTest, EveryNonNullByteReachesTheDisplayWithItsStyle) {
    rig.console().chkOutDW_Click(1);
    filter->styleFor = [](char c) -> std::int16_t {
        return c == '\r' ? kStyleLineEnded : kStyleNothing;
    };
    drained(std::string("ab\0", 3));
    drained("\r");
    EXPECT_EQ(rig.shell.display->styles, (std::vector<std::int16_t>{0, 0, 3}));

    rig.console().chkOutDW_Click(0);
    drained("z");  // output closed: filtered, result dropped
    EXPECT_EQ(filter->received, "ab\rz");
    EXPECT_EQ(rig.shell.display->styles.size(), 3u);
}

TEST_F(PipelineTest, RowReadersFollowTheFirstFlagUpAndRejectRowsOutside) {
    drained("row one");
    EXPECT_EQ(tavo.getExternalText(1), "row one");
    EXPECT_EQ(tavo.getExternalText(0), "");
    EXPECT_EQ(tavo.getExternalText(16), "");
    tavo.bInAscii = false;
    EXPECT_EQ(tavo.getExternalText(1), "");
    EXPECT_EQ(tavo.getExternalTextTrimmed(1), "");
}

// --- capture loops ---

// The end marker takes the colour at the caret: red after a control byte.
TEST_F(PipelineTest, LoopDrainsPostedBytesAndWritesOneMarkerPair) {
    rig.dispatch.postAt(100, [&] { rig.queue("Hi\r"); });
    rig.dispatch.postAt(200, [&] { tavo.stopCapture(); });
    tavo.captureLoop();
    EXPECT_EQ(filter->received, "Hi\r");
    EXPECT_EQ(rig.view().read.dump(),
              "\r\n[*** START CAPTURE ***]\r\nHi{M\r\n[*** END CAPTURE ***]\r\n}");
}

TEST_F(PipelineTest, StackedLoopsEndInnermostFirstWithAMarkerPairEach) {
    std::vector<std::string> order;
    rig.dispatch.postAt(10, [&] {
        tavo.captureLoop();  // a handler that enters the loop again
        order.push_back("inner handler returned");
    });
    rig.dispatch.postAt(20, [&] { rig.queue("x"); });
    rig.dispatch.postAt(30, [&] { tavo.stopCapture(); });
    tavo.captureLoop();
    order.push_back("outer loop returned");
    EXPECT_EQ(order, (std::vector<std::string>{"inner handler returned", "outer loop returned"}));
    const std::string start = "\r\n[*** START CAPTURE ***]\r\n";
    const std::string end = "\r\n[*** END CAPTURE ***]\r\n";
    EXPECT_EQ(rig.view().raw.text(), start + start + "x" + end + end);
}

TEST_F(PipelineTest, AStopRaisedBeforeTheLoopIsEnteredCountsForNothing) {
    tavo.stopCapture();
    rig.dispatch.postAt(50, [&] { rig.queue("y"); });
    rig.dispatch.postAt(60, [&] { tavo.stopCapture(); });
    tavo.captureLoop();
    EXPECT_EQ(filter->received, "y");
}

// --- timed waits ---

TEST_F(PipelineTest, BytesKeepFlowingDuringATimedWait) {
    rig.dispatch.postAt(400, [&] { rig.queue("during"); });
    tavo.timedWait(1500);
    EXPECT_EQ(filter->received, "during");
    EXPECT_EQ(rig.dispatch.nowMs(), 1500);
    EXPECT_FALSE(tavo.GeneralTimer->enabled());
    EXPECT_EQ(tavo.GeneralTimer->interval(), 0);
}

TEST_F(PipelineTest, AWaitStartedInsideAnotherReArmsTheTimerAndBothEndTogether) {
    long long innerEnded = -1;
    rig.dispatch.postAt(1000, [&] {
        tavo.timedWait(1500);
        innerEnded = rig.dispatch.nowMs();
    });
    tavo.timedWait(1500);
    EXPECT_EQ(innerEnded, 2500);
    EXPECT_EQ(rig.dispatch.nowMs(), 2500);
}

TEST_F(PipelineTest, AQuietLoopWaitsForEventsInsteadOfSpinning) {
    rig.dispatch.postAt(60000, [&] { tavo.stopCapture(); });
    tavo.captureLoop();
    EXPECT_LT(rig.dispatch.yieldCount(), 10);
}

}  // namespace
}  // namespace zelvan
