#pragma once
// What the sign preview window shows, without a window: the display link's
// tap appends the written bytes to a buffer, and the window's own refresh
// (at most 30 times a second) feeds them to a sign model, so writing a frame
// costs the caption nothing more than that append. It also runs the roll-up
// motion and says, dot by dot, what each LED shows.
//
// Two views of the same LEDs: the sign's face, where column 1 stands at the
// left and every character is drawn mirrored, and the reflector, the face's
// mirror image, which the audience reads. What the sign does with the
// reversed-text board codes isn't known beyond their name; the preview takes
// the face to always draw mirrored glyphs (it is made to be read in a
// reflector) and shows the board codes in the status line.

#include <string>

#include "display/signmodel.h"
#include "platform/seriallink.h"

namespace zelvan {

// Seven dot rows a character and two dark ones between text rows: a roll-up
// lifts the text by nine dot rows.
inline constexpr int kRollDotRows = 9;

enum class SignSide { Face, Reflector };

class SignPreview : public WriteTap {
  public:
    static constexpr int kRefreshMs = 33;

    void written(const std::string& bytes) override { m_pending += bytes; }

    // One refresh: takes in what was written since the last one and moves a
    // roll-up on by one dot row. True when the picture changed.
    bool refresh();

    // Whether the LED is lit: text row 0-2, column 0-31 from the left of the
    // view, and the dot within the cell (column 0-4 from the left, row 0-6).
    bool dot(SignSide side, int row, int column, int dotColumn, int dotRow) const;
    // Dot rows a roll-up still has to lift the text (0 at rest).
    int riseLeft() const { return m_riseLeft; }
    const SignModel& model() const { return m_model; }
    std::size_t pending() const { return m_pending.size(); }

    // "Front board, reversed text" and the like.
    std::string boardText() const;
    // The board, the brightness and what the sign made of the stream.
    std::string status() const;
    // The face or the reflector as text, one character of '#' and '.' a dot.
    std::string dots(SignSide side) const;

  private:
    unsigned char cellByte(int textRow, int column) const;

    SignModel m_model;
    std::string m_pending;
    int m_riseLeft = 0;
};

}  // namespace zelvan
