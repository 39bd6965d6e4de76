// Bytes as text: the 8-bit code page, and the readable notation ("û" and two
// hexadecimal digits for one byte).

#include "platform/codepage.h"

#include <gtest/gtest.h>

#include "core/readable.h"
#include "support/displayfakes.h"

namespace zelvan {
namespace {

using namespace codepage;
using testing::bytes;
using testing::esc;

// Every byte survives the trip through Unicode; the euro, the music note's
// bullet and the escape set the page apart from Latin-1.
TEST(Codepage, EveryByteRoundTripsThroughUnicodeAndTheReadableNotation) {
    std::string all;
    for (int b = 0; b < 256; ++b) {
        EXPECT_EQ(fromUnicode(toUnicode(static_cast<std::uint8_t>(b))), b) << b;
        all += static_cast<char>(b);
    }
    EXPECT_EQ(fromUtf8(toUtf8(all)), all);
    EXPECT_EQ(toUtf8("\x80\x95\xFB"), "\u20AC\u2022\u00FB");
    EXPECT_EQ(fromUnicode(U'\u4E2D'), std::nullopt);
    EXPECT_EQ(fromUtf8("a\u4E2Db"), "a?b");
    EXPECT_EQ(fromReadable(toReadable(all)), all);
    // In the readable notation only printable ASCII stands as it is.
    EXPECT_EQ(toReadable(" AZaz~"), " AZaz~");
    EXPECT_EQ(toReadable(bytes({0x00, 0x0D, 0x1F, 0x7F, 0xFB, 0x95, 0xFF})),
              esc("^00^0D^1F^7F^FB^95^FF"));
    // Hex digits up to the first non-digit (none reads 0); two characters go either way.
    EXPECT_EQ(fromReadable(esc("x^7Fy^7f")), bytes({'x', 0x7F, 'y', 0x7F}));
    EXPECT_EQ(fromReadable(esc("^7FE")), bytes({0x7F, 'E'}));
    EXPECT_EQ(fromReadable(esc("^")), bytes({0x00}));
    EXPECT_EQ(fromReadable(esc("^A,B")), bytes({0x0A, 'B'}));
    EXPECT_EQ(fromReadable(esc("^G1Z")), bytes({0x00, 'Z'}));
}

}  // namespace
}  // namespace zelvan
