// From the capture pipeline to what the sign shows: roll-up lines typed into a
// filter, the engine's frames read back by the sign model. (Pop-on captions
// take this road in the program-level end-to-end tests.)

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
    r.rig.queue(
        "First line\rSecond \x95 \xAE\xBD line\rThird");  // other high bytes pass as they are
    tavo.drainQueue();
    EXPECT_EQ(seen(),
              (Rows{padded("First line"), padded("Second \x7F \xAE\xBD line"), padded("")}));
    EXPECT_EQ(r.out.tbPending, "Third");
    r.rig.queue("\r");
    tavo.drainQueue();
    EXPECT_EQ(seen(), (Rows{padded("Second \x7F \xAE\xBD line"), padded("Third"), padded("")}));
    EXPECT_EQ(sign.rollups, 3);
    EXPECT_EQ(sign.unknownFrames + sign.strayBytes + sign.clippedChars, 0) << sign.dump();
}

}  // namespace
}  // namespace zelvan
