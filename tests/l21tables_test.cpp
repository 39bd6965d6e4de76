// The decoder's character tables, checked entry by entry through the decoder
// against the characters EIA-608 gives each code (as Unicode, so a shifted or
// mistyped entry fails here), and the command codes that do nothing.

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

TEST(DecoderTables, EverySpecialAndExtendedCharacterLandsAsItsCodeSays) {
    struct Table {
        int first, firstSecond;
        std::u32string chars;
    };
    const Table tables[] = {
        {0x11, 0x30,
         U"\u00AE\u00B0\u00BD\u00A8\u2122\u00A2\u00A3\u2022\u00E0 \u00E8\u00E2\u00EA\u00EE\u00F4"
         U"\u00FB"},
        {0x12, 0x20,
         U"\u00C1\u00C9\u00D3\u00DA\u00DC\u00FC\u2018\u00A1*'\u2014\u00A9?\u2022\u201C\u201D"
         U"\u00C0\u00C2\u00C7\u00C8\u00CA\u00CB\u00EB\u00CE\u00CF\u00EF\u00D4\u00D9\u00F9\u00DB"
         U"\u00AB\u00BB"},
        {0x13, 0x20,
         U"\u00C3\u00E3\u00CD\u00CC\u00EC\u00D2\u00F2\u00D5\u00F5{}\\^_\u00A6~\u00C4\u00E4\u00D6"
         U"\u00F6\u00DF\u00A5\u00A4|\u00C5\u00E5\u00D8\u00F8????"},
    };
    for (const Table& t : tables) {
        ASSERT_EQ(t.chars.size(), t.first == 0x11 ? 16u : 32u);
        for (std::size_t i = 0; i < t.chars.size(); ++i) {
            const int second = t.firstSecond + static_cast<int>(i);
            InL21 m;
            feedL21(m, pair(0x14, 0x20) + pair(0x11, 0x40) + pair(t.first, second));
            const auto stored = static_cast<std::uint8_t>(m.rowString(2, 1)[0]);
            EXPECT_EQ(codepage::toUnicode(stored), t.chars[i])
                << std::hex << "pair 0x" << t.first << " 0x" << second;
        }
    }
}

TEST(DecoderTables, TextBytesAreStoredAsTheyAreButForNineSubstitutions) {
    const std::u32string from = U"*\\^_`{|}~";
    const std::u32string to = U"\u00E1\u00E9\u00ED\u00F3\u00FA\u00E7\u00F7\u00D1\u00F1";
    InL21 m;
    feedL21(m, pair(0x14, 0x20) + pair(0x11, 0x40));
    for (int c = 0x20; c <= 0x7E; ++c) {
        m.iCol = 1;
        feedL21(m, std::string(1, static_cast<char>(c)));
        const auto stored = static_cast<std::uint8_t>(m.rowString(2, 1)[0]);
        const std::size_t sub = from.find(static_cast<char32_t>(c));
        EXPECT_EQ(codepage::toUnicode(stored),
                  sub == from.npos ? static_cast<char32_t>(c) : to[sub])
            << std::hex << "text byte 0x" << c;
    }
}

// Alarms, flash and text mode are not decoded: such a command only opens the gate.
TEST(DecoderTables, UnusedCommandCodesChangeNothing) {
    for (int s : {0x22, 0x23, 0x24, 0x28, 0x2A, 0x2B}) {
        InL21 m;
        feedL21(m, pair(0x14, 0x20) + pair(0x11, 0x40) + "ab");
        const std::string before = m.dump();
        std::string out = "x";
        feedL21(m, "\x14");
        EXPECT_EQ(m.FilterL21(std::string(1, static_cast<char>(s)), out), 0);
        EXPECT_EQ(out, "");
        const std::string after = m.dump();
        EXPECT_EQ(after.substr(0, after.find(" prev=")), before.substr(0, before.find(" prev=")));
        EXPECT_EQ(after.substr(after.find('\n')), before.substr(before.find('\n')));
    }
}

}  // namespace
}  // namespace zelvan
