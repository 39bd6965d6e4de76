// The capture pipeline on virtual time: the ring and its drain, the capture
// loops and timed waits, the board poll, and selecting an input filter.

#include <gtest/gtest.h>

#include <map>

#include "support/fakes.h"

namespace zelvan {
namespace {

using testing::FakeFilter;
using testing::Log;
using testing::Rig;

struct BoardFilter : FakeFilter {
    using FakeFilter::FakeFilter;
    void readBoard() override { ++reads; }
    int reads = 0;
};

struct PipelineTest : ::testing::Test {
    Rig rig;
    Tavo& tavo = rig.tavo;
    MainConsole& console = rig.console();
    FakeFilter* filter = nullptr;

    void SetUp() override {
        console.obIFAscii_Click();  // a filter that starts nothing
        filter = rig.shell.lastFilter;
    }
    std::string drained(const std::string& bytes) {
        rig.queue(bytes);
        tavo.drainQueue();
        return filter->received;
    }
};

// A null byte ends the turn: it is counted, not shown, and the bytes behind
// it wait. Control bytes show as red letters in the read pane. Every other
// byte reaches the display with its style while the output is open. Bytes
// keep their order across the end of the ring; the row readers ask the
// selected filter.
TEST_F(PipelineTest, DrainShowsCountsAndPassesBytesInOrderUntilANull) {
    console.chkOutDW_Click(1);
    filter->styleFor = [](char c) -> std::int16_t {
        return c == '\r' ? kStyleLineEnded : kStyleNothing;
    };
    EXPECT_EQ(drained(std::string("\r\n\x14Hi\x7f\xe9\0B", 9)), "\r\n\x14Hi\x7f\xe9");
    EXPECT_EQ(rig.view().status, "null byte");
    EXPECT_EQ(rig.view().read.dump(), "{MJT}Hi\x7f\xe9");
    EXPECT_EQ(rig.view().raw.dump(), "\r\n\x14Hi\x7f\xe9");  // all black
    tavo.drainQueue();
    EXPECT_EQ(filter->received, std::string("\r\n\x14Hi\x7f\xe9") + "B");
    EXPECT_EQ(rig.view().status, "");
    EXPECT_EQ(rig.view().totChars, "9");
    EXPECT_EQ(rig.shell.display->styles, (std::vector<std::int16_t>{3, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(tavo.getExternalTextTrimmed(1), filter->received);

    console.chkOutDW_Click(0);
    const std::string wrap(1100, 'w');
    for (std::size_t at = 0; at < wrap.size(); at += 500) drained(wrap.substr(at, 500));
    EXPECT_EQ(filter->received.substr(8), wrap);
    EXPECT_EQ(rig.shell.display->styles.size(), 8u) << "output closed: filtered, result dropped";
    tavo.bInAscii = false;
    EXPECT_EQ(tavo.getExternalText(1), "");
}

// A pane clears at the byte after it passed 30000; the raw one resets the count.
TEST_F(PipelineTest, EachPaneClearsPastThirtyThousandAtTheNextByte) {
    rig.view().raw.insertText(std::string(30000, 'r'));
    rig.view().read.insertText(std::string(30000, 'd'));
    drained("a");
    EXPECT_EQ(rig.view().raw.length() + rig.view().read.length(), 2 * 30001);
    drained("b");
    EXPECT_EQ(rig.view().raw.text() + rig.view().read.text(), "bb");
    EXPECT_EQ(tavo.totalChars, 0);
}

// Loops stack: each writes a marker pair, the end marker in the colour at the
// caret, and one stop ends them all, innermost first. A stop raised before a
// loop is entered counts for nothing.
TEST_F(PipelineTest, StackedLoopsEndInnermostFirstWithAMarkerPairEach) {
    Log order;
    tavo.stopCapture();
    rig.dispatch.postAt(10, [&] {
        tavo.captureLoop();  // a handler that enters the loop again
        order.push_back("inner handler returned");
    });
    rig.dispatch.postAt(20, [&] { rig.queue("x\r"); });
    rig.dispatch.postAt(30, [&] { tavo.stopCapture(); });
    tavo.captureLoop();
    order.push_back("outer loop returned");
    EXPECT_EQ(order, (Log{"inner handler returned", "outer loop returned"}));
    const std::string start = "\r\n[*** START CAPTURE ***]\r\n";
    const std::string end = "\r\n[*** END CAPTURE ***]\r\n";
    EXPECT_EQ(rig.view().read.dump(), start + start + "x{M" + end + end + "}");
}

// A quiet loop sleeps until the next event instead of spinning. A board raises
// no event: while it is selected the loop and the waits read it every few
// milliseconds; a board window that is merely there is left alone. A wait
// started inside another re-arms the one timer, so both end together.
TEST_F(PipelineTest, AQuietLoopSleepsAndTheBoardIsReadOnEachTurnOnlyWhileSelected) {
    BoardFilter board("L21USB", rig.log);
    tavo.frmL21USB = &board;
    rig.dispatch.postAt(60000, [&] { tavo.stopCapture(); });
    tavo.captureLoop();
    EXPECT_LT(rig.dispatch.yieldCount(), 10);
    tavo.timedWait(100);
    EXPECT_EQ(board.reads, 0);

    tavo.bInAscii = false;
    tavo.bInL21USB = true;
    const long long t = rig.dispatch.nowMs();
    rig.dispatch.postAt(t + 100, [&] { tavo.stopCapture(); });
    tavo.captureLoop();
    EXPECT_GE(board.reads, 100 / kBoardPollMs);
    const int inLoop = board.reads;
    long long innerEnded = -1;
    rig.dispatch.postAt(t + 500, [&] { rig.queue("during"); });
    rig.dispatch.postAt(t + 1100, [&] {
        tavo.timedWait(1500);
        innerEnded = rig.dispatch.nowMs() - t;
    });
    tavo.timedWait(1500);
    EXPECT_EQ(board.received, "during");
    EXPECT_EQ(innerEnded, 2600);
    EXPECT_EQ(rig.dispatch.nowMs() - t, 2600);
    EXPECT_FALSE(tavo.GeneralTimer->enabled());
    EXPECT_GE(board.reads - inLoop, 2500 / kBoardPollMs);
}

// --- selecting a filter ---

// The keyboard and serial windows enter their capture loop inside showForm,
// so their flag has to be up first; the others raise it after. A filter
// selected inside the keyboard's loop is fed by it. (The serial window's own
// tests hold the board selected inside its loop.) The filter given up is
// hidden before the new one shows, and forgotten.
TEST_F(PipelineTest, FiltersThatCaptureInShowFormAreFedByTheirOwnLoop) {
    std::map<FilterKind, FakeFilter*> made;
    rig.shell.onMake = [&](FilterKind kind, FakeFilter& f) {
        made[kind] = &f;
        if (kind == FilterKind::Ascii)
            f.onShow = [&] { EXPECT_FALSE(tavo.bInAscii) << "raised after showForm"; };
        else
            f.onShow = [&] { tavo.captureLoop(); };
    };
    const auto in = [&](long long ms, std::function<void()> what) {
        rig.dispatch.postAt(rig.dispatch.nowMs() + ms, std::move(what));
    };
    in(10, [&] { rig.queue("typed"); });
    in(20, [&] { console.obIFAscii_Click(); });
    in(30, [&] { rig.queue("still here"); });
    in(40, [&] { tavo.stopCapture(); });
    console.select(FilterKind::Key);
    EXPECT_EQ(made[FilterKind::Key]->received, "typed");
    EXPECT_EQ(made[FilterKind::Ascii]->received, "still here");

    in(10, [&] { rig.queue("serial"); });
    in(20, [&] { tavo.stopCapture(); });
    console.select(FilterKind::L21Serial);
    EXPECT_EQ(made[FilterKind::L21Serial]->received, "serial");
    rig.log.clear();
    console.select(FilterKind::Ascii);
    EXPECT_EQ(rig.log, (Log{"L21Serial.hideForm", "Ascii.showForm"}));
    EXPECT_TRUE(tavo.bInAscii);
    EXPECT_FALSE(tavo.bInL21Serial);
    EXPECT_EQ(tavo.frmL21Serial, nullptr);
}

}  // namespace
}  // namespace zelvan
