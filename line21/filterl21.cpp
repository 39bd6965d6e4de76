// The line-21 decoder: a small subset of EIA-608, one byte a call.
//
// Bytes come as one plain sequence with parity already removed; a control pair
// is recognised only by the class of its first byte. Colours, italics,
// underline, flashing, roll-up depth and window position, fields and XDS are
// not decoded, and a code not handled here does nothing.

#include <algorithm>

#include "core/inputfilter.h"
#include "line21/inl21.h"

namespace zelvan {

using namespace line21;

namespace {

enum class ByteClass { Printable, First, Other };

constexpr ByteClass classify(std::uint8_t c) {
    if (c >= 0x20 && c <= 0x7E) return ByteClass::Printable;
    if (c >= 0x10 && c <= 0x1F) return ByteClass::First;
    // Below 0x10 (XDS, noise), 0x7F and anything with bit 7 set. EIA-608 has
    // row codes with a second byte 0x7F; here 0x7F drops the waiting pair
    // like any other byte of this class, and they are not decoded.
    return ByteClass::Other;
}

// The row code entry of each first byte 0x10-0x1F, or -1.
constexpr std::array<std::int8_t, 16> kRowCodeIndex = [] {
    std::array<std::int8_t, 16> t{};
    t.fill(-1);
    for (std::size_t i = 0; i < rowCodes.size(); ++i)
        t[rowCodes[i].first - 0x10] = static_cast<std::int8_t>(i);
    return t;
}();

// The command entry of each second byte 0x20-0x2F, or -1.
constexpr std::array<std::int8_t, 16> kCommandIndex = [] {
    std::array<std::int8_t, 16> t{};
    t.fill(-1);
    for (std::size_t i = 0; i < commandCodes.size(); ++i)
        t[commandCodes[i].second - 0x20] = static_cast<std::int8_t>(i);
    return t;
}();

}  // namespace

// An empty inString carries no character: after the pending erase the call
// ends as for a dropped byte.
std::int16_t InL21::FilterL21(const std::string& inString, std::string& outString) {
    if (bErasePending) {
        eraseDM();
        bErasePending = false;
    }
    Outcome out;
    if (!inString.empty()) {
        const auto c = static_cast<std::uint8_t>(inString[0]);
        switch (classify(c)) {
            case ByteClass::First:
                takeFirstByte(inString[0]);
                break;
            case ByteClass::Other:
                takeOtherByte();
                break;
            case ByteClass::Printable:
                if (bIgnoreText) break;
                if (bHaveFirst) {
                    takeSecondByte(inString[0], out);
                    break;
                }
                // Text while the channel gate is shut is dropped untouched,
                // outString included, and without a refresh.
                if (!bChannelActive) return kStyleNothing;
                takeTextByte(c);
                break;
        }
    }
    if (bChannelActive) {
        refreshPanes();
        outString = out.line;
    } else {
        outString.clear();
    }
    if (out.style == kStyleLineEnded && !outString.empty()) restartFlushTimer();
    return out.style;
}

// --- byte assembly ---

// A first byte that was waiting is replaced.
void InL21::takeFirstByte(char c) {
    bHaveFirst = true;
    sFirst.assign(1, c);
    bIgnoreText = false;
}

// From here all text is dropped until the next control pair opens. The last
// pair is kept, so a repeat is still recognised across the gap.
void InL21::takeOtherByte() {
    bHaveFirst = false;
    sFirst.clear();
    sSecond.clear();
    bIgnoreText = true;
}

void InL21::takeTextByte(std::uint8_t c) {
    sPrevFirst.clear();
    sPrevSecond.clear();
    storeChar(kStoredText[c]);
}

// EIA-608 sends each control pair twice; the second copy is dropped. Only a
// text byte accepted on the active channel ends the memory of the last pair.
void InL21::takeSecondByte(char c, Outcome& out) {
    sSecond.assign(1, c);
    if (sSecond != sPrevSecond || sFirst != sPrevFirst)
        actOnPair(static_cast<std::uint8_t>(sFirst[0]), static_cast<std::uint8_t>(c), out);
    sPrevFirst = sFirst;
    sPrevSecond = sSecond;
    sFirst.clear();
    sSecond.clear();
    bHaveFirst = false;
}

// --- acting on a pair ---

// Only the commands look at the channel; the other codes act whichever
// channel is selected. First bytes 0x18-0x1B, 0x1E and 0x1F do nothing.
void InL21::actOnPair(std::uint8_t f, std::uint8_t s, Outcome& out) {
    if (s >= 0x40) return rowCode(f, s, out);
    switch (f) {
        case 0x11:
            if (s < 0x30)
                midRowCode(out);
            else
                specialChar(s, out);
            return;
        case 0x12:
        case 0x13:
            return extendedChar(f, s, out);
        case 0x17:
            if (s >= 0x21 && s <= 0x23) tabOffset(s);
            return;
        case 0x14:
        case 0x15:
        case 0x1C:
        case 0x1D:
            if (s <= 0x2F) command(f, s, out);
            return;
        default:
            return;
    }
}

// Moves the write position; erases and writes nothing, whatever the mode.
void InL21::rowCode(std::uint8_t f, std::uint8_t s, Outcome& out) {
    const std::int8_t index = kRowCodeIndex[f - 0x10];
    if (index < 0) return;
    const RowCode& code = rowCodes[static_cast<std::size_t>(index)];
    const std::int16_t row = s < 0x60 ? code.upperRow : code.lowerRow;
    if (row == 0) return;
    iRow = row;
    if (s & 0x10) {
        // Indent: columns 1, 5, ... 29; the low bit (underline) doesn't count.
        const int k = s & 0x0F;
        iCol = static_cast<std::int16_t>(4 * (k / 2) + 1);
    } else {
        iCol = 1;
        out.line = " ";
    }
}

// A mid-row code (colour, italics, underline) shows as a blank.
void InL21::midRowCode(Outcome& out) {
    out.line = " ";
    storeChar(' ');
}

void InL21::specialChar(std::uint8_t s, Outcome& out) {
    const std::uint8_t ch = specialChars[s - 0x30].ch;
    out.line.assign(1, static_cast<char>(ch));
    storeChar(ch);
}

// EIA-608 sends a plain fallback character just before each extended one, for
// decoders without the extended set; the extended character replaces it. So it
// goes over the column where the fallback landed: the column before the write
// position, or the write position itself when the fallback piled up on column
// 32. The column stays where it is. At column 1 there is no fallback to
// replace, and the character is stored and advances like any other.
void InL21::extendedChar(std::uint8_t f, std::uint8_t s, Outcome& out) {
    const auto& table = f == 0x12 ? extendedChars1 : extendedChars2;
    const std::uint8_t ch = table[s - 0x20].ch;
    out.line.assign(1, static_cast<char>(ch));
    if (iCol == 1) return storeChar(ch);
    const bool piledUp = iCol == kCols && m_lastStoreBank == iWriteBank && m_lastStoreRow == iRow &&
                         m_lastStoreCol == iCol;
    putChar(piledUp ? iCol : static_cast<std::int16_t>(iCol - 1), ch);
}

void InL21::tabOffset(std::uint8_t s) {
    iCol = static_cast<std::int16_t>(std::min(iCol + (s - 0x20), kCols));
}

// A command of the other channel lowers the gate and does nothing more.
void InL21::command(std::uint8_t f, std::uint8_t s, Outcome& out) {
    if (!passesChannelTest(f)) {
        out.line.clear();
        return;
    }
    const std::int8_t index = kCommandIndex[s - 0x20];
    if (index < 0) return;
    switch (commandCodes[static_cast<std::size_t>(index)].command) {
        case Command::RCL:
            return resumeCaptionLoading();
        case Command::BS:
            return backspace();
        case Command::RU2:
        case Command::RU3:
        case Command::RU4:
            return rollUp();
        case Command::RDC:
            return resumeDirectCaptioning();
        case Command::EDM:
            return eraseDisplayedMemory(out);
        case Command::CR:
            return carriageReturn(f, out);
        case Command::ENM:
            return eraseNonDisplayedMemory();
        case Command::EOC:
            return endOfCaption(out);
    }
}

// First bytes 0x14 and 0x15 belong to channel index 0, 0x1C and 0x1D to index
// 1. Channel indexes 2 and up never pass, so their text is never taken.
bool InL21::passesChannelTest(std::uint8_t f) {
    const std::int16_t index = (f == 0x14 || f == 0x15) ? 0 : 1;
    bChannelActive = iChannel == index;
    return bChannelActive;
}

// --- the commands ---

void InL21::resumeCaptionLoading() {
    iMode = kPopOn;
    iWriteBank = iNM;
}

// rowUsed stays as it is.
void InL21::backspace() {
    if (iCol == 1) return;
    --iCol;
    bank(iWriteBank)
        .rowText[static_cast<std::size_t>(iRow - 1)][static_cast<std::size_t>(iCol - 1)] = ' ';
}

// The depth of RU2, RU3 and RU4 isn't used. Entering roll-up from another mode
// erases both banks, a caption on show included.
void InL21::rollUp() {
    if (iMode != kRollUp) {
        eraseDM();
        eraseNM();
    }
    iWriteBank = iDM;
    iMode = kRollUp;
}

void InL21::resumeDirectCaptioning() {
    iMode = kPaintOn;
    iWriteBank = iDM;
}

void InL21::eraseDisplayedMemory(Outcome& out) {
    eraseDM();
    if (!EdmKeepsPosition) {
        iRow = 1;
        iCol = 1;
    }
    out.style = kStyleRows;
}

// Nothing scrolls: the next byte erases the displayed memory instead. The
// finished line is in the rows at this call; only a CR of the first field's
// codes (0x14, 0x1C) carries it in `line`, so only that one re-arms the flush
// timer.
void InL21::carriageReturn(std::uint8_t f, Outcome& out) {
    if (iMode != kRollUp) return;
    if (f == 0x14 || f == 0x1C) out.line = rowString(iDM, iRow);
    iCol = 1;
    iRow = kRows;
    out.style = kStyleLineEnded;
    bErasePending = true;
}

void InL21::eraseNonDisplayedMemory() {
    eraseNM();
}

void InL21::endOfCaption(Outcome& out) {
    flipMemory();
    iRow = 1;
    iCol = 1;
    out.style = kStyleRows;
}

// --- writing ---

// There is no wrap: at column 32 the column stays, and each further character
// overwrites column 32.
void InL21::storeChar(std::uint8_t ch) {
    putChar(iCol, ch);
    if (iCol < kCols) ++iCol;
}

void InL21::putChar(std::int16_t col, std::uint8_t ch) {
    MemBank& b = bank(iWriteBank);
    const auto row = static_cast<std::size_t>(iRow - 1);
    b.rowText[row][static_cast<std::size_t>(col - 1)] = static_cast<char>(ch);
    b.rowUsed[row] = true;
    m_lastStoreBank = iWriteBank;
    m_lastStoreRow = iRow;
    m_lastStoreCol = col;
}

}  // namespace zelvan
