// The caption memory: two banks of 15 rows of 32 characters, their roles, the
// row readers and the text the memory panes show.

#include "line21/inl21.h"

#include <algorithm>
#include <utility>

namespace zelvan {

using line21::kCols;
using line21::kRows;

namespace {

bool isBankNumber(std::int16_t n) {
    return n == 1 || n == 2;
}

}  // namespace

InL21::InL21() {
    initL21();
}

void InL21::initL21() {
    iNM = 2;
    iWriteBank = 2;
    iRow = 1;
    iCol = 1;
    iDM = 1;
    iMode = kPopOn;
    fillPattern[0] = std::string(kCols, '1');
    fillPattern[1] = std::string(kCols, '2');
    eraseDM();
    eraseNM();
    bErasePending = false;
    musicNote = std::string(1, static_cast<char>(line21::kMusicNote));
    sFirst.clear();
    sSecond.clear();
    sPrevFirst.clear();
    sPrevSecond.clear();
    bHaveFirst = false;
    bIgnoreText = false;
    bChannelActive = false;
    m_lastStoreBank = m_lastStoreRow = m_lastStoreCol = 0;
}

// A bank number out of range (only a caller's mistake) is ignored.
void InL21::fillMemory(std::int16_t n) {
    if (!isBankNumber(n)) return;
    MemBank& b = bank(n);
    const std::string& pattern = fillPattern[static_cast<std::size_t>(n - 1)];
    for (Row& row : b.rowText) std::copy_n(pattern.begin(), kCols, row.begin());
    b.rowUsed.fill(true);
}

void InL21::eraseBank(std::int16_t n) {
    MemBank& b = bank(n);
    for (Row& row : b.rowText) row.fill(' ');
    b.rowUsed.fill(false);
}

void InL21::eraseDM() {
    eraseBank(iDM);
}

void InL21::eraseNM() {
    eraseBank(iNM);
}

// The write bank is a bank number, not a role: a decoder that goes on writing
// after a flip keeps writing into the same physical bank.
void InL21::flipMemory() {
    std::swap(iDM, iNM);
    if (!view) return;
    view->cmdShowDM_Click();
    view->cmdShowNM_Click();
}

std::string InL21::rowString(std::int16_t n, std::int16_t row) const {
    if (!isBankNumber(n) || row < 1 || row > kRows) return std::string();
    const Row& r = bank(n).rowText[static_cast<std::size_t>(row - 1)];
    return std::string(r.begin(), r.end());
}

std::string InL21::memoryText(std::int16_t n) const {
    std::string text;
    if (!isBankNumber(n)) return text;
    text.reserve(kRows * (kCols + 2));
    for (const Row& r : bank(n).rowText) {
        if (!text.empty()) text += "\r\n";
        text.append(r.begin(), r.end());
    }
    return text;
}

std::string InL21::getExternalTextL21(std::int16_t i) const {
    std::string row = rowString(iDM, i);
    row.erase(row.find_last_not_of(' ') + 1);
    return row;
}

std::string InL21::getExternalTextTrimmedL21(std::int16_t i) const {
    std::string row = getExternalTextL21(i);
    row.erase(0, row.find_first_not_of(' '));
    return row;
}

void InL21::restartFlushTimer() {
    if (!view) return;
    Timer& timer = view->TimerFlushTimer();
    timer.setEnabled(false);
    timer.setInterval(5000);
    timer.setEnabled(true);
}

void InL21::refreshPanes() {
    if (!view) return;
    view->cmdShowNM_Click();
    view->cmdShowDM_Click();
}

namespace {

std::string showByte(const std::string& s) {
    if (s.empty()) return "-";
    static const char* hex = "0123456789ABCDEF";
    const auto c = static_cast<unsigned char>(s[0]);
    return std::string{hex[c >> 4], hex[c & 15]};
}

}  // namespace

// Decoder state on one line, then each bank with its role and its non-blank
// rows, as "NN|32 characters|".
std::string InL21::dump() const {
    std::string out = "iDM=" + std::to_string(iDM) + " iNM=" + std::to_string(iNM) +
                      " iWriteBank=" + std::to_string(iWriteBank) +
                      " iRow=" + std::to_string(iRow) + " iCol=" + std::to_string(iCol) +
                      " iMode=" + std::to_string(iMode) + " iChannel=" + std::to_string(iChannel) +
                      " EdmKeepsPosition=" + std::to_string(EdmKeepsPosition) +
                      " bErasePending=" + std::to_string(bErasePending) +
                      " bHaveFirst=" + std::to_string(bHaveFirst) +
                      " bIgnoreText=" + std::to_string(bIgnoreText) +
                      " bChannelActive=" + std::to_string(bChannelActive) +
                      " pair=" + showByte(sFirst) + showByte(sSecond) +
                      " prev=" + showByte(sPrevFirst) + showByte(sPrevSecond) + "\n";
    for (std::int16_t n = 1; n <= 2; ++n) {
        out += "bank " + std::to_string(n) + (n == iDM ? " (DM)" : " (NM)") + ":\n";
        for (std::int16_t row = 1; row <= kRows; ++row) {
            const std::string text = rowString(n, row);
            if (text.find_first_not_of(' ') == std::string::npos) continue;
            out += (row < 10 ? " " : "") + std::to_string(row) + "|" + text + "|\n";
        }
    }
    return out;
}

}  // namespace zelvan
