// The sign preview's logic: the tap's buffer, the model and the roll-up motion.

#include "display/signpreview.h"

#include "display/ledfont.h"

namespace zelvan {

namespace {

std::string counted(int n, const char* one, const char* many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

}  // namespace

bool SignPreview::refresh() {
    const bool moving = m_riseLeft > 0;
    if (moving) --m_riseLeft;
    if (m_pending.empty()) return moving;
    const int rollupsBefore = m_model.rollups;
    m_model.feed(m_pending);
    m_pending.clear();
    if (m_model.rollups != rollupsBefore) m_riseLeft = kRollDotRows;
    return true;
}

// Text row 0 is the row that rolled off, rows 1-3 the model's; a blank
// outside them.
unsigned char SignPreview::cellByte(int textRow, int column) const {
    if (textRow == 0) {
        const std::string& top = m_model.rolledOff;
        return static_cast<std::size_t>(column) < top.size()
                   ? static_cast<unsigned char>(top[static_cast<std::size_t>(column)])
                   : ' ';
    }
    if (textRow > kSignRows) return ' ';
    return static_cast<unsigned char>(
        m_model.cells[static_cast<std::size_t>(textRow - 1)][static_cast<std::size_t>(column)]);
}

// The LEDs stay where they are and the text moves across them: during a
// roll-up each LED shows the dot that stands riseLeft dot rows higher in the
// picture of the row that left above the three rows.
bool SignPreview::dot(SignSide side, int row, int column, int dotColumn, int dotRow) const {
    if (side == SignSide::Reflector) {
        column = kSignColumns - 1 - column;
        dotColumn = kGlyphColumns - 1 - dotColumn;
    }
    // On the face every glyph is drawn mirrored.
    const int glyphColumn = kGlyphColumns - 1 - dotColumn;
    const int picture = (row + 1) * kRollDotRows + dotRow - m_riseLeft;
    const int textRow = picture / kRollDotRows;
    const int glyphRow = picture % kRollDotRows;
    if (glyphRow >= kGlyphRows) return false;
    return ledDot(cellByte(textRow, column), glyphColumn, glyphRow);
}

std::string SignPreview::boardText() const {
    std::string text = m_model.frontBoard ? "Front board" : "Rear board";
    if (m_model.boardReversed) text += ", reversed text";
    return text;
}

std::string SignPreview::status() const {
    std::string text = boardText() + (m_model.bright ? ", bright" : ", dim") + ", " +
                       counted(m_model.frames, "frame", "frames");
    if (m_model.unknownFrames > 0)
        text += ", " + counted(m_model.unknownFrames, "broken frame", "broken frames");
    if (m_model.strayBytes > 0)
        text += ", " + counted(m_model.strayBytes, "stray byte", "stray bytes");
    if (m_model.clippedChars > 0)
        text += ", " + counted(m_model.clippedChars, "character", "characters") + " off the row";
    return text;
}

std::string SignPreview::dots(SignSide side) const {
    std::string out;
    for (int row = 0; row < kSignRows; ++row) {
        for (int dotRow = 0; dotRow < kGlyphRows; ++dotRow) {
            for (int column = 0; column < kSignColumns; ++column) {
                for (int dc = 0; dc < kGlyphColumns; ++dc)
                    out += dot(side, row, column, dc, dotRow) ? '#' : '.';
                if (column + 1 < kSignColumns) out += ' ';
            }
            out += '\n';
        }
    }
    return out;
}

}  // namespace zelvan
