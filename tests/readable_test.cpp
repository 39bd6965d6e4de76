// The readable notation: "û" and two hexadecimal digits for one byte.

#include "core/readable.h"

#include <gtest/gtest.h>

#include "support/displayfakes.h"

namespace zelvan {
namespace {

using testing::bytes;
using testing::esc;

TEST(ReadableTest, EscapeReadsHexDigitsUpToTheFirstNonDigitAndSwallowsTwo) {
    EXPECT_EQ(fromReadable(esc("x^7Fy^7f")), bytes({'x', 0x7F, 'y', 0x7F}));
    EXPECT_EQ(fromReadable(esc("^7FE")), bytes({0x7F, 'E'}));
    EXPECT_EQ(fromReadable(esc("^")), bytes({0x00}));
    EXPECT_EQ(fromReadable(esc("^A,B")), bytes({0x0A, 'B'}));
    EXPECT_EQ(fromReadable(esc("^G1Z")), bytes({0x00, 'Z'}));
    EXPECT_EQ(fromReadable(esc("^^41")), bytes({0x00, '1'}));
}

TEST(ReadableTest, OnlyPrintableAsciiStandsAsItIs) {
    EXPECT_EQ(toReadable(" AZaz~"), " AZaz~");
    EXPECT_EQ(toReadable(bytes({0x00, 0x0D, 0x1F, 0x7F})), esc("^00^0D^1F^7F"));
    EXPECT_EQ(toReadable("\xFB\x95\xFF"), esc("^FB^95^FF"));
    EXPECT_EQ(toReadable(fromReadable(esc("^01^20^7F/^01"))), esc("^01 ^7F/^01"));
}

TEST(ReadableTest, EveryByteSurvivesTheRoundTrip) {
    std::string all;
    for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
    EXPECT_EQ(fromReadable(toReadable(all)), all);
}

}  // namespace
}  // namespace zelvan
