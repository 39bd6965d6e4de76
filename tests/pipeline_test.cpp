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

// --- one turn of the drain ---

// A null byte ends the turn: it is counted, not shown, and the bytes behind
// it wait. Control bytes show as red letters in the read pane. Bytes keep
// their order across the end of the ring.
TEST_F(PipelineTest, DrainShowsCountsAndPassesBytesInOrderUntilANull) {
    EXPECT_EQ(drained(std::string("\r\n\x14Hi\x7f\xe9\0B", 9)), "\r\n\x14Hi\x7f\xe9");
    EXPECT_EQ(rig.view().status, "null byte");
    EXPECT_EQ(rig.view().read.dump(), "{MJT}Hi\x7f\xe9");
    EXPECT_EQ(rig.view().raw.dump(), "\r\n\x14Hi\x7f\xe9");  // all black
    tavo.drainQueue();
    EXPECT_EQ(filter->received,
              "\r\n\x14Hi\x7f\xe9"
              "B");
    EXPECT_EQ(rig.view().status, "");
    EXPECT_EQ(rig.view().totChars, "9");

    const std::string wrap(1100, 'w');
    for (std::size_t at = 0; at < wrap.size(); at += 500) drained(wrap.substr(at, 500));
    EXPECT_EQ(filter->received.substr(8), wrap);
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
// A stop raised before the loop is entered counts for nothing.
TEST_F(PipelineTest, LoopDrainsPostedBytesAndWritesOneMarkerPair) {
    tavo.stopCapture();
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

// --- timed waits ---

// A wait started inside another re-arms the one timer, so both end together.
TEST_F(PipelineTest, BytesFlowDuringATimedWaitAndANestedWaitEndsWithIt) {
    long long innerEnded = -1;
    rig.dispatch.postAt(400, [&] { rig.queue("during"); });
    rig.dispatch.postAt(1000, [&] {
        tavo.timedWait(1500);
        innerEnded = rig.dispatch.nowMs();
    });
    tavo.timedWait(1500);
    EXPECT_EQ(filter->received, "during");
    EXPECT_EQ(innerEnded, 2500);
    EXPECT_EQ(rig.dispatch.nowMs(), 2500);
    EXPECT_FALSE(tavo.GeneralTimer->enabled());
}

TEST_F(PipelineTest, AQuietLoopWaitsForEventsInsteadOfSpinning) {
    rig.dispatch.postAt(60000, [&] { tavo.stopCapture(); });
    tavo.captureLoop();
    EXPECT_LT(rig.dispatch.yieldCount(), 10);
}

}  // namespace
}  // namespace zelvan
