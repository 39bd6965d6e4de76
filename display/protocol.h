#pragma once
// The frames of the caption sign and the routines that send them. The sign has
// three rows of 32 columns and only listens: each frame is 01 20, a row byte, a
// column or control byte, a body and a closing 01, with no length, checksum or
// answer. Every frame is built in the readable notation, passed through
// fromReadable and handed to sendToPort as one write.

#include <cstdint>
#include <string>
#include <string_view>

#include "display/displaylink.h"

namespace zelvan {

inline constexpr int kSignRows = 3;
inline constexpr int kSignColumns = 32;

// The control frames, each as its literal in the readable notation beside the
// bytes that literal gives on the wire.
enum class ControlFrame {
    Bright,
    Dim,
    Reset,
    Rollup,
    BoardReset,
    BoardFront,
    BoardFrontReversed,
    BoardRear,
    BoardRearReversed,
};

struct ControlFrameEntry {
    ControlFrame frame;
    const char* literal;
    std::string_view wire;
};

// clang-format off
// "\xFB" is the notation's escape; the literals are split behind it so that the
// compiler doesn't read the escape's hex digits as part of "\xFB".
inline constexpr ControlFrameEntry kControlFrames[] = {
    {ControlFrame::Bright, "\xFB" "01" "\xFB" "20" "\xFB" "7F " "\xFB" "01",
     "\x01\x20\x7F\x20\x01"},
    {ControlFrame::Dim, "\xFB" "01" "\xFB" "20" "\xFB" "7F/" "\xFB" "01", "\x01\x20\x7F\x2F\x01"},
    {ControlFrame::Reset, "\xFB" "01" "\xFB" "20" "\xFB" "7FE  " "\xFB" "01",
     "\x01\x20\x7F\x45\x20\x20\x01"},
    {ControlFrame::Rollup, "\xFB" "01" "\xFB" "20" "\xFB" "7f" "\xFB" "46" "\xFB" "20" "\xFB" "20"
     "\xFB" "01", "\x01\x20\x7F\x46\x20\x20\x01"},
    {ControlFrame::BoardReset, "\xFB" "01" "\xFB" "20" "\xFB" "7f" "\xFB" "7e" "\xFB" "20" "\xFB"
     "01", "\x01\x20\x7F\x7E\x20\x01"},
    {ControlFrame::BoardFront, "\xFB" "01" "\xFB" "20" "\xFB" "7f" "\xFB" "7e" "\xFB" "25" "\xFB"
     "01", "\x01\x20\x7F\x7E\x25\x01"},
    {ControlFrame::BoardFrontReversed, "\xFB" "01" "\xFB" "20" "\xFB" "7f" "\xFB" "7e" "\xFB" "27"
     "\xFB" "01", "\x01\x20\x7F\x7E\x27\x01"},
    {ControlFrame::BoardRear, "\xFB" "01" "\xFB" "20" "\xFB" "7f" "\xFB" "7e" "\xFB" "26" "\xFB"
     "01", "\x01\x20\x7F\x7E\x26\x01"},
    {ControlFrame::BoardRearReversed, "\xFB" "01" "\xFB" "20" "\xFB" "7f" "\xFB" "7e" "\xFB" "28"
     "\xFB" "01", "\x01\x20\x7F\x7E\x28\x01"},
};
// clang-format on

const ControlFrameEntry& controlFrameEntry(ControlFrame frame);

// The character that stands for the music note in caption text, and the
// sign's glyph for it.
inline constexpr char kMusicNoteChar = '\x95';
inline constexpr char kSignMusicNote = '\x7F';

class DisplayProtocol {
  public:
    explicit DisplayProtocol(DisplayLink& link) : m_link(link) {}

    void sendBright() { sendControl(ControlFrame::Bright); }
    void sendDim() { sendControl(ControlFrame::Dim); }
    void sendReset() { sendControl(ControlFrame::Reset); }
    void sendRollup() { sendControl(ControlFrame::Rollup); }
    void sendBoardReset() { sendControl(ControlFrame::BoardReset); }
    // The front and rear frames come in a reversed-text form while bReverse is set.
    void sendBoardFront();
    void sendBoardRear();
    // Flips between the boards; bBoardFront remembers the last one it chose.
    void toggleBoard();

    static void reverseString(const std::string& s, std::string& sOut);
    // One row of text from column iCol, reversed if bReverse, and four times
    // padded from column 1 if bSunrise.
    void writeLine(const std::string& sText, std::int16_t iRow, std::int16_t iCol);
    // Clears the rows in use.
    void DWErase();
    // Writes a frame, or shows "Open port first." when the port is closed.
    void sendToPort(const std::string& s);

    DisplayLink& link() { return m_link; }

    bool bReverse = true;     // "Reverse Text": rows leave mirrored, for the reflector
    bool bSunrise = false;    // "Sunrise": each row four times, padded from column 1
    std::int16_t iLines = 3;  // rows in use on the sign, 1 to 3
    bool bBoardFront = true;  // the board toggleBoard chose last

  private:
    void sendControl(ControlFrame frame);
    void sendText(std::int16_t iRow, int column, const std::string& text);
    void sendClearRow(int n);

    DisplayLink& m_link;
};

}  // namespace zelvan
