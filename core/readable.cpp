// The readable notation: "û" and two hexadecimal digits for one byte.

#include "core/readable.h"

namespace zelvan {

namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Reads like a numeric parse of hexadecimal text: digits count up to the first
// character that isn't one, so "7FE"'s two characters give 0x7F, "A," gives
// 0x0A and an empty or non-digit text gives 0.
char parseEscapeDigits(const std::string& s, std::size_t from) {
    int value = 0;
    for (std::size_t i = from; i < from + 2 && i < s.size(); ++i) {
        const int digit = hexDigit(s[i]);
        if (digit < 0) break;
        value = value * 16 + digit;
    }
    return static_cast<char>(value);
}

}  // namespace

std::string fromReadable(const std::string& s) {
    std::string out;
    out.reserve(s.size());
    std::size_t pos = 0;
    while (pos < s.size()) {
        if (s[pos] != kReadableEscape) {
            out += s[pos];
            ++pos;
            continue;
        }
        // The escape swallows its two characters even when they aren't digits.
        out += parseEscapeDigits(s, pos + 1);
        pos += 3;
    }
    return out;
}

std::string toReadable(const std::string& s) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(s.size());
    for (char c : s) {
        const auto code = static_cast<unsigned char>(c);
        if (code >= 32 && code <= 126) {
            out += c;
            continue;
        }
        out += kReadableEscape;
        out += kHex[code >> 4];
        out += kHex[code & 0x0F];
    }
    return out;
}

}  // namespace zelvan
