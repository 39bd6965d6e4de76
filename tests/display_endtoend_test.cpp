// From a filter's rows to what the sign shows: the engine's frames read back
// by the sign model, for pop-on captions and for roll-up lines that come
// through the capture pipeline.

#include <gtest/gtest.h>

#include "display/lineoutput.h"
#include "display/signmodel.h"
#include "support/rowsfilter.h"

namespace zelvan {
namespace {

std::string padded(const std::string& s) {
    return s + std::string(32 - s.size(), ' ');
}

struct EndToEndTest : ::testing::Test {
    testing::EngineRig r;
    SignModel sign;

    void feedSign() {
        sign.feed(r.link.bytes());
        r.link.clear();
    }
    // What a reader sees through the reflector, row by row.
    std::vector<std::string> seen() const {
        return {sign.rowThroughReflector(1), sign.rowThroughReflector(2),
                sign.rowThroughReflector(3)};
    }
};

// The captions of the pop-on sample (samples/popon-short.scc), as the line-21
// decoder leaves them in the displayed memory when each one flips into view:
// the first is placed at column 23 and its end piles up on column 32; the
// second carries a registered sign; the third has a one-half sign and two
// mid-row codes that show as blanks. The sample then erases the screen.
TEST_F(EndToEndTest, PopOnCaptionsShowReversedOnTheRowsInUse) {
    testing::RowsFilter& f = r.filter;
    f.rows[15] = std::string(22, ' ') + "( horn ho)";
    r.input(kStyleRows);
    feedSign();
    EXPECT_EQ(seen(), (std::vector<std::string>{padded(std::string(22, ' ') + "( horn ho)"),
                                                padded(""), padded("")}));
    // Reversed, the text stands right-aligned and mirrored on the sign itself.
    EXPECT_EQ(sign.row(1), ")oh nroh (" + std::string(22, ' '));
    EXPECT_TRUE(sign.bright);

    f.clear();
    f.rows[15] =
        "    HEY, THE\xAE"
        "E.";
    r.input(kStyleRows);
    feedSign();
    EXPECT_EQ(sign.rowThroughReflector(1), padded("    HEY, THE\xAE"
                                                  "E."));

    f.clear();
    f.rows[14] = "     Test \xBD Caption ";
    f.rows[15] = "     Test  test  Captions";
    r.input(kStyleRows);
    feedSign();
    EXPECT_EQ(seen(), (std::vector<std::string>{padded("     Test \xBD Caption"),
                                                padded("     Test  test  Captions"), padded("")}));

    f.clear();
    r.input(kStyleRows);
    feedSign();
    EXPECT_EQ(seen(), (std::vector<std::string>(3, padded(""))));
    EXPECT_EQ(sign.unknownFrames + sign.strayBytes + sign.clippedChars, 0) << sign.dump();
}

// A display output window in miniature: the pipeline calls it for each byte.
struct EngineWindow : DisplayOutput {
    explicit EngineWindow(LineOutput& out) : out(out) {}
    void showForm() override {}
    void hideForm() override {}
    void doInput(std::int16_t style, const std::string& line) override { out.doInput(style, line); }
    void showStartupBarker(bool bDoIt) override { out.showStartupBarker(bDoIt); }
    void DWErase() override { out.DWErase(); }
    LineOutput& out;
};

// Types characters onto the bottom row; a CR ends the line, which is cleared
// at the next character, as the text filters do.
struct TypedLineFilter : testing::RowsFilter {
    std::int16_t filterEntry(const std::string& in, std::string& out) override {
        out.clear();
        if (ended) rows[15].clear();
        ended = in[0] == '\r';
        if (ended) return kStyleLineEnded;
        rows[15] += in;
        return kStyleNothing;
    }
    bool ended = false;
};

TEST_F(EndToEndTest, RollUpLinesFromThePipelineScrollOnTheSign) {
    TypedLineFilter typed;
    Tavo& tavo = r.rig.tavo;
    tavo.frmInTDS = &typed;
    EngineWindow window(r.out);
    tavo.frmOutDW = &window;
    tavo.bOutDW = true;
    r.out.iLines = 2;
    r.rig.queue("First line\rSecond \x95 line\rThird");
    tavo.drainQueue();
    feedSign();
    EXPECT_EQ(seen(), (std::vector<std::string>{padded("First line"), padded("Second \x7F line"),
                                                padded("")}));
    EXPECT_EQ(sign.rollups, 2);
    EXPECT_EQ(r.out.tbPending, "Third");
    r.rig.queue("\r");
    tavo.drainQueue();
    feedSign();
    EXPECT_EQ(seen(),
              (std::vector<std::string>{padded("Second \x7F line"), padded("Third"), padded("")}));
}

// A long row, as wacky output makes one, shows its first 32 characters.
TEST_F(EndToEndTest, GrownRowShowsItsHeadOnTheSign) {
    r.rig.tavo.Obfuscate = true;
    r.filter.rows[15] = "THE LION. THE LION. THE END.";
    r.input(kStyleRows);
    feedSign();
    EXPECT_EQ(sign.rowThroughReflector(1), "DE WION, UH-HAH-HAH-HAH.  DE WIO");
    EXPECT_EQ(sign.clippedChars, 0);
}

}  // namespace
}  // namespace zelvan
