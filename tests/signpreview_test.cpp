// The sign preview and its model against the frames the program sends, broken
// ones included: each LED on the face and in the reflector, the roll-up motion.

#include "display/signpreview.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "display/ledfont.h"
#include "support/displayfakes.h"

namespace zelvan {
namespace {

using testing::bytes;

struct SignPreviewTest : ::testing::Test {
    RecordingDisplayLink link;
    DisplayProtocol sign{link};
    SignPreview preview;

    // What the link wrote reaches the preview at its next refresh.
    void refresh() {
        for (const std::string& w : link.writes) preview.written(w);
        link.clear();
        preview.refresh();
    }
    // The cell's seven dot rows as the view shows them, or mirrored back.
    GlyphRows cell(SignSide side, int row, int column, bool mirrored = false) const {
        GlyphRows rows{};
        for (int dr = 0; dr < kGlyphRows; ++dr)
            for (int dc = 0; dc < kGlyphColumns; ++dc)
                if (preview.dot(side, row, column, mirrored ? kGlyphColumns - 1 - dc : dc, dr))
                    rows[static_cast<std::size_t>(dr)] |= 1 << (kGlyphColumns - 1 - dc);
        return rows;
    }
    bool rowDark(int row) const {
        for (int c = 0; c < kSignColumns; ++c)
            if (cell(SignSide::Face, row, c) != GlyphRows{}) return false;
        return true;
    }
};

TEST_F(SignPreviewTest, ReversedTextReadsInTheReflectorAndEveryCharacterHasAGlyph) {
    sign.writeLine("AB\x95", 2, 1);  // the music note leaves as the sign's own glyph
    preview.written(link.writes.front());
    EXPECT_FALSE(preview.dot(SignSide::Reflector, 1, 0, 0, 2)) << "not before the refresh";
    link.clear();
    refresh();
    EXPECT_EQ(cell(SignSide::Reflector, 1, 0), ledGlyph('A'));
    EXPECT_EQ(cell(SignSide::Reflector, 1, 2), ledGlyph(0x7F));
    EXPECT_EQ(cell(SignSide::Face, 1, 31, true), ledGlyph('A'));
    EXPECT_EQ(cell(SignSide::Face, 1, 29, true), ledGlyph(0x7F));
    EXPECT_TRUE(rowDark(0) && rowDark(2));
    // Every Windows-1252 character has a glyph; a control byte shows as a box.
    for (int code = 0x20; code <= 0xFF; ++code) {
        const bool undefined =
            code == 0x81 || code == 0x8D || code == 0x8F || code == 0x90 || code == 0x9D;
        EXPECT_EQ(ledGlyph(static_cast<std::uint8_t>(code)) == kMissingGlyph, undefined) << code;
    }
    preview.written(bytes({1, 0x20, 0x20, 0x20, 'x', 2, 1}));
    preview.refresh();
    EXPECT_EQ(cell(SignSide::Face, 0, 1, true), kMissingGlyph);
}

// The LEDs stay put and the text rises across them, one dot row a refresh.
TEST_F(SignPreviewTest, RollUpLiftsTheTextAcrossTheLedsOneDotRowARefresh) {
    sign.writeLine("ONE", 3, 1);
    refresh();
    EXPECT_FALSE(preview.refresh()) << "nothing written, nothing moving";
    sign.sendRollup();
    sign.writeLine("TWO", 3, 1);
    refresh();
    EXPECT_EQ(cell(SignSide::Reflector, 2, 0), ledGlyph('O'));  // where it stood
    EXPECT_TRUE(rowDark(1));
    EXPECT_TRUE(preview.refresh());
    GlyphRows lifted{};
    std::copy(ledGlyph('O').begin() + 1, ledGlyph('O').end(), lifted.begin());
    EXPECT_EQ(cell(SignSide::Reflector, 2, 0), lifted);
    for (int i = 1; i < kRollDotRows; ++i) EXPECT_TRUE(preview.refresh());
    EXPECT_FALSE(preview.refresh());
    EXPECT_EQ(cell(SignSide::Reflector, 1, 0), ledGlyph('O'));
    EXPECT_EQ(cell(SignSide::Reflector, 2, 0), ledGlyph('T'));
}

// A roll-up moves every row and brings a blank one up; 0F clears a row only
// from column 1; erase and reset blank the rows, a reset at full brightness.
TEST_F(SignPreviewTest, FramesActOnTheRowsTheBrightnessAndTheBoard) {
    const SignModel& model = preview.model();
    auto rows = [&] { return model.row(1) + "|" + model.row(2) + "|" + model.row(3); };
    const std::string blanks(32, ' '), none = blanks + "|" + blanks + "|" + blanks;
    for (int row = 1; row <= kSignRows; ++row) sign.writeLine(std::string(row, '0' + row), row, 1);
    sign.sendRollup();
    sign.writeLine("x\x0F", 3, 5);  // 0F lands in column 27
    sign.sendDim();
    refresh();
    EXPECT_EQ(model.rolledOff, blanks.substr(1) + "1");
    EXPECT_EQ(rows(), blanks.substr(2) + "22|" + blanks.substr(3) + "333|" + blanks.substr(6) +
                          "\x0Fx    ");
    EXPECT_EQ(preview.status(), "Front board, dim, 6 frames");
    sign.DWErase();
    sign.sendBright();
    refresh();
    EXPECT_EQ(rows(), none);
    sign.writeLine("5", 2, 1);
    sign.sendDim();
    sign.sendReset();
    refresh();
    EXPECT_EQ(rows(), none);
    EXPECT_EQ(preview.status(), "Front board, bright, 13 frames");
    for (auto [front, reverse, text] : {std::tuple{false, true, "Rear board, reversed text"},
                                        {false, false, "Rear board"},
                                        {true, true, "Front board, reversed text"},
                                        {true, false, "Front board"}}) {
        sign.bReverse = reverse;
        front ? sign.sendBoardFront() : sign.sendBoardRear();
        refresh();
        EXPECT_EQ(preview.boardText(), text);
    }
}

// Frames are found from any cut of the stream; what is no frame is counted.
TEST_F(SignPreviewTest, BrokenFramesAndStrayBytesAreCountedAndTheSignGoesOn) {
    const std::string stream = "junk" + bytes({1, 0x20, 0x21, 0x3F, 'A', 'B', 1}) +
                               bytes({1, 1, 0x20, 0x7F, 0x2F, 1}) +  // a stray 01 in front
                               bytes({1, 0x20, 0x7F, 0x7E, 0x28, 1, 1, 0x20, 0x7F, 0x7E, 0x20, 1}) +
                               bytes({1, 0x20, 0x7F, 0x99, 1, 1, 0x55, 1}) +
                               bytes({1, 0x20, 0x7F, 0x7E, 0x29, 1}) +  // no such board
                               bytes({1, 0x20, 0x21, 1, 1, 0x20, 0x23, 0x20, 'x', 1});  // row 4
    SignModel whole;
    whole.feed(stream);
    for (char b : stream) {
        preview.written(std::string(1, b));
        preview.refresh();
    }
    EXPECT_EQ(preview.model().dump(), whole.dump());
    EXPECT_EQ(cell(SignSide::Face, 1, 31, true), ledGlyph('A'));
    EXPECT_EQ(preview.status(),
              "Rear board, reversed text, dim, 4 frames, 5 broken frames, 5 stray bytes, "
              "1 character off the row");
}

}  // namespace
}  // namespace zelvan
