#pragma once
// The row memory of the three text filters (keyboard, ASCII serial, caption
// file) and the byte-by-byte filter they share. Each filter window owns one
// instance; nothing here needs a window or a port.
//
// Rows are 15 fixed strings of 32 characters, counted from 1 and padded with
// blanks. The text filters keep to row 1 (the caption file window fills rows
// from the top); the display output reads them through the row readers.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace zelvan {

inline constexpr std::int16_t kTextRowCount = 15;
inline constexpr std::int16_t kTextRowWidth = 32;
// A byte filter stores up to column 31: column 32 of a row stays blank.
inline constexpr std::int16_t kLastStoredColumn = 31;
inline constexpr std::int16_t kDefaultWrapWidth = 32;

class TextRows {
  public:
    TextRows() { clearRows(); }

    // Fills all 15 rows with blanks; the caption file window also brings the
    // cursor home (bClearHomesCursor).
    void clearRows();
    // Row i (1-15), a copy of `text` padded with blanks or cut to 32 characters.
    void setRow(std::int16_t i, std::string_view text);
    // Row i with all 32 characters; "" outside 1-15.
    std::string row(std::int16_t i) const;
    // Stores one character at iCurCol of iCurRow and moves iCurCol on. A
    // cursor outside the rows stores nothing.
    void put(char c);
    // The text stored so far in the row in use: its first iCurCol - 1 characters.
    std::string storedText() const;

    // The row readers: row i without trailing blanks, or without leading and
    // trailing blanks; "" outside 1-15. The row itself doesn't change.
    std::string getExternalText(std::int16_t i) const;
    std::string getExternalTextTrimmed(std::int16_t i) const;
    // All 15 rows, trailing blanks kept, joined by CR LF with none at the end:
    // always 15 x 32 characters and 14 line breaks.
    std::string rowsAsText() const;

    std::array<std::string, kTextRowCount> sRows;  // sRows[0] is row 1
    std::int16_t iCurRow = 1;
    std::int16_t iCurCol = 1;
    bool bClearRows = false;
    bool bClearHomesCursor = false;
};

// The one-based position at which a line that has reached the wrap width is
// cut: the last character of `line` that isn't a word character (digits,
// letters, and codes 192 and up, the accented letters of the code page). A
// blank or punctuation mark there stays with the part that goes out. A line of
// word characters only, or an empty one, is cut hard at `wrapWidth`. The scan
// covers the whole line, so on a line already longer than the width (pasted)
// the cut can fall behind it.
std::int16_t findWrapPoint(std::string_view line, std::int16_t wrapWidth);
bool isWordChar(unsigned char c);

// The filter entry of the ASCII serial input, and of the caption file window
// for bytes left on the ring: printable bytes fill the row in use, and CR or
// LF ends the line; a run of CR and LF bytes, in any order, counts once.
//
// A line longer than the row wraps as the keyboard does: when a printable
// byte finds the row full (31 characters, the row's own limit), the row is
// cut at its last word break, the part before the break goes out as a line,
// and the rest with the new byte starts the next row once the display has
// read the line. No byte is lost. With bWrapLongLines down a
// byte beyond column 31 is kept in sCarry alone and the row fills again from
// the left, its tail staying.
class AsciiFilter {
  public:
    explicit AsciiFilter(TextRows& rows) : m_rows(rows) {}

    // One character in, a style out; a finished line (32 characters) or "".
    std::int16_t FilterAscii(const std::string& inString, std::string& outString);
    // The width that the wrap width box gives (parseWrapWidth). It is kept
    // and shown, but a serial line is never cut before the row is full: the
    // box may be empty or 0 while the operator retypes it, and a sender's
    // line that fits the sign must reach it whole.
    void setWrapWidth(std::int16_t width) { iWrapWidth = width; }
    std::string dump() const;

    std::int16_t iWrapWidth = kDefaultWrapWidth;
    bool bLineEnded = false;
    std::string sCarry;  // the bytes waiting for the next row; empty: none
    bool bWrapLongLines = true;

  private:
    std::int16_t printable(char c, std::string& outString);
    std::int16_t lineEnd(std::string& outString);
    std::int16_t wrap(char c, std::string& outString);
    void takeUpCarry();

    TextRows& m_rows;
};

// The wrap width box's text as a width: the number at its start (blanks,
// a sign, digits, a fraction, an exponent), rounded to an integer with ties
// to the even neighbour; no number gives 0, which makes every printable key
// wrap. Widths below 0 count as 0, as they would wrap every key anyway and a
// negative cut has no meaning; widths beyond 32767 count as 32767, which
// never wraps a line an operator can type.
std::int16_t parseWrapWidth(std::string_view text);

}  // namespace zelvan
