// The readable notation: "û" and two hexadecimal digits for one byte.

#include "core/readable.h"

#include <gtest/gtest.h>

namespace zelvan {
namespace {

std::string bytes(std::initializer_list<int> codes) {
    std::string s;
    for (int c : codes) s += static_cast<char>(c);
    return s;
}

TEST(ReadableTest, EscapeReadsUpToTwoHexDigitsOfEitherCase) {
    EXPECT_EQ(fromReadable("\xFB" "7F"), bytes({0x7F}));
    EXPECT_EQ(fromReadable("\xFB" "7f"), bytes({0x7F}));
    EXPECT_EQ(fromReadable("\xFB" "7FE"), bytes({0x7F, 'E'}));
    EXPECT_EQ(fromReadable("x\xFB" "01y"), bytes({'x', 0x01, 'y'}));
}

TEST(ReadableTest, ShortOrBrokenEscapeStillSwallowsTwoCharacters) {
    // A lone escape gives a byte 0; a single digit stops at the first non-digit
    // and the comma behind it goes with the escape.
    EXPECT_EQ(fromReadable("\xFB"), bytes({0x00}));
    EXPECT_EQ(fromReadable("\xFB" "A,"), bytes({0x0A}));
    EXPECT_EQ(fromReadable("\xFB" "A"), bytes({0x0A}));
    EXPECT_EQ(fromReadable("\xFB" "G1Z"), bytes({0x00, 'Z'}));
    // An escape right behind an escape is read as a non-digit.
    EXPECT_EQ(fromReadable("\xFB\xFB" "41"), bytes({0x00, '1'}));
}

TEST(ReadableTest, PrintableAsciiStandsAsItIsAndAllElseIsEscaped) {
    EXPECT_EQ(toReadable(" AZaz~"), " AZaz~");
    EXPECT_EQ(toReadable(bytes({0x0D})), "\xFB" "0D");
    EXPECT_EQ(toReadable(bytes({0x00, 0x1F})), "\xFB" "00" "\xFB" "1F");
    EXPECT_EQ(toReadable(bytes({0x7F})), "\xFB" "7F");
    EXPECT_EQ(toReadable("\xFB"), "\xFB" "FB");
    EXPECT_EQ(toReadable("\x95\xFF"), "\xFB" "95" "\xFB" "FF");
    EXPECT_EQ(toReadable(fromReadable("\xFB" "01" "\xFB" "20" "\xFB" "7F/" "\xFB" "01")),
              "\xFB" "01 " "\xFB" "7F/" "\xFB" "01");
}

TEST(ReadableTest, EveryByteSurvivesTheRoundTrip) {
    std::string all;
    for (int c = 0; c < 256; ++c) {
        const std::string one(1, static_cast<char>(c));
        EXPECT_EQ(fromReadable(toReadable(one)), one) << "byte " << c;
        all += one;
    }
    EXPECT_EQ(fromReadable(toReadable(all)), all);
}

}  // namespace
}  // namespace zelvan
