#pragma once
// The 8-bit code page of all text in the logic: Windows-1252. A byte is one
// character; conversion to Unicode happens only at widgets and the clipboard.

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace zelvan::codepage {

struct HighByte {
    std::uint8_t byte;
    char32_t unicode;
};

// 0x80-0x9F, the only range where Windows-1252 differs from Latin-1. The five
// bytes the code page leaves undefined map to the C1 control of the same
// number, so that every byte survives a trip through Unicode.
inline constexpr std::array<HighByte, 32> kHighBytes{{
    {0x80, 0x20AC}, {0x81, 0x0081}, {0x82, 0x201A}, {0x83, 0x0192}, {0x84, 0x201E}, {0x85, 0x2026},
    {0x86, 0x2020}, {0x87, 0x2021}, {0x88, 0x02C6}, {0x89, 0x2030}, {0x8A, 0x0160}, {0x8B, 0x2039},
    {0x8C, 0x0152}, {0x8D, 0x008D}, {0x8E, 0x017D}, {0x8F, 0x008F}, {0x90, 0x0090}, {0x91, 0x2018},
    {0x92, 0x2019}, {0x93, 0x201C}, {0x94, 0x201D}, {0x95, 0x2022}, {0x96, 0x2013}, {0x97, 0x2014},
    {0x98, 0x02DC}, {0x99, 0x2122}, {0x9A, 0x0161}, {0x9B, 0x203A}, {0x9C, 0x0153}, {0x9D, 0x009D},
    {0x9E, 0x017E}, {0x9F, 0x0178},
}};

constexpr char32_t toUnicode(std::uint8_t b) {
    if (b >= 0x80 && b <= 0x9F) return kHighBytes[b - 0x80].unicode;
    return b;
}

// The byte for a Unicode character, or nothing if the code page hasn't it.
constexpr std::optional<std::uint8_t> fromUnicode(char32_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<std::uint8_t>(c);
    for (const HighByte& h : kHighBytes)
        if (h.unicode == c) return h.byte;
    return std::nullopt;
}

// What a character outside the code page becomes on its way into the logic.
inline constexpr std::uint8_t kReplacement = '?';

// UTF-8 at the edges that speak it (files of tests, terminals).
std::string toUtf8(const std::string& bytes);
std::string fromUtf8(const std::string& utf8);
// Adds one character of the Basic Multilingual Plane as UTF-8.
void appendUtf8(std::string& out, char32_t c);

}  // namespace zelvan::codepage
