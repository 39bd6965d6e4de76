// The frames of the caption sign and the routines that send them.

#include "display/protocol.h"

#include <algorithm>

#include "core/readable.h"
#include "platform/seriallink.h"

namespace zelvan {

namespace {

// The write-text frame and the clear-row frame, in the readable notation.
// clang-format off
const std::string kFrameStart = "\xFB" "01" "\xFB" "20";
const std::string kFrameEnd = "\xFB" "01";
const std::string kClearRowBody = "\xFB" "20" "\xFB" "0f";
// clang-format on
constexpr char kRowBase = 0x1F;       // row byte = 0x1F + row
constexpr char kColumnBase = 0x1F;    // column byte = 0x1F + column
constexpr char kClearRowBase = 0x20;  // clear-row frame: 0x20 + n for row n + 1
constexpr int kSunriseRepeats = 4;

}  // namespace

const ControlFrameEntry& controlFrameEntry(ControlFrame frame) {
    for (const ControlFrameEntry& entry : kControlFrames)
        if (entry.frame == frame) return entry;
    return kControlFrames[0];  // unreachable: the table holds every frame
}

// The sign has 32 columns, and the program cuts nothing that lands on them or
// right of them: a row longer than the sign (one that wacky output grew, or a
// long typed line) or one that starts right of column 32 goes out whole with
// its column, and the sign shows what falls on its row. Only a reversed text
// longer than the row would start left of column 1, where a column byte
// below 0x20 means nothing to the sign: the characters that would land there
// aren't sent, and the rest starts in column 1. Those are the end of the
// caption, so the reader still sees its first 32 characters. Lengths count
// characters as given, line breaks included, before the notation is read, as
// the column arithmetic does.
static void dropLeftOfRow(std::string& text, int& column) {
    if (column >= 1) return;
    text.erase(0, std::min(static_cast<std::size_t>(1 - column), text.size()));
    column = 1;
}

void DisplayProtocol::sendControl(ControlFrame frame) {
    sendToPort(fromReadable(controlFrameEntry(frame).literal));
}

void DisplayProtocol::sendBoardFront() {
    sendControl(bReverse ? ControlFrame::BoardFrontReversed : ControlFrame::BoardFront);
}

void DisplayProtocol::sendBoardRear() {
    sendControl(bReverse ? ControlFrame::BoardRearReversed : ControlFrame::BoardRear);
}

void DisplayProtocol::toggleBoard() {
    if (!bBoardFront) {
        bBoardFront = true;
        sendBoardFront();
    } else {
        bBoardFront = false;
        sendBoardRear();
    }
}

void DisplayProtocol::reverseString(const std::string& s, std::string& sOut) {
    sOut.assign(s.rbegin(), s.rend());
}

void DisplayProtocol::writeLine(const std::string& sText, std::int16_t iRow, std::int16_t iCol) {
    std::string outText;
    int column = iCol;
    if (bReverse) {
        reverseString(sText, outText);
        // A reversed text ends where a plain one would start, counted from the
        // right; line breaks go out as they stand and count as characters.
        column = 34 - static_cast<int>(sText.size()) - iCol;
    } else {
        outText = sText;
    }
    std::replace(outText.begin(), outText.end(), kMusicNoteChar, kSignMusicNote);
    dropLeftOfRow(outText, column);
    if (!bSunrise) {
        sendText(iRow, column, outText);
        return;
    }
    const std::string padded = std::string(static_cast<std::size_t>(column - 1), ' ') + outText;
    for (int i = 0; i < kSunriseRepeats; ++i) sendText(iRow, 1, padded);
}

void DisplayProtocol::DWErase() {
    if (!bSunrise) {
        for (int n = 0; n < iLines; ++n) sendClearRow(n);
        return;
    }
    sendDim();
    const std::string blanks(kSignColumns, ' ');
    for (std::int16_t row = 1; row <= iLines; ++row) writeLine(blanks, row, 1);
    sendBright();
}

void DisplayProtocol::sendToPort(const std::string& s) {
    if (m_link.isPortOpen())
        m_link.write(s);
    else
        m_link.showNotice(true, kOpenPortFirst);
}

void DisplayProtocol::sendText(std::int16_t iRow, int column, const std::string& text) {
    std::string frame = kFrameStart;
    frame += static_cast<char>(kRowBase + iRow);
    frame += static_cast<char>(kColumnBase + column);
    frame += text;
    frame += kFrameEnd;
    sendToPort(fromReadable(frame));
}

void DisplayProtocol::sendClearRow(int n) {
    std::string frame = kFrameStart;
    frame += static_cast<char>(kClearRowBase + n);
    frame += kClearRowBody;
    frame += kFrameEnd;
    sendToPort(fromReadable(frame));
}

}  // namespace zelvan
