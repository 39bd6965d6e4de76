// The 8-bit code page: every byte survives the trip through Unicode.

#include <gtest/gtest.h>

#include "platform/codepage.h"

namespace zelvan::codepage {
namespace {

TEST(Codepage, EveryByteRoundTripsThroughUnicodeAndUtf8) {
    std::string all;
    for (int b = 0; b < 256; ++b) {
        EXPECT_EQ(fromUnicode(toUnicode(static_cast<std::uint8_t>(b))), b) << b;
        all += static_cast<char>(b);
    }
    EXPECT_EQ(fromUtf8(toUtf8(all)), all);
}

// The euro sign, and the bytes the program gives a meaning of its own.
TEST(Codepage, HighBytesMapToTheirCharacters) {
    EXPECT_EQ(toUnicode(0x80), U'\u20AC');
    EXPECT_EQ(toUnicode(0x95), U'\u2022');  // the music note stand-in, a bullet
    EXPECT_EQ(toUnicode(0xFB), U'\u00FB');  // the escape of the readable notation
}

TEST(Codepage, CharactersOutsideTheCodePageBecomeAQuestionMark) {
    EXPECT_EQ(fromUnicode(U'\u4E2D'), std::nullopt);
    EXPECT_EQ(fromUtf8("a\xE4\xB8\xAD"
                       "b"),
              "a?b");
}

}  // namespace
}  // namespace zelvan::codepage
