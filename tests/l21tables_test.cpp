// The decoder's character tables through the decoder, against the characters
// EIA-608 gives the codes (as Unicode): both ends of each table, so a shifted
// table fails; the nine substituted text bytes; and the command codes that do
// nothing.

#include <gtest/gtest.h>

#include <string>

#include "line21/inl21.h"
#include "platform/codepage.h"
#include "support/l21fakes.h"

namespace zelvan {
namespace {

using testing::feedL21;
using testing::l21Pair;

char32_t storedAtRow1(const std::string& bytes) {
    InL21 m;
    feedL21(m, l21Pair(0x14, 0x20) + l21Pair(0x11, 0x40) + bytes);
    return codepage::toUnicode(static_cast<std::uint8_t>(m.rowString(2, 1)[0]));
}

TEST(DecoderTables, SpecialAndExtendedCharactersLandAsTheirCodesSay) {
    const std::tuple<int, int, char32_t> cases[] = {
        {0x11, 0x30, U'\u00AE'}, {0x11, 0x37, U'\u2022'}, {0x11, 0x3F, U'\u00FB'},
        {0x12, 0x20, U'\u00C1'}, {0x12, 0x3F, U'\u00BB'}, {0x13, 0x20, U'\u00C3'},
        {0x13, 0x3B, U'\u00F8'}};
    for (const auto& [first, second, expected] : cases)
        EXPECT_EQ(storedAtRow1(l21Pair(first, second)), expected)
            << std::hex << first << " " << second;
}

TEST(DecoderTables, TextBytesAreStoredAsTheyAreButForNineSubstitutions) {
    const std::u32string from = U"*\\^_`{|}~";
    const std::u32string to = U"\u00E1\u00E9\u00ED\u00F3\u00FA\u00E7\u00F7\u00D1\u00F1";
    for (int c = 0x20; c <= 0x7E; ++c) {
        const std::size_t sub = from.find(static_cast<char32_t>(c));
        EXPECT_EQ(storedAtRow1(std::string(1, static_cast<char>(c))),
                  sub == from.npos ? static_cast<char32_t>(c) : to[sub])
            << std::hex << "text byte 0x" << c;
    }
}

// Alarms, flash and text mode are not decoded: such a command only opens the gate.
TEST(DecoderTables, UnusedCommandCodesChangeNothing) {
    for (int s : {0x22, 0x23, 0x24, 0x28, 0x2A, 0x2B}) {
        InL21 m;
        feedL21(m, l21Pair(0x14, 0x20) + l21Pair(0x11, 0x40) + "ab");
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
