// The decoder's character tables, checked entry by entry through the decoder
// against the characters EIA-608 assigns to each code, so that a shifted or
// mistyped entry fails here.

#include <gtest/gtest.h>

#include <string>

#include "line21/inl21.h"
#include "platform/codepage.h"
#include "support/l21fakes.h"

namespace zelvan {
namespace {

using testing::feedL21;

std::string pair(int f, int s) {
    return {static_cast<char>(f), static_cast<char>(s)};
}

// The character that the pair f, s stores at row 1, column 1, as Unicode.
char32_t storedBy(int f, int s) {
    InL21 m;
    feedL21(m, pair(0x14, 0x20) + pair(0x11, 0x40) + pair(f, s));
    return codepage::toUnicode(static_cast<std::uint8_t>(m.rowString(2, 1)[0]));
}

TEST(DecoderTables, SpecialCharacters) {
    const std::u32string expected =
        U"\u00AE\u00B0\u00BD\u00A8\u2122\u00A2\u00A3\u2022\u00E0 \u00E8\u00E2\u00EA\u00EE\u00F4"
        U"\u00FB";
    ASSERT_EQ(expected.size(), 16u);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(line21::specialChars[i].code, 0x30 + i);
        EXPECT_EQ(storedBy(0x11, 0x30 + i), expected[i]) << "0x11 0x" << std::hex << 0x30 + i;
    }
}

TEST(DecoderTables, ExtendedCharactersOfFirstByte0x12) {
    const std::u32string expected =
        U"\u00C1\u00C9\u00D3\u00DA\u00DC\u00FC\u2018\u00A1*'\u2014\u00A9?\u2022\u201C\u201D"
        U"\u00C0\u00C2\u00C7\u00C8\u00CA\u00CB\u00EB\u00CE\u00CF\u00EF\u00D4\u00D9\u00F9\u00DB"
        U"\u00AB\u00BB";
    ASSERT_EQ(expected.size(), 32u);
    for (int i = 0; i < 32; ++i) {
        EXPECT_EQ(line21::extendedChars1[i].code, 0x20 + i);
        EXPECT_EQ(storedBy(0x12, 0x20 + i), expected[i]) << "0x12 0x" << std::hex << 0x20 + i;
    }
}

TEST(DecoderTables, ExtendedCharactersOfFirstByte0x13) {
    const std::u32string expected =
        U"\u00C3\u00E3\u00CD\u00CC\u00EC\u00D2\u00F2\u00D5\u00F5{}\\^_\u00A6~\u00C4\u00E4\u00D6"
        U"\u00F6\u00DF\u00A5\u00A4|\u00C5\u00E5\u00D8\u00F8????";
    ASSERT_EQ(expected.size(), 32u);
    for (int i = 0; i < 32; ++i) {
        EXPECT_EQ(line21::extendedChars2[i].code, 0x20 + i);
        EXPECT_EQ(storedBy(0x13, 0x20 + i), expected[i]) << "0x13 0x" << std::hex << 0x20 + i;
    }
}

TEST(DecoderTables, TextSubstitutionsAndPlainText) {
    const std::u32string from = U"*\\^_`{|}~";
    const std::u32string to = U"\u00E1\u00E9\u00ED\u00F3\u00FA\u00E7\u00F7\u00D1\u00F1";
    InL21 m;
    feedL21(m, pair(0x14, 0x20) + pair(0x11, 0x40));
    for (int c = 0x20; c <= 0x7E; ++c) {
        m.iCol = 1;
        feedL21(m, std::string(1, static_cast<char>(c)));
        const char32_t stored =
            codepage::toUnicode(static_cast<std::uint8_t>(m.rowString(2, 1)[0]));
        const std::size_t sub = from.find(static_cast<char32_t>(c));
        EXPECT_EQ(stored, sub == std::u32string::npos ? static_cast<char32_t>(c) : to[sub])
            << "text byte 0x" << std::hex << c;
    }
}

TEST(DecoderTables, MusicNoteIsTheBulletOfTheCodePage) {
    InL21 m;
    EXPECT_EQ(codepage::toUnicode(static_cast<std::uint8_t>(m.musicNote[0])), U'\u2022');
}

// The command codes that EIA-608 defines but the decoder leaves alone (alarms,
// flash, text mode) change nothing but the gate.
TEST(DecoderTables, UnusedCommandCodesDoNothing) {
    for (int s : {0x22, 0x23, 0x24, 0x28, 0x2A, 0x2B}) {
        InL21 m;
        feedL21(m, pair(0x14, 0x20) + pair(0x11, 0x40) + "ab");
        const std::string before = m.dump();
        std::string out = "x";
        feedL21(m, std::string(1, '\x14'));
        EXPECT_EQ(m.FilterL21(std::string(1, static_cast<char>(s)), out), 0);
        EXPECT_EQ(out, "");
        std::string after = m.dump();
        // Only the memory of the last pair differs.
        const auto prev = after.find(" prev=");
        EXPECT_EQ(after.substr(0, prev), before.substr(0, before.find(" prev=")));
        EXPECT_EQ(after.substr(after.find('\n')), before.substr(before.find('\n')));
    }
}

}  // namespace
}  // namespace zelvan
