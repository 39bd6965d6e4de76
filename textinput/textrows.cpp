#include "textinput/textrows.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>

namespace zelvan {

namespace {
constexpr char kCR = '\r';
constexpr char kLF = '\n';

bool isPrintable(unsigned char c) {
    return c >= 32 && c <= 126;
}
}  // namespace

void TextRows::clearRows() {
    for (std::string& r : sRows) r.assign(kTextRowWidth, ' ');
    if (!bClearHomesCursor) return;
    iCurRow = 1;
    iCurCol = 1;
}

void TextRows::setRow(std::int16_t i, std::string_view text) {
    if (i < 1 || i > kTextRowCount) return;
    std::string& r = sRows[static_cast<std::size_t>(i - 1)];
    r.assign(text.substr(0, kTextRowWidth));
    r.resize(kTextRowWidth, ' ');
}

std::string TextRows::row(std::int16_t i) const {
    if (i < 1 || i > kTextRowCount) return std::string();
    return sRows[static_cast<std::size_t>(i - 1)];
}

void TextRows::put(char c) {
    if (iCurRow < 1 || iCurRow > kTextRowCount || iCurCol < 1 || iCurCol > kTextRowWidth) return;
    sRows[static_cast<std::size_t>(iCurRow - 1)][static_cast<std::size_t>(iCurCol - 1)] = c;
    ++iCurCol;
}

std::string TextRows::storedText() const {
    const std::string r = row(iCurRow);
    return r.substr(0, std::clamp<std::size_t>(static_cast<std::size_t>(std::max(iCurCol - 1, 0)),
                                               0, r.size()));
}

std::string TextRows::getExternalText(std::int16_t i) const {
    std::string r = row(i);
    r.erase(r.find_last_not_of(' ') + 1);
    return r;
}

std::string TextRows::getExternalTextTrimmed(std::int16_t i) const {
    std::string r = getExternalText(i);
    r.erase(0, r.find_first_not_of(' '));
    return r;
}

std::string TextRows::rowsAsText() const {
    std::string s;
    s.reserve(kTextRowCount * (kTextRowWidth + 2));
    for (std::size_t i = 0; i < sRows.size(); ++i) {
        if (i > 0) s += "\r\n";
        s += sRows[i];
    }
    return s;
}

bool isWordChar(unsigned char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c >= 192;
}

std::int16_t findWrapPoint(std::string_view line, std::int16_t wrapWidth) {
    for (std::size_t i = line.size(); i > 0; --i)
        if (!isWordChar(static_cast<unsigned char>(line[i - 1])))
            return static_cast<std::int16_t>(std::min<std::size_t>(i, INT16_MAX));
    return wrapWidth;
}

// Only a plain decimal number counts: strtod alone would also take "inf",
// "nan" and hexadecimal, so the number must start with a digit or a point and
// a digit, and "0x" is the number 0.
std::int16_t parseWrapWidth(std::string_view text) {
    const std::string s(text.substr(std::min(text.find_first_not_of(" \t"), text.size())));
    const std::size_t i = !s.empty() && (s[0] == '+' || s[0] == '-') ? 1 : 0;
    const auto digitAt = [&](std::size_t k) {
        return k < s.size() && std::isdigit(static_cast<unsigned char>(s[k]));
    };
    if (!digitAt(i) && !(digitAt(i + 1) && s[i] == '.')) return 0;
    const std::string_view number = std::string_view(s).substr(i);
    if (number.starts_with("0x") || number.starts_with("0X")) return 0;
    const double v = std::nearbyint(std::strtod(s.c_str(), nullptr));  // ties to even
    return static_cast<std::int16_t>(std::clamp(v, 0.0, static_cast<double>(INT16_MAX)));
}

std::int16_t AsciiFilter::FilterAscii(const std::string& inString, std::string& outString) {
    outString.clear();
    if (m_rows.bClearRows) {
        m_rows.clearRows();
        m_rows.bClearRows = false;
        takeUpCarry();
    }
    if (inString.empty()) return 0;
    const char c = inString[0];
    const auto code = static_cast<unsigned char>(c);
    if (isPrintable(code)) return printable(c, outString);
    if (code == kCR || code == kLF) return lineEnd(outString);
    return 0;
}

std::int16_t AsciiFilter::printable(char c, std::string& outString) {
    bLineEnded = false;
    if (bWrapLongLines && m_rows.iCurCol > kLastStoredColumn) return wrap(c, outString);
    if (m_rows.iCurCol <= kLastStoredColumn) {
        m_rows.put(c);
        return 0;
    }
    // The row is full and nothing wraps it: the byte waits in the carry, and
    // later bytes overwrite the row from the left.
    sCarry.assign(1, c);
    m_rows.iCurCol = 1;
    return 0;
}

std::int16_t AsciiFilter::lineEnd(std::string& outString) {
    if (!bLineEnded) {
        m_rows.iCurCol = 1;
        outString = m_rows.row(m_rows.iCurRow);
        m_rows.bClearRows = true;
    }
    const bool sent = !bLineEnded;
    bLineEnded = true;
    return sent ? 3 : 0;
}

// The row goes out up to its last word break; the rest and the new byte
// wait in the carry until the display has read the line.
std::int16_t AsciiFilter::wrap(char c, std::string& outString) {
    const std::string text = m_rows.storedText();
    const std::int16_t cut = std::min<std::int16_t>(findWrapPoint(text, kLastStoredColumn),
                                                    static_cast<std::int16_t>(text.size()));
    sCarry = text.substr(static_cast<std::size_t>(cut)) + c;
    m_rows.setRow(m_rows.iCurRow, text.substr(0, static_cast<std::size_t>(cut)));
    m_rows.iCurCol = 1;
    outString = m_rows.row(m_rows.iCurRow);
    m_rows.bClearRows = true;
    return 3;
}

void AsciiFilter::takeUpCarry() {
    if (!bWrapLongLines) return;
    for (char c : sCarry) m_rows.put(c);
    sCarry.clear();
}

std::string AsciiFilter::dump() const {
    std::string s =
        "row=" + std::to_string(m_rows.iCurRow) + " col=" + std::to_string(m_rows.iCurCol);
    s += " width=" + std::to_string(iWrapWidth);
    s += std::string(" clear=") + (m_rows.bClearRows ? "1" : "0");
    s += std::string(" ended=") + (bLineEnded ? "1" : "0");
    s += " carry=" + (sCarry.empty() ? std::string("none") : "\"" + sCarry + "\"");
    s += " row1=\"" + m_rows.getExternalText(1) + "\"";
    return s;
}

}  // namespace zelvan
