// The line output engine: what each style sends in plain and buffer mode,
// how rows are pulled from the 15, and what stops the output.

#include "display/lineoutput.h"

#include <gtest/gtest.h>

#include "support/displaybytes.h"
#include "support/rowsfilter.h"

namespace zelvan {
namespace {

using testing::frameNames;
using Names = std::vector<std::string>;

struct LineOutputTest : ::testing::Test {
    testing::EngineRig r;
    LineOutput& out = r.out;
    testing::RowsFilter& filter = r.filter;

    void SetUp() override { out.bReverse = false; }
    Names sent() const { return frameNames(r.link.writes); }
    void setRows(std::initializer_list<std::pair<int, const char*>> rows) {
        filter.clear();
        for (auto [i, text] : rows) filter.rows[static_cast<std::size_t>(i)] = text;
    }
};

TEST_F(LineOutputTest, StyleNothingSendsNothingWhilePendingFollowsTheRows) {
    for (bool buffer : {false, true}) {
        out.setBufferRollup(buffer);
        setRows({{15, "HEL"}});
        r.input(kStyleNothing);
        EXPECT_EQ(out.tbPending, "HEL");
        setRows({{14, "HELLO"}, {15, "WOR"}});
        r.input(kStyleNothing);
        EXPECT_EQ(out.tbPending, "HELLO\r\nWOR");
        EXPECT_TRUE(r.link.writes.empty()) << buffer;
    }
}

TEST_F(LineOutputTest, RowsAreSqueezedFromTheFifteenAndCutAtTheLinesInUse) {
    setRows({{13, "A"}, {14, "B"}, {15, "C"}});
    r.input(kStyleRows);
    EXPECT_EQ(sent(), (Names{"dim", "clear 1", "clear 2", "clear 3", "row 1 col 1 |A|",
                             "row 2 col 1 |B|", "row 3 col 1 |C|", "bright"}));
    r.link.clear();
    out.iLines = 2;
    setRows({{2, "one"}, {4, "two"}, {6, "three"}, {8, "four"}, {10, "five"}});
    r.input(kStyleRows);
    EXPECT_EQ(sent(), (Names{"dim", "clear 1", "clear 2", "row 1 col 1 |one|", "row 2 col 1 |two|",
                             "bright"}));
    // A shorter caption leaves the old text in the slots it no longer counts.
    setRows({{1, "solo"}});
    r.input(kStyleNothing);
    EXPECT_EQ(out.iLineCount, 1);
    EXPECT_EQ(out.sLines[2], "two");
    EXPECT_EQ(out.tbPending, "solo");
}

TEST_F(LineOutputTest, AllRowsEmptyErasesWithoutDimUnlessSunrise) {
    r.input(kStyleRows);
    EXPECT_EQ(sent(), (Names{"clear 1", "clear 2", "clear 3"}));
    r.link.clear();
    out.bSunrise = true;
    r.input(kStyleRows);
    EXPECT_EQ(r.link.writes.size(), 14u);
    EXPECT_EQ(sent().front(), "dim");
    EXPECT_EQ(sent().back(), "bright");
}

TEST_F(LineOutputTest, PlainLineEndRollsEachRowOntoTheBottomRow) {
    out.iLines = 2;
    setRows({{14, "first"}, {15, "second"}});
    r.input(kStyleLineEnded);
    EXPECT_EQ(sent(),
              (Names{"bright", "rollup", "row 2 col 1 |first|", "rollup", "row 2 col 1 |second|"}));
    r.link.clear();
    setRows({});
    r.input(kStyleLineEnded);
    EXPECT_EQ(sent(), Names{"bright"});
}

TEST_F(LineOutputTest, OtherStylesActAsNothing) {
    setRows({{15, "text"}});
    r.input(2);
    r.input(-1);
    EXPECT_TRUE(r.link.writes.empty());
    EXPECT_EQ(out.tbPending, "text");
}

TEST_F(LineOutputTest, BufferModePaintsTheBlockWhenTheLastSlotFills) {
    out.setBufferRollup(true);
    const char* lines[] = {"line one", "line two", "line three"};
    for (const char* line : lines) {
        setRows({{15, line}});
        r.input(kStyleNothing);
        EXPECT_TRUE(r.link.writes.empty());
        r.input(kStyleLineEnded);
    }
    EXPECT_EQ(sent(), (Names{"dim", "clear 1", "clear 2", "clear 3", "row 1 col 1 |line one|",
                             "row 2 col 1 |line two|", "row 3 col 1 |line three|", "bright"}));
    EXPECT_EQ(out.iLineCount, 0);
    EXPECT_EQ(out.iNextRow, 1);
    // The next line starts a new block in slot 1.
    setRows({{15, "line four"}});
    r.input(kStyleNothing);
    EXPECT_EQ(out.tbPending, "line four");
}

TEST_F(LineOutputTest, BufferModeWithOneLinePaintsEachLineAtOnce) {
    out.iLines = 1;
    out.setBufferRollup(true);
    setRows({{15, "alpha"}});
    r.input(kStyleLineEnded);
    setRows({{15, "beta"}});
    r.input(kStyleLineEnded);
    EXPECT_EQ(sent(), (Names{"dim", "clear 1", "row 1 col 1 |alpha|", "bright", "dim", "clear 1",
                             "row 1 col 1 |beta|", "bright"}));
}

TEST_F(LineOutputTest, BufferModeLineEndWithNoRowStillTakesASlot) {
    out.setBufferRollup(true);
    out.sLines[2] = "stale";
    setRows({{15, "one"}});
    r.input(kStyleLineEnded);
    setRows({});
    r.input(kStyleLineEnded);
    EXPECT_EQ(out.iNextRow, 3);
    setRows({{15, "three"}});
    r.input(kStyleLineEnded);
    // The count is the slot last stored, so the block goes out with the
    // skipped slot's old text in it.
    EXPECT_EQ(sent(), (Names{"dim", "clear 1", "clear 2", "clear 3", "row 1 col 1 |one|",
                             "row 2 col 1 |stale|", "row 3 col 1 |three|", "bright"}));
    EXPECT_EQ(out.iNextRow, 1);
    EXPECT_EQ(out.iLineCount, 0);
}

TEST_F(LineOutputTest, ClosedPortDropsCaptionsSilentlyWhileCountersMove) {
    r.link.open = false;
    setRows({{15, "lost"}});
    r.input(kStyleRows);
    r.input(kStyleLineEnded);
    out.setBufferRollup(true);
    for (int i = 0; i < 3; ++i) r.input(kStyleLineEnded);
    EXPECT_EQ(out.iNextRow, 1);
    EXPECT_EQ(out.iLineCount, 0);
    EXPECT_TRUE(r.link.writes.empty());
    EXPECT_TRUE(r.link.notices.empty());
    // Nothing is sent late when the port opens.
    r.link.open = true;
    r.input(kStyleNothing);
    EXPECT_TRUE(r.link.writes.empty());
}

TEST_F(LineOutputTest, StoppedFilterPullsButSendsNothing) {
    out.bFilterOn = false;
    setRows({{13, "a"}, {14, "b"}, {15, "c"}});
    r.input(kStyleRows);
    r.input(kStyleLineEnded);
    EXPECT_TRUE(r.link.writes.empty());
    EXPECT_EQ(out.tbPending, "a\r\nb\r\nc");
    // In buffer mode the count isn't reset by the stopped output.
    out.setBufferRollup(true);
    r.input(kStyleLineEnded);
    EXPECT_EQ(out.iLineCount, 3);
    out.bFilterOn = true;
    out.setBufferRollup(true);
    r.input(kStyleLineEnded);
    EXPECT_EQ(out.iLineCount, 0);
}

TEST_F(LineOutputTest, NotListeningChangesNothing) {
    out.setBufferRollup(true);
    out.bListen = false;
    setRows({{15, "ignored"}});
    r.input(kStyleLineEnded);
    r.input(kStyleRows);
    EXPECT_EQ(out.iNextRow, 1);
    EXPECT_EQ(out.tbPending, "");
    EXPECT_TRUE(r.link.writes.empty());
}

TEST_F(LineOutputTest, WackyOutputReachesTheSignButNotThePendingText) {
    r.rig.tavo.Obfuscate = true;
    setRows({{15, "the rabbit"}});
    r.input(kStyleRows);
    r.input(kStyleLineEnded);
    EXPECT_EQ(out.tbPending, "the rabbit");
    EXPECT_EQ(sent()[4], "row 1 col 1 |de wabbit|");
    EXPECT_EQ(sent().back(), "row 3 col 1 |de wabbit|");
}

TEST_F(LineOutputTest, ListenerSeesEveryPull) {
    struct Listener : LineOutputListener {
        void pendingChanged(const std::string& text) override { seen.push_back(text); }
        Names seen;
    } listener;
    out.setListener(&listener);
    setRows({{1, "A"}});
    r.input(kStyleNothing);
    setRows({{1, "AB"}});
    r.input(kStyleNothing);
    EXPECT_EQ(listener.seen, (Names{"A", "AB"}));
}

TEST_F(LineOutputTest, StartupCaptionErasesThenWritesItsLinesUntouched) {
    Tavo& tavo = r.rig.tavo;
    tavo.Obfuscate = true;
    tavo.StartupBarker = "Welcome<br>Please relax";
    tavo.splitStartupBarker();
    tavo.DoStartupBarker = false;
    out.showStartupBarker(false);
    EXPECT_EQ(sent(), (Names{"clear 1", "clear 2", "clear 3"}));
    r.link.clear();
    out.showStartupBarker(true);
    EXPECT_EQ(sent(), (Names{"clear 1", "clear 2", "clear 3", "row 1 col 1 |Welcome|",
                             "row 2 col 1 |Please relax|"}));
}

TEST_F(LineOutputTest, OutputStartsOnlyOnAnOpenPort) {
    out.bFilterOn = false;
    r.link.open = false;
    EXPECT_FALSE(out.setFilterOn(true));
    EXPECT_FALSE(out.bFilterOn);
    ASSERT_EQ(r.link.notices.size(), 1u);
    EXPECT_EQ(r.link.notices[0].second, "Open port first.");
    r.link.open = true;
    EXPECT_TRUE(out.setFilterOn(true));
    out.sendIt(testing::esc("^01^20^7F ^01"));
    out.sendIt(testing::esc("^"));
    EXPECT_EQ(r.link.writes,
              (Names{testing::bytes({1, 0x20, 0x7F, 0x20, 1}), testing::bytes({0})}));
    out.setFilterOn(false);
    out.sendIt("x");
    EXPECT_EQ(r.link.writes.size(), 2u);
}

TEST_F(LineOutputTest, DumpShowsFieldsAndSlots) {
    out.setBufferRollup(true);
    setRows({{15, "one"}});
    r.input(kStyleLineEnded);
    EXPECT_EQ(out.dump(),
              "listen=1 filter=1 buffer=1 sunrise=0 reverse=0 front=1 lines=3 count=1 next=2\n"
              "1: \"one\"\n2: \"\"\n3: \"\"\n");
}

}  // namespace
}  // namespace zelvan
