// The row memory and byte filter shared by the text inputs: line ends, long
// lines and what the row readers serve in between.

#include <gtest/gtest.h>

#include "textinput/textrows.h"

namespace zelvan {
namespace {

// Feeds bytes one by one and records each finished line as the display reads
// it, straight after the call, as the capture loop does: "line|".
class AsciiFilterTest : public ::testing::Test {
  protected:
    AsciiFilterTest() { filter.reset(); }  // as the window's creation does
    std::string feed(const std::string& bytes) {
        std::string sent;
        for (char c : bytes) {
            std::string out;
            if (filter.FilterAscii(std::string(1, c), out) != 3) continue;
            EXPECT_EQ(out.size(), 32u);
            EXPECT_EQ(out, rows.row(1));
            sent += rows.getExternalText(1) + "|";
        }
        return sent;
    }
    TextRows rows;
    AsciiFilter filter{rows};
};

TEST_F(AsciiFilterTest, ARunOfLineEndBytesEndsTheLineOnce) {
    EXPECT_EQ(feed("\r\n"), "|");  // a first line end sends the blank row
    EXPECT_EQ(feed("one\ntwo\n\rthree\r\r\nfour\n\n\n\r"), "one|two|three|four|");
    EXPECT_EQ(feed("x\r\n\r\ny\r"), "x|y|");  // a blank line sends nothing
}

TEST_F(AsciiFilterTest, TheLineStaysReadableUntilTheNextByteOfAnyKind) {
    std::string out;
    feed("Hi\r");
    EXPECT_EQ(filter.FilterAscii("\n", out), 0);
    EXPECT_EQ(rows.getExternalText(1), "");
    EXPECT_EQ(rows.rowsAsText(), TextRows().rowsAsText());
    // A dropped byte blanks the rows as well, and stores nothing.
    feed("Yo\r");
    EXPECT_EQ(filter.FilterAscii("\t", out) + filter.FilterAscii("\xC9", out), 0);
    EXPECT_EQ(feed("  ok \r"), "  ok|");
    EXPECT_EQ(rows.getExternalTextTrimmed(1), "ok");
}

TEST_F(AsciiFilterTest, ALongLineWrapsAtItsLastWordBreakAndLosesNothing) {
    const std::string fits = "abcdefghij abcdefghij abcdefghi";  // 31, the row's limit
    EXPECT_EQ(feed(fits + "\r"), fits + "|");
    EXPECT_EQ(feed("The quick brown fox jumps over the lazy dog\r"),
              "The quick brown fox jumps over|the lazy dog|");
    // A row of word characters only is cut hard at 31.
    EXPECT_EQ(feed(std::string(40, 'w') + "\n"),
              std::string(31, 'w') + "|" + std::string(9, 'w') + "|");
    // A narrower width governs; a hyphen stays with the part that goes out.
    filter.setWrapWidth(10);
    EXPECT_EQ(feed("well-known fact\r"), "well-|known fact|");
    // Unwrapped, a full row refills from the left and its tail stays.
    filter.bWrapLongLines = false;
    EXPECT_EQ(feed(std::string(31, 'a') + "XYZ\r"), "YZ" + std::string(29, 'a') + "|");
}

TEST(WrapWidthText, TakesTheNumberAtTheStartRoundedToEven) {
    EXPECT_EQ(parseWrapWidth(" 12abc"), 12);
    EXPECT_EQ(parseWrapWidth("2e1"), 20);
    EXPECT_EQ(parseWrapWidth("10.5") * 100 + parseWrapWidth("11.5"), 1012);
    EXPECT_EQ(parseWrapWidth("wide") + parseWrapWidth("inf") + parseWrapWidth("-5"), 0);
    EXPECT_EQ(parseWrapWidth("1e300"), 32767);  // beyond 16 bits: the largest width
}

}  // namespace
}  // namespace zelvan
