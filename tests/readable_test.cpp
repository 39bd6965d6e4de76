// The readable notation: "û" and two hexadecimal digits for one byte.

#include "core/readable.h"

#include <gtest/gtest.h>

#include "support/displaybytes.h"

namespace zelvan {
namespace {

using testing::bytes;
using testing::esc;

TEST(ReadableTest, EscapeReadsUpToTwoHexDigitsOfEitherCase) {
    EXPECT_EQ(fromReadable(esc("^7F")), bytes({0x7F}));
    EXPECT_EQ(fromReadable(esc("^7f")), bytes({0x7F}));
    EXPECT_EQ(fromReadable(esc("^7FE")), bytes({0x7F, 'E'}));
    EXPECT_EQ(fromReadable(esc("x^01y")), bytes({'x', 0x01, 'y'}));
}

TEST(ReadableTest, ShortOrBrokenEscapeStillSwallowsTwoCharacters) {
    // A lone escape gives a byte 0; a single digit stops at the first non-digit
    // and the comma behind it goes with the escape.
    EXPECT_EQ(fromReadable(esc("^")), bytes({0x00}));
    EXPECT_EQ(fromReadable(esc("^A,")), bytes({0x0A}));
    EXPECT_EQ(fromReadable(esc("^A")), bytes({0x0A}));
    EXPECT_EQ(fromReadable(esc("^G1Z")), bytes({0x00, 'Z'}));
    // An escape right behind an escape is read as a non-digit.
    EXPECT_EQ(fromReadable(esc("^^41")), bytes({0x00, '1'}));
}

TEST(ReadableTest, PrintableAsciiStandsAsItIsAndAllElseIsEscaped) {
    EXPECT_EQ(toReadable(" AZaz~"), " AZaz~");
    EXPECT_EQ(toReadable(bytes({0x0D})), esc("^0D"));
    EXPECT_EQ(toReadable(bytes({0x00, 0x1F})), esc("^00^1F"));
    EXPECT_EQ(toReadable(bytes({0x7F})), esc("^7F"));
    EXPECT_EQ(toReadable(esc("^")), esc("^FB"));
    EXPECT_EQ(toReadable("\x95\xFF"), esc("^95^FF"));
    EXPECT_EQ(toReadable(fromReadable(esc("^01^20^7F/^01"))), esc("^01 ^7F/^01"));
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
