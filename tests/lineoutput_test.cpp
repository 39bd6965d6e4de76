// The line output engine: what each style sends in plain and buffer mode, how
// rows are pulled from the 15, and what stops the output.

#include "display/lineoutput.h"

#include <gtest/gtest.h>

#include "support/displayfakes.h"

namespace zelvan {
namespace {

using Names = std::vector<std::string>;

// "bright", "dim", "rollup", "clear 2", or "row 3 col 29 |BA  |" for a text frame.
std::string frameName(const std::string& f) {
    if (f.size() == 5 && f[2] == 0x7F) return f[3] == 0x20 ? "bright" : "dim";
    if (f.size() == 7 && f[2] == 0x7F) return f[3] == 0x46 ? "rollup" : "reset";
    if (f.size() == 6 && f[3] == 0x20 && f[4] == 0x0F)
        return "clear " + std::to_string(f[2] - 0x1F);
    return "row " + std::to_string(f[2] - 0x1F) + " col " + std::to_string(f[3] - 0x1F) + " |" +
           f.substr(4, f.size() - 5) + "|";
}

struct LineOutputTest : ::testing::Test, testing::Rig, LineOutputListener {
    testing::RowsFilter filter;
    RecordingDisplayLink link;
    LineOutput out{tavo, link};
    Names pending;

    LineOutputTest() {
        tavo.bInTDS = true;
        tavo.frmInTDS = &filter;
        out.bFilterOn = true;
        out.bReverse = false;
        out.setListener(this);
    }
    void pendingChanged(const std::string& text) override { pending.push_back(text); }
    void input(std::int16_t style) { out.doInput(style, std::string()); }
    void setRows(std::initializer_list<std::pair<int, const char*>> rows) {
        filter.rows.fill(std::string());
        for (auto [i, text] : rows) filter.rows[static_cast<std::size_t>(i)] = text;
    }
    Names sentSinceLast() {
        Names names;
        for (const std::string& w : link.writes) names.push_back(frameName(w));
        link.clear();
        return names;
    }
};

TEST_F(LineOutputTest, StyleNothingSendsNothingWhilePendingFollowsTheRows) {
    for (bool buffer : {false, true}) {
        out.setBufferRollup(buffer);
        setRows({{15, "HEL"}});
        input(kStyleNothing);
        setRows({{14, "HELLO"}, {15, "WOR"}});
        input(kStyleNothing);
        input(2);  // an unknown style acts as nothing
    }
    // Not listening, nothing changes at all, the next slot included.
    out.bListen = false;
    input(kStyleLineEnded);
    input(kStyleRows);
    EXPECT_TRUE(link.writes.empty());
    EXPECT_EQ(pending, (Names{"HEL", "HELLO\r\nWOR", "HELLO\r\nWOR", "HEL", "HELLO\r\nWOR",
                              "HELLO\r\nWOR"}));
}

TEST_F(LineOutputTest, RowsAreSqueezedFromTheFifteenOrRolledOntoTheBottomRow) {
    out.iLines = 2;
    setRows({{2, "one"}, {4, "two"}, {6, "three"}});
    input(kStyleRows);
    EXPECT_EQ(sentSinceLast(), (Names{"dim", "clear 1", "clear 2", "row 1 col 1 |one|",
                                      "row 2 col 1 |two|", "bright"}));
    setRows({});  // all rows empty: the erase alone
    input(kStyleRows);
    EXPECT_EQ(sentSinceLast(), (Names{"clear 1", "clear 2"}));
    EXPECT_EQ(out.sLines[2], "two");  // slots above the count keep their text
    // A plain line end rolls each row onto the bottom row in use.
    setRows({{14, "first"}, {15, "second"}});
    input(kStyleLineEnded);
    setRows({});
    input(kStyleLineEnded);
    EXPECT_EQ(sentSinceLast(), (Names{"bright", "rollup", "row 2 col 1 |first|", "rollup",
                                      "row 2 col 1 |second|", "bright"}));
}

// Line ends fill the slots one by one; the rows style paints at once.
TEST_F(LineOutputTest, BufferModePaintsTheBlockWhenTheLastSlotFills) {
    out.setBufferRollup(true);
    for (const char* line : {"one", "two", "three"}) {
        setRows({{15, line}});
        input(kStyleNothing);
        EXPECT_TRUE(link.writes.empty());
        input(kStyleLineEnded);
    }
    EXPECT_EQ(sentSinceLast(), (Names{"dim", "clear 1", "clear 2", "clear 3", "row 1 col 1 |one|",
                                      "row 2 col 1 |two|", "row 3 col 1 |three|", "bright"}));
    setRows({{14, "x"}, {15, "y"}});
    input(kStyleRows);
    EXPECT_EQ(sentSinceLast(), (Names{"dim", "clear 1", "clear 2", "clear 3", "row 1 col 1 |x|",
                                      "row 2 col 1 |y|", "bright"}));
    out.iLines = 1;  // each line is a block of its own
    input(kStyleLineEnded);
    EXPECT_EQ(sentSinceLast(), (Names{"dim", "clear 1", "row 1 col 1 |x|", "bright"}));
}

// A closed port drops captions without a notice per frame.
TEST_F(LineOutputTest, ClosedPortOrStoppedFilterDropsCaptionsAndNothingComesLate) {
    setRows({{13, "a"}, {14, "b"}, {15, "c"}});
    out.bFilterOn = false;
    input(kStyleRows);
    input(kStyleLineEnded);
    out.bFilterOn = true;
    link.open = false;
    out.setBufferRollup(true);
    for (int i = 0; i < 3; ++i) input(kStyleLineEnded);  // the slots come round again
    link.open = true;
    input(kStyleNothing);  // nothing is sent late
    EXPECT_TRUE(link.writes.empty() && link.notices.empty());
    EXPECT_EQ(pending.back(), "a\r\nb\r\nc");
}

}  // namespace
}  // namespace zelvan
