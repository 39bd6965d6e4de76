// From a filter's rows to what the sign shows: the engine's frames read back
// by the sign model, for pop-on captions and for roll-up lines that come
// through the capture pipeline.

#include <gtest/gtest.h>

#include "display/signmodel.h"
#include "support/displayfakes.h"

namespace zelvan {
namespace {

using Rows = std::vector<std::string>;

std::string padded(const std::string& s) {
    return s + std::string(32 - s.size(), ' ');
}

struct EndToEndTest : ::testing::Test {
    testing::EngineRig r;
    SignModel sign;

    // What a reader sees through the reflector, after the frames sent so far.
    Rows seen() {
        sign.feed(r.link.bytes());
        r.link.clear();
        return {sign.rowThroughReflector(1), sign.rowThroughReflector(2),
                sign.rowThroughReflector(3)};
    }
};

// The captions of the pop-on sample (samples/popon-short.scc) as the line-21
// decoder leaves them when each flips into view: the first placed at column 23
// with its end piled up on column 32, the second with a registered sign, the
// third with a one-half sign and two mid-row codes shown as blanks. The sample
// then erases the screen.
TEST_F(EndToEndTest, PopOnCaptionsShowReversedOnTheRowsInUse) {
    const std::string first = std::string(22, ' ') + "( horn ho)";
    r.setRows({{15, first.c_str()}});
    r.input(kStyleRows);
    EXPECT_EQ(seen(), (Rows{first, padded(""), padded("")}));
    EXPECT_EQ(sign.row(1), ")oh nroh (" + std::string(22, ' '));
    r.setRows({{15,
                "    HEY, THE\xAE"
                "E."}});
    r.input(kStyleRows);
    EXPECT_EQ(seen()[0], padded("    HEY, THE\xAE"
                                "E."));
    r.setRows({{14, "     Test \xBD Caption "}, {15, "     Test  test  Captions"}});
    r.input(kStyleRows);
    EXPECT_EQ(seen(), (Rows{padded("     Test \xBD Caption"), padded("     Test  test  Captions"),
                            padded("")}));
    r.setRows({});
    r.input(kStyleRows);
    EXPECT_EQ(seen(), Rows(3, padded("")));
    EXPECT_TRUE(sign.bright);
    EXPECT_EQ(sign.unknownFrames + sign.strayBytes + sign.clippedChars, 0) << sign.dump();
}

// The display window in miniature, as the pipeline calls it for each byte.
struct EngineWindow : DisplayOutput {
    explicit EngineWindow(LineOutput& out) : out(out) {}
    void showForm() override {}
    void hideForm() override {}
    void doInput(std::int16_t style, const std::string& line) override { out.doInput(style, line); }
    void showStartupBarker(bool bDoIt) override { out.showStartupBarker(bDoIt); }
    void DWErase() override { out.DWErase(); }
    LineOutput& out;
};

// Types onto the bottom row; a CR ends the line, cleared at the next character.
struct TypedLineFilter : testing::RowsFilter {
    std::int16_t filterEntry(const std::string& in, std::string& out) override {
        out.clear();
        if (ended) rows[15].clear();
        ended = in[0] == '\r';
        if (!ended) rows[15] += in;
        return ended ? kStyleLineEnded : kStyleNothing;
    }
    bool ended = false;
};

TEST_F(EndToEndTest, RollUpLinesFromThePipelineScrollOnTheSign) {
    TypedLineFilter typed;
    EngineWindow window(r.out);
    Tavo& tavo = r.rig.tavo;
    tavo.frmInTDS = &typed;
    tavo.frmOutDW = &window;
    tavo.bOutDW = true;
    r.out.iLines = 2;
    r.rig.queue("First line\rSecond \x95 line\rThird");
    tavo.drainQueue();
    EXPECT_EQ(seen(), (Rows{padded("First line"), padded("Second \x7F line"), padded("")}));
    EXPECT_EQ(r.out.tbPending, "Third");
    r.rig.queue("\r");
    tavo.drainQueue();
    EXPECT_EQ(seen(), (Rows{padded("Second \x7F line"), padded("Third"), padded("")}));
    EXPECT_EQ(sign.rollups, 3);
}

}  // namespace
}  // namespace zelvan
