// A model of the caption sign, fed with the bytes written to its link.

#include "display/signmodel.h"

#include <algorithm>

#include "core/readable.h"

namespace zelvan {

namespace {

constexpr char kFrameMark = 0x01;
constexpr char kHeader = 0x20;
constexpr char kControlRow = 0x7F;
constexpr char kClearRowByte = 0x0F;

// Control codes behind 01 20 7F.
constexpr char kCodeBright = 0x20;
constexpr char kCodeDim = 0x2F;
constexpr char kCodeReset = 0x45;
constexpr char kCodeRollup = 0x46;
constexpr char kCodeBoard = 0x7E;

// Board codes behind 01 20 7F 7E.
struct BoardCode {
    char code;
    bool front;
    bool reversed;
};
constexpr BoardCode kBoardCodes[] = {
    {0x25, true, false},
    {0x26, false, false},
    {0x27, true, true},
    {0x28, false, true},
};
constexpr char kBoardResetCode = 0x20;

}  // namespace

SignModel::SignModel() {
    for (int r = 1; r <= kSignRows; ++r) blankRow(r);
}

// 01 opens a frame and the next 01 closes it. An 01 right behind an opening
// one opens the frame anew, so a stray 01 costs no frame.
void SignModel::feed(const std::string& bytes) {
    for (char b : bytes) {
        if (!m_inFrame) {
            if (b == kFrameMark)
                m_inFrame = true;
            else
                ++strayBytes;
            continue;
        }
        if (b != kFrameMark) {
            m_body += b;
            continue;
        }
        if (m_body.empty()) {
            ++strayBytes;
            continue;
        }
        applyFrame(m_body);
        m_body.clear();
        m_inFrame = false;
    }
}

void SignModel::applyFrame(const std::string& body) {
    if (body.size() < 3 || body[0] != kHeader) {
        ++unknownFrames;
        return;
    }
    const char rowByte = body[1];
    if (rowByte == kControlRow) {
        applyControl(body);
        return;
    }
    const int row = rowByte - 0x1F;
    if (row < 1 || row > kSignRows) {
        ++unknownFrames;
        return;
    }
    ++frames;
    const int column = static_cast<unsigned char>(body[2]) - 0x1F;
    const std::string text = body.substr(3);
    if (column == 1 && !text.empty() && text[0] == kClearRowByte) {
        blankRow(row);
        return;
    }
    applyText(row, column, text);
}

void SignModel::applyText(int row, int column, const std::string& text) {
    auto& cellsOfRow = cells[static_cast<std::size_t>(row - 1)];
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int c = column + static_cast<int>(i);
        if (c < 1 || c > kSignColumns) {
            ++clippedChars;
            continue;
        }
        cellsOfRow[static_cast<std::size_t>(c - 1)] = text[i];
    }
}

void SignModel::applyControl(const std::string& body) {
    const char code = body[2];
    const std::string rest = body.substr(3);
    if (code == kCodeBright && rest.empty()) {
        bright = true;
    } else if (code == kCodeDim && rest.empty()) {
        bright = false;
    } else if (code == kCodeReset && rest == "  ") {
        reset();
    } else if (code == kCodeRollup && rest == "  ") {
        rollUp();
    } else if (code == kCodeBoard && rest.size() == 1) {
        applyBoard(rest[0]);
        return;
    } else {
        ++unknownFrames;
        return;
    }
    ++frames;
}

void SignModel::applyBoard(char code) {
    if (code == kBoardResetCode) {
        ++frames;
        return;
    }
    for (const BoardCode& board : kBoardCodes) {
        if (board.code != code) continue;
        frontBoard = board.front;
        boardReversed = board.reversed;
        ++frames;
        return;
    }
    ++unknownFrames;
}

void SignModel::blankRow(int row) {
    cells[static_cast<std::size_t>(row - 1)].fill(' ');
}

void SignModel::rollUp() {
    ++rollups;
    rolledOff = row(1);
    for (int r = 1; r < kSignRows; ++r)
        cells[static_cast<std::size_t>(r - 1)] = cells[static_cast<std::size_t>(r)];
    blankRow(kSignRows);
}

// What a real sign does on reset isn't known beyond "reset"; the model takes
// it to blank the rows and come back at full brightness.
void SignModel::reset() {
    for (int r = 1; r <= kSignRows; ++r) blankRow(r);
    bright = true;
}

std::string SignModel::row(int r) const {
    if (r < 1 || r > kSignRows) return std::string();
    const auto& cellsOfRow = cells[static_cast<std::size_t>(r - 1)];
    return std::string(cellsOfRow.begin(), cellsOfRow.end());
}

std::string SignModel::rowThroughReflector(int r) const {
    std::string text = row(r);
    std::reverse(text.begin(), text.end());
    return text;
}

std::string SignModel::dump() const {
    std::string out;
    for (int r = 1; r <= kSignRows; ++r) out += "|" + toReadable(row(r)) + "|\n";
    out += bright ? "bright" : "dim";
    out += frontBoard ? " front" : " rear";
    out += boardReversed ? " reversed" : "";
    out += " frames=" + std::to_string(frames) + " rollups=" + std::to_string(rollups) +
           " stray=" + std::to_string(strayBytes) + " unknown=" + std::to_string(unknownFrames) +
           " clipped=" + std::to_string(clippedChars) + "\n";
    return out;
}

}  // namespace zelvan
