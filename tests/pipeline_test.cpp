// The capture pipeline on virtual time: the ring and its drain, the capture
// loops and timed waits, the board poll, and selecting an input filter.

#include <gtest/gtest.h>

#include <map>

#include "support/fakes.h"

namespace zelvan {
namespace {

using testing::FakeFilter;

struct BoardFilter : FakeFilter {
    using FakeFilter::FakeFilter;
    void readBoard() override { ++reads; }
    int reads = 0;
};

struct PipelineTest : ::testing::Test, testing::Rig {
    MainConsole& console = testing::Rig::console();
    FakeFilter* filter = nullptr;

    void SetUp() override {
        console.obIFAscii_Click();  // a filter that starts nothing
        filter = shell.lastFilter;
    }
    std::string drained(const std::string& bytes) {
        queue(bytes);
        tavo.drainQueue();
        return filter->received;
    }
};

// A null byte ends the turn and the bytes behind it wait; control bytes show
// red in the read pane; order holds across the end of the ring.
TEST_F(PipelineTest, DrainShowsCountsAndPassesBytesInOrderUntilANullAndPanesClear) {
    console.chkOutDW_Click(1);
    filter->styleFor = [](char c) -> std::int16_t {
        return c == '\r' ? kStyleLineEnded : kStyleNothing;
    };
    EXPECT_EQ(drained(std::string("\r\n\x14Hi\x7f\xe9\0B", 9)), "\r\n\x14Hi\x7f\xe9");
    EXPECT_EQ(view().status, "null byte");
    EXPECT_EQ(view().read.dump(), "{MJT}Hi\x7f\xe9");
    EXPECT_EQ(view().raw.dump(), "\r\n\x14Hi\x7f\xe9");  // all black
    tavo.drainQueue();
    EXPECT_EQ(filter->received, std::string("\r\n\x14Hi\x7f\xe9") + "B");
    EXPECT_EQ(view().status, "");
    EXPECT_EQ(view().totChars, "9");
    EXPECT_EQ(shell.display->styles, (std::vector<std::int16_t>{3, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(tavo.getExternalTextTrimmed(1), filter->received);

    console.chkOutDW_Click(0);
    const std::string wrap(1100, 'w');
    for (std::size_t at = 0; at < wrap.size(); at += 500) drained(wrap.substr(at, 500));
    EXPECT_EQ(filter->received.substr(8), wrap);
    EXPECT_EQ(shell.display->styles.size(), 8u) << "output closed: filtered, result dropped";
    tavo.bInAscii = false;
    EXPECT_EQ(tavo.getExternalText(1), "");

    // A pane clears at the byte after it passed 30000; the raw one resets the count.
    view().raw.insertText(std::string(30000 - view().raw.length(), 'r'));
    view().read.insertText(std::string(30000 - view().read.length(), 'd'));
    drained("a");
    EXPECT_EQ(view().raw.length() + view().read.length(), 2 * 30001);
    drained("b");
    EXPECT_EQ(view().raw.text() + view().read.text(), "bb");
    EXPECT_EQ(tavo.totalChars, 0);
}

// One stop ends stacked loops, each writing its markers; an earlier stop counts for nothing.
TEST_F(PipelineTest, StackedLoopsEndInnermostFirstWithAMarkerPairEach) {
    tavo.stopCapture();
    dispatch.postAt(10, [&] { tavo.captureLoop(); });  // a handler enters it again
    dispatch.postAt(20, [&] { queue("x\r"); });
    dispatch.postAt(30, [&] { tavo.stopCapture(); });
    tavo.captureLoop();
    const std::string start = "\r\n[*** START CAPTURE ***]\r\n";
    const std::string end = "\r\n[*** END CAPTURE ***]\r\n";
    EXPECT_EQ(view().read.dump(), start + start + "x{M" + end + end + "}");
}

// A board raises no event: the loop and the waits poll it only while it is
// selected. A wait started inside another ends with it.
TEST_F(PipelineTest, AQuietLoopSleepsAndTheBoardIsReadOnEachTurnOnlyWhileSelected) {
    BoardFilter board("L21USB", log);
    tavo.frmL21USB = &board;
    dispatch.postAt(60000, [&] { tavo.stopCapture(); });
    tavo.captureLoop();
    EXPECT_LT(dispatch.yieldCount(), 10);
    tavo.timedWait(100);
    EXPECT_EQ(board.reads, 0);

    tavo.bInAscii = false;
    tavo.bInL21USB = true;
    const long long t = dispatch.nowMs();
    dispatch.postAt(t + 100, [&] { tavo.stopCapture(); });
    tavo.captureLoop();
    EXPECT_GE(board.reads, 100 / kBoardPollMs);
    const int inLoop = board.reads;
    long long innerEnded = -1;
    dispatch.postAt(t + 500, [&] { queue("during"); });
    dispatch.postAt(t + 1100, [&] {
        tavo.timedWait(1500);
        innerEnded = dispatch.nowMs() - t;
    });
    tavo.timedWait(1500);
    EXPECT_EQ(board.received, "during");
    EXPECT_EQ(innerEnded, 2600);
    EXPECT_EQ(dispatch.nowMs() - t, 2600);
    EXPECT_FALSE(tavo.GeneralTimer->enabled());
    EXPECT_GE(board.reads - inLoop, 2500 / kBoardPollMs);
}

// The keyboard and serial filters capture inside showForm, so their flag goes
// up first; a filter selected inside that loop is fed by it.
TEST_F(PipelineTest, FiltersThatCaptureInShowFormAreFedByTheirOwnLoop) {
    std::map<FilterKind, FakeFilter*> made;
    shell.onMake = [&](FilterKind kind, FakeFilter& f) {
        made[kind] = &f;
        if (kind == FilterKind::Ascii)
            f.onShow = [&] { EXPECT_FALSE(tavo.bInAscii) << "raised after showForm"; };
        else
            f.onShow = [&] { tavo.captureLoop(); };
    };
    dispatch.postAt(10, [&] { queue("typed"); });
    dispatch.postAt(20, [&] { console.obIFAscii_Click(); });
    dispatch.postAt(30, [&] { queue("still here"); });
    dispatch.postAt(40, [&] { tavo.stopCapture(); });
    console.select(FilterKind::Key);
    EXPECT_EQ(made[FilterKind::Key]->received, "typed");
    EXPECT_EQ(made[FilterKind::Ascii]->received, "still here");

    dispatch.postAt(50, [&] { queue("serial"); });
    dispatch.postAt(60, [&] { tavo.stopCapture(); });
    console.select(FilterKind::L21Serial);
    EXPECT_EQ(made[FilterKind::L21Serial]->received, "serial");
    log.clear();
    console.select(FilterKind::Ascii);
    EXPECT_EQ(log, (testing::Log{"L21Serial.hideForm", "Ascii.showForm"}));
    EXPECT_TRUE(tavo.bInAscii && !tavo.bInL21Serial && !tavo.frmL21Serial);
}

}  // namespace
}  // namespace zelvan
