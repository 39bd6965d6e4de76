#pragma once
// The constant tables of the line-21 decoder, each entry beside the wire code
// that selects it, so that a test can check them entry by entry. All
// characters are bytes of the Windows-1252 code page.

#include <array>
#include <cstdint>

namespace zelvan::line21 {

inline constexpr int kRows = 15;
inline constexpr int kCols = 32;

// The character that stands for the EIA-608 music note: code 149 (a bullet).
inline constexpr std::uint8_t kMusicNote = 0x95;

struct CodeChar {
    std::uint8_t code;  // the second byte of the pair (or the text byte)
    std::uint8_t ch;    // what is stored in the row
};

// Pair 0x11, 0x30-0x3F. Entry 0x33 is a diaeresis (not EIA-608's inverted
// question mark) and 0x39, the transparent space, is a plain blank.
inline constexpr std::array<CodeChar, 16> specialChars{{
    {0x30, 0xAE},        // registered sign
    {0x31, 0xB0},        // degree
    {0x32, 0xBD},        // one half
    {0x33, 0xA8},        // diaeresis
    {0x34, 0x99},        // trade mark
    {0x35, 0xA2},        // cent
    {0x36, 0xA3},        // pound
    {0x37, kMusicNote},  // music note
    {0x38, 0xE0},        // a grave
    {0x39, 0x20},        // transparent space
    {0x3A, 0xE8},        // e grave
    {0x3B, 0xE2},        // a circumflex
    {0x3C, 0xEA},        // e circumflex
    {0x3D, 0xEE},        // i circumflex
    {0x3E, 0xF4},        // o circumflex
    {0x3F, 0xFB},        // u circumflex
}};

// Pair 0x12, 0x20-0x3F. Characters the code page hasn't got are "?".
inline constexpr std::array<CodeChar, 32> extendedChars1{{
    {0x20, 0xC1}, {0x21, 0xC9}, {0x22, 0xD3}, {0x23, 0xDA},  // A E O U acute
    {0x24, 0xDC}, {0x25, 0xFC}, {0x26, 0x91}, {0x27, 0xA1},  // U u diaeresis, left quote, inv. !
    {0x28, '*'},  {0x29, '\''}, {0x2A, 0x97}, {0x2B, 0xA9},  // *, ', em dash, copyright
    {0x2C, '?'},  {0x2D, 0x95}, {0x2E, 0x93}, {0x2F, 0x94},  // service mark, bullet, quotes
    {0x30, 0xC0}, {0x31, 0xC2}, {0x32, 0xC7}, {0x33, 0xC8},  // A grave, A circ., C cedilla, E grave
    {0x34, 0xCA}, {0x35, 0xCB}, {0x36, 0xEB}, {0x37, 0xCE},  // E circ., E e diaeresis, I circ.
    {0x38, 0xCF}, {0x39, 0xEF}, {0x3A, 0xD4}, {0x3B, 0xD9},  // I i diaeresis, O circ., U grave
    {0x3C, 0xF9}, {0x3D, 0xDB}, {0x3E, 0xAB}, {0x3F, 0xBB},  // u grave, U circ., guillemets
}};

// Pair 0x13, 0x20-0x3F. The four box corners at the end are "?".
inline constexpr std::array<CodeChar, 32> extendedChars2{{
    {0x20, 0xC3}, {0x21, 0xE3}, {0x22, 0xCD}, {0x23, 0xCC},  // A a tilde, I acute, I grave
    {0x24, 0xEC}, {0x25, 0xD2}, {0x26, 0xF2}, {0x27, 0xD5},  // i grave, O o grave, O tilde
    {0x28, 0xF5}, {0x29, '{'},  {0x2A, '}'},  {0x2B, '\\'},  // o tilde, braces, backslash
    {0x2C, '^'},  {0x2D, '_'},  {0x2E, 0xA6}, {0x2F, '~'},   // caret, underscore, pipe, tilde
    {0x30, 0xC4}, {0x31, 0xE4}, {0x32, 0xD6}, {0x33, 0xF6},  // A a O o diaeresis
    {0x34, 0xDF}, {0x35, 0xA5}, {0x36, 0xA4}, {0x37, '|'},   // sharp s, yen, currency, bar
    {0x38, 0xC5}, {0x39, 0xE5}, {0x3A, 0xD8}, {0x3B, 0xF8},  // A a ring, O o slash
    {0x3C, '?'},  {0x3D, '?'},  {0x3E, '?'},  {0x3F, '?'},   // box corners
}};

// Text bytes that stand for other characters; every other byte is stored as it is.
inline constexpr std::array<CodeChar, 9> textSubstitutions{{
    {'*', 0xE1},   // a acute
    {'\\', 0xE9},  // e acute
    {'^', 0xED},   // i acute
    {'_', 0xF3},   // o acute
    {'`', 0xFA},   // u acute
    {'{', 0xE7},   // c cedilla
    {'|', 0xF7},   // division sign
    {'}', 0xD1},   // N tilde
    {'~', 0xF1},   // n tilde
}};

// The substitutions as a lookup over all 128 seven-bit codes, built once at
// compile time so that a text byte costs one load.
inline constexpr std::array<std::uint8_t, 128> kStoredText = [] {
    std::array<std::uint8_t, 128> t{};
    for (int c = 0; c < 128; ++c) t[c] = static_cast<std::uint8_t>(c);
    for (const CodeChar& s : textSubstitutions) t[s.code] = s.ch;
    return t;
}();

// Row codes: a first byte and the two rows its second byte can name. Second
// bytes 0x40-0x5F name the upper row, 0x60-0x7E the lower one; bit 4 of the
// second byte asks for an indent. Row 0 means the code does nothing.
struct RowCode {
    std::uint8_t first;
    std::int16_t upperRow;
    std::int16_t lowerRow;
};

inline constexpr std::array<RowCode, 10> rowCodes{{
    {0x10, 11, 0},  // 0x10 has no lower row
    {0x11, 1, 2},
    {0x12, 3, 4},
    {0x13, 12, 13},
    {0x14, 14, 15},
    {0x15, 5, 6},
    {0x16, 7, 8},
    {0x17, 9, 10},
    {0x1C, 14, 15},  // second channel
    {0x1D, 5, 6},    // second channel
}};

// The commands of the first bytes 0x14/0x15 (channel index 0) and 0x1C/0x1D
// (channel index 1); second bytes not listed do nothing.
enum class Command : std::uint8_t { RCL, BS, RU2, RU3, RU4, RDC, EDM, CR, ENM, EOC };

struct CommandCode {
    std::uint8_t second;
    Command command;
    const char* name;
};

inline constexpr std::array<CommandCode, 10> commandCodes{{
    {0x20, Command::RCL, "RCL"},
    {0x21, Command::BS, "BS"},
    {0x25, Command::RU2, "RU2"},
    {0x26, Command::RU3, "RU3"},
    {0x27, Command::RU4, "RU4"},
    {0x29, Command::RDC, "RDC"},
    {0x2C, Command::EDM, "EDM"},
    {0x2D, Command::CR, "CR"},
    {0x2E, Command::ENM, "ENM"},
    {0x2F, Command::EOC, "EOC"},
}};

// The channel list of the line-21 windows, index 0 first. The decoder knows
// only the first two.
inline constexpr std::array<const char*, 9> channelNames{
    {"CC1", "CC2", "CC3", "CC4", "T1", "T2", "T3", "T4", "XDS"}};

}  // namespace zelvan::line21
