// The line output engine: what each style sends in plain and buffer mode, how
// rows are pulled from the 15, and what stops the output.

#include "display/lineoutput.h"

#include <gtest/gtest.h>

#include "support/displayfakes.h"

namespace zelvan {
namespace {

using Names = std::vector<std::string>;

struct LineOutputTest : ::testing::Test, LineOutputListener {
    testing::EngineRig r;
    LineOutput& out = r.out;
    Names pending;

    void SetUp() override {
        out.bReverse = false;
        out.setListener(this);
    }
    void pendingChanged(const std::string& text) override { pending.push_back(text); }
    Names sentSinceLast() {
        Names names = r.sent();
        r.link.clear();
        return names;
    }
};

TEST_F(LineOutputTest, StyleNothingSendsNothingWhilePendingFollowsTheRows) {
    for (bool buffer : {false, true}) {
        out.setBufferRollup(buffer);
        r.setRows({{15, "HEL"}});
        r.input(kStyleNothing);
        r.setRows({{14, "HELLO"}, {15, "WOR"}});
        r.input(kStyleNothing);
        r.input(2);  // an unknown style acts as nothing
    }
    // Not listening, nothing changes at all, the next slot included.
    out.bListen = false;
    r.input(kStyleLineEnded);
    r.input(kStyleRows);
    EXPECT_TRUE(r.link.writes.empty());
    EXPECT_EQ(pending, (Names{"HEL", "HELLO\r\nWOR", "HELLO\r\nWOR", "HEL", "HELLO\r\nWOR",
                              "HELLO\r\nWOR"}));
}

TEST_F(LineOutputTest, RowsAreSqueezedFromTheFifteenAndPaintedBetweenDimAndBright) {
    out.iLines = 2;
    r.setRows({{2, "one"}, {4, "two"}, {6, "three"}});
    r.input(kStyleRows);
    EXPECT_EQ(sentSinceLast(), (Names{"dim", "clear 1", "clear 2", "row 1 col 1 |one|",
                                      "row 2 col 1 |two|", "bright"}));
    r.setRows({});  // all rows empty: the erase alone
    r.input(kStyleRows);
    EXPECT_EQ(sentSinceLast(), (Names{"clear 1", "clear 2"}));
    EXPECT_EQ(out.sLines[2], "two");  // slots above the count keep their text
}

TEST_F(LineOutputTest, PlainLineEndRollsEachRowOntoTheBottomRowInUse) {
    out.iLines = 2;
    r.setRows({{14, "first"}, {15, "second"}});
    r.input(kStyleLineEnded);
    r.setRows({});
    r.input(kStyleLineEnded);
    EXPECT_EQ(r.sent(), (Names{"bright", "rollup", "row 2 col 1 |first|", "rollup",
                               "row 2 col 1 |second|", "bright"}));
}

// Line ends fill the slots one by one; the rows style paints at once.
TEST_F(LineOutputTest, BufferModePaintsTheBlockWhenTheLastSlotFills) {
    out.setBufferRollup(true);
    for (const char* line : {"one", "two", "three"}) {
        r.setRows({{15, line}});
        r.input(kStyleNothing);
        EXPECT_TRUE(r.link.writes.empty());
        r.input(kStyleLineEnded);
    }
    EXPECT_EQ(sentSinceLast(), (Names{"dim", "clear 1", "clear 2", "clear 3", "row 1 col 1 |one|",
                                      "row 2 col 1 |two|", "row 3 col 1 |three|", "bright"}));
    r.setRows({{14, "x"}, {15, "y"}});
    r.input(kStyleRows);
    EXPECT_EQ(sentSinceLast(), (Names{"dim", "clear 1", "clear 2", "clear 3", "row 1 col 1 |x|",
                                      "row 2 col 1 |y|", "bright"}));
    out.iLines = 1;  // each line is a block of its own
    r.input(kStyleLineEnded);
    EXPECT_EQ(sentSinceLast(), (Names{"dim", "clear 1", "row 1 col 1 |x|", "bright"}));
}

TEST_F(LineOutputTest, ClosedPortOrStoppedFilterDropsCaptionsWhileCountersMove) {
    r.setRows({{13, "a"}, {14, "b"}, {15, "c"}});
    out.bFilterOn = false;
    r.input(kStyleRows);
    r.input(kStyleLineEnded);
    out.setBufferRollup(true);
    r.input(kStyleLineEnded);
    EXPECT_EQ(out.iLineCount, 3);  // a stopped filter doesn't reset the count
    out.bFilterOn = true;
    r.link.open = false;
    r.input(kStyleLineEnded);
    EXPECT_EQ(out.iLineCount, 0);  // a closed port does
    r.input(kStyleLineEnded);
    EXPECT_EQ(out.iNextRow, 1);  // recycled past the last slot
    r.link.open = true;
    r.input(kStyleNothing);  // nothing is sent late
    EXPECT_TRUE(r.link.writes.empty());
    EXPECT_TRUE(r.link.notices.empty());
    EXPECT_EQ(pending.back(), "a\r\nb\r\nc");
}

}  // namespace
}  // namespace zelvan
