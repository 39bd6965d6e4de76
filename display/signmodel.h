#pragma once
// A model of the caption sign: it reads the byte stream that the program
// writes to the display link, splits it into frames and applies them to three
// rows of 32 columns, the brightness and the board. It rejects nothing: bytes
// outside a frame and frames it doesn't know are counted and skipped. The sign
// preview draws it; tests use it as the oracle of what reaches the display.

#include <array>
#include <string>

#include "display/protocol.h"

namespace zelvan {

class SignModel {
  public:
    SignModel();

    // Takes any part of the stream; a frame may be split across calls.
    void feed(const std::string& bytes);

    // Row 1-3 as the sign holds it, column 1 first (reversed text stands reversed).
    std::string row(int r) const;
    // Row 1-3 as a reader sees it through the reflector: the columns mirrored.
    std::string rowThroughReflector(int r) const;
    std::string dump() const;

    // Columns hold raw bytes, 0x7F being the music note glyph.
    std::array<std::array<char, kSignColumns>, kSignRows> cells{};
    bool bright = true;
    bool frontBoard = true;
    bool boardReversed = false;
    int frames = 0;  // frames applied
    int rollups = 0;
    int strayBytes = 0;     // bytes outside any frame
    int unknownFrames = 0;  // frames of no known shape, skipped
    int clippedChars = 0;   // text characters that fell outside columns 1-32
    std::string rolledOff;  // the top row that the last roll-up pushed off

  private:
    void applyFrame(const std::string& body);
    void applyText(int row, int column, const std::string& text);
    void applyControl(const std::string& body);
    void applyBoard(char code);
    void blankRow(int row);
    void rollUp();
    void reset();

    bool m_inFrame = false;
    std::string m_body;
};

}  // namespace zelvan
