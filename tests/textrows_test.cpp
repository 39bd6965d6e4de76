// The row memory and byte filter shared by the text inputs: line ends, long
// lines and what the row readers serve in between.

#include <gtest/gtest.h>

#include "textinput/textrows.h"

namespace zelvan {
namespace {

// Feeds bytes one by one and records what each finished line read as when the
// display looked at it (straight after the call, as the capture loop does).
class AsciiFilterTest : public ::testing::Test {
  protected:
    std::string feed(const std::string& bytes) {
        std::string sent;
        for (char c : bytes) {
            std::string out;
            if (filter.FilterAscii(std::string(1, c), out) == 3) {
                EXPECT_EQ(out.size(), 32u);
                EXPECT_EQ(out, rows.row(1));
                sent += rows.getExternalText(1) + "|";
            }
        }
        return sent;
    }
    TextRows rows;
    AsciiFilter filter{rows};
};

TEST_F(AsciiFilterTest, ARunOfLineEndBytesEndsTheLineOnce) {
    EXPECT_EQ(feed("ABC\r\n"), "ABC|");
    EXPECT_EQ(feed("one\ntwo\n\rthree\r\r\nfour\n\n\n\r"), "one|two|three|four|");
    // A blank line in the text sends nothing.
    EXPECT_EQ(feed("x\r\n\r\ny\r"), "x|y|");
}

TEST_F(AsciiFilterTest, TheLineStaysReadableUntilTheNextByteOfAnyKind) {
    std::string out;
    feed("Hi\r");
    EXPECT_EQ(rows.getExternalText(1), "Hi");
    EXPECT_EQ(filter.FilterAscii("\n", out), 0);
    EXPECT_EQ(out, "");
    EXPECT_EQ(rows.getExternalText(1), "");
    EXPECT_EQ(rows.rowsAsText(), TextRows().rowsAsText());
    // A dropped control byte blanks the rows as well, and stores nothing.
    feed("Yo\r");
    EXPECT_EQ(filter.FilterAscii("\t", out), 0);
    EXPECT_EQ(filter.FilterAscii("\xC9", out), 0);
    EXPECT_EQ(rows.getExternalText(1), "");
    EXPECT_EQ(feed("ok\r"), "ok|");
}

TEST_F(AsciiFilterTest, AFirstLineEndSendsABlankRow) {
    EXPECT_EQ(feed("\r"), "|");
    EXPECT_EQ(feed("\n\r"), "");
}

TEST_F(AsciiFilterTest, ThirtyOneBytesFitTheRow) {
    const std::string line = "abcdefghij abcdefghij abcdefghi";
    ASSERT_EQ(line.size(), 31u);
    EXPECT_EQ(feed(line + "\r"), line + "|");
}

TEST_F(AsciiFilterTest, ALongLineWrapsAtItsLastWordBreakAndLosesNothing) {
    // The row is cut at the blank before "the"; the rest starts the next row.
    EXPECT_EQ(feed("The quick brown fox jumps over the lazy dog\r"),
              "The quick brown fox jumps over|the lazy dog|");
    // A row of word characters only is cut hard at the row's 31.
    const std::string word(40, 'w');
    EXPECT_EQ(feed(word + "\n"), std::string(31, 'w') + "|" + std::string(9, 'w') + "|");
    // A narrower width governs; a hyphen stays with the part that goes out.
    filter.setWrapWidth(10);
    EXPECT_EQ(feed("well-known fact\r"), "well-|known fact|");
}

TEST_F(AsciiFilterTest, WithoutWrappingAFullRowRefillsFromTheLeft) {
    filter.bWrapLongLines = false;
    EXPECT_EQ(feed(std::string(31, 'a') + "XYZ\r"), "YZ" + std::string(29, 'a') + "|");
    EXPECT_EQ(filter.sCarry, "X");
}

TEST(WrapPoint, FallsOnTheLastCharacterThatIsNoWordCharacter) {
    EXPECT_EQ(findWrapPoint("ab cd-ef", 32), 6);
    EXPECT_EQ(findWrapPoint("abc\xC8", 10), 10);  // code 200 is a letter
    EXPECT_EQ(findWrapPoint("abc\x80x", 10), 4);  // code 128 is not
    EXPECT_EQ(findWrapPoint("", 7), 7);
}

TEST(WrapWidthText, TakesTheNumberAtTheStartRoundedToEven) {
    EXPECT_EQ(parseWrapWidth("32"), 32);
    EXPECT_EQ(parseWrapWidth(" 12abc"), 12);
    EXPECT_EQ(parseWrapWidth("10.5"), 10);
    EXPECT_EQ(parseWrapWidth("11.5"), 12);
    EXPECT_EQ(parseWrapWidth("2e1"), 20);
    EXPECT_EQ(parseWrapWidth(""), 0);
    EXPECT_EQ(parseWrapWidth("wide"), 0);
    EXPECT_EQ(parseWrapWidth("0x20"), 0);
    EXPECT_EQ(parseWrapWidth("inf"), 0);
    // Out of range: below 0 counts as 0, beyond 16 bits as the largest width.
    EXPECT_EQ(parseWrapWidth("-5"), 0);
    EXPECT_EQ(parseWrapWidth("99999"), 32767);
    EXPECT_EQ(parseWrapWidth("1e300"), 32767);
}

}  // namespace
}  // namespace zelvan
