// The ASCII serial filter, the wrap width box, the keyboard window's rules.

#include <gtest/gtest.h>

#include "support/fakes.h"
#include "textinput/keyinput.h"
#include "textinput/textrows.h"

namespace zelvan {
namespace {

// Feeds bytes one by one; each finished line as the display reads it: "line|".
class AsciiFilterTest : public ::testing::Test {
  protected:
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

TEST_F(AsciiFilterTest, LineEndsAndLongLinesLoseNothing) {
    EXPECT_EQ(feed("\r\n"), "|");  // a first line end sends the blank row
    EXPECT_EQ(feed("one\ntwo\n\rthree\r\r\nfour\n\n\n\r"), "one|two|three|four|");
    EXPECT_EQ(feed("x\r\n\r\ny\r"), "x|y|");  // a blank line sends nothing
    // The line stays readable until the next byte of any kind.
    std::string out;
    feed("Hi\r");
    EXPECT_EQ(filter.FilterAscii("\n", out), 0);
    EXPECT_EQ(rows.rowsAsText(), TextRows().rowsAsText());
    // A dropped byte blanks the rows as well, and stores nothing.
    feed("Yo\r");
    EXPECT_EQ(filter.FilterAscii("\t", out) + filter.FilterAscii("\xC9", out), 0);
    EXPECT_EQ(feed("  ok~ \r"), "  ok~|");
    EXPECT_EQ(rows.getExternalTextTrimmed(1), "ok~");
    // A long line wraps at its last word break and loses nothing.
    const std::string fits = "abcdefghij abcdefghij abcdefghi";  // 31, the row's limit
    EXPECT_EQ(feed(fits + "\r"), fits + "|");
    // A row of word characters only is cut hard at 31.
    EXPECT_EQ(feed(std::string(40, 'w') + "\n"),
              std::string(31, 'w') + "|" + std::string(9, 'w') + "|");
    // Whatever the width box says, a line that fits the row goes out whole;
    // past column 31 a hyphen stays with the part that goes out.
    for (std::int16_t width : {20, 0}) {
        filter.setWrapWidth(width);
        EXPECT_EQ(feed(std::string(25, 'a') + " well-known\r"),
                  std::string(25, 'a') + " well-|known|");
    }
    // Unwrapped, a full row refills from the left and its tail stays.
    filter.bWrapLongLines = false;
    EXPECT_EQ(feed(std::string(31, 'a') + "XYZ\r"), "YZ" + std::string(29, 'a') + "|");
    // The width box's text: the number at its start, halves rounded to even,
    // beyond 16 bits the largest width; no number is 0.
    const std::pair<const char*, int> widths[] = {
        {" 12abc", 12},   {"2e1", 20}, {"10.5", 10}, {"11.5", 12}, {"+.7", 1},
        {"1e300", 32767}, {"wide", 0}, {"inf", 0},   {"nan", 0},   {"-5", 0},
        {"0x20", 0},      {" ", 0},    {".", 0},     {"-.e5", 0},  {"0.4", 0}};
    for (auto [text, width] : widths) EXPECT_EQ(parseWrapWidth(text), width) << text;
}

// Rows count from 1 to 15 and columns from 1 to 32; nothing outside is read
// or written.
TEST(TextRowsTest, OnlyTheRowsAndColumnsOfTheSignHoldText) {
    TextRows rows;
    rows.setRow(0, "zero");
    rows.setRow(16, "sixteen");
    EXPECT_EQ(rows.row(0) + rows.row(16), "");
    for (auto [row, col] : {std::pair{0, 1}, {16, 1}, {1, 0}, {1, 33}, {15, 32}}) {
        rows.iCurRow = static_cast<std::int16_t>(row);
        rows.iCurCol = static_cast<std::int16_t>(col);
        rows.put('x');
    }
    TextRows expected;
    expected.setRow(15, std::string(31, ' ') + "x");
    EXPECT_EQ(rows.rowsAsText(), expected.rowsAsText());
    // Words break at anything but digits, letters and the accented letters.
    for (unsigned char c : std::string("09AZaz\xC0\xFF")) EXPECT_TRUE(isWordChar(c)) << c;
    for (unsigned char c : std::string("/:@[`{\xBF-")) EXPECT_FALSE(isWordChar(c)) << c;
}

struct FakeKeyView : KeyView {
    void placeWindow() override {}
    void showWindow() override {}
    void hideWindow() override {}
    std::string inputText() const override { return line; }
    void setInputText(const std::string& text) override { line = text; }
    void setWrapWidthText(const std::string& text) override { widthText = text; }
    void showNotify(bool visible, const std::string& text) override {
        notice = visible ? "shown:" + text : "";
    }
    std::string line, widthText, notice;
};

struct KeyInputTest : ::testing::Test, testing::Rig {
    FakeKeyView view;
    KeyInput input{tavo, view};
    testing::CaptionRecorder display{tavo};

    KeyInputTest() {
        tavo.frmInKey = &input;
        tavo.bInKey = true;
    }
    // Keys the filter doesn't take go to the line as a box does, then a drain.
    void type(const std::string& keys) {
        for (unsigned char c : keys) {
            if (input.tbInput_KeyPress(c)) continue;
            if (c == '\b' && !view.line.empty()) view.line.pop_back();
            if (c >= 32) view.line += static_cast<char>(c);
        }
        tavo.drainQueue();
    }
};

// A width that is no number, or below 0, wraps every key.
TEST_F(KeyInputTest, APrintableKeyAtTheWrapWidthSendsUpToTheLastWordBreak) {
    struct Case {
        const char* width;
        std::string before;
        char k;
        std::string sent, stays;
    };
    const Case cases[] = {
        {"32", std::string(30, 'a') + " b", 'c', std::string(30, 'a'), "bc"},
        {"10", "abcdefg-hi", 'j', "abcdefg-", "hij"},
        {"10.5", "abcdefghi ", '\xFF', "abcdefghi", "\xFF"},
        {"10", "ab\300defghij", 'k', "ab\300defghij", "k"},
        {"10", "ab\200defghij", 'k', "ab\200", "defghijk"},
        {"none", "", 'b', "", "b"},
        {"-5", "a", 'b', "", "ab"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.before);
        display.captions.clear();
        input.tbWrapWidth_Change(c.width);
        view.line = c.before;
        type(std::string(1, c.k));
        EXPECT_EQ(display.captions,
                  std::vector<std::string>{c.sent.empty() ? "3:" : "3: 1[" + c.sent + "]"});
        EXPECT_EQ(view.line, c.stays);
    }
}

// The window greets with a notice for five seconds and captures. Keys typed
// before a sent line's CR is drained start the next line in order.
TEST_F(KeyInputTest, ShowFormGreetsAndLinesGoOutInTheOrderTyped) {
    dispatch.postAt(4999, [&] { EXPECT_EQ(view.notice, std::string("shown:") + kBetterTypeFast); });
    dispatch.postAt(5001, [&] { EXPECT_EQ(view.notice, ""); });
    dispatch.postAt(7000, [&] { tavo.stopCapture(); });
    console();
    input.showForm();
    EXPECT_EQ(view.widthText, "32");
    EXPECT_EQ(tone.tones.size(), 6u);  // three double beeps
    type("Hello world\r\r");           // an empty line still sends
    EXPECT_EQ(display.captions, (std::vector<std::string>{"3: 1[Hello world]", "3:"}));
    input.tbWrapWidth_Change("10");
    display.captions.clear();
    type("abcdefghi xyz-pqrstuv");  // as if typed slowly
    EXPECT_EQ(display.captions, (std::vector<std::string>{"3: 1[abcdefghi]", "3: 1[xyz-]"}));
    EXPECT_EQ(view.line, "pqrstuv");
    view.line.clear();
    type("ab\b\r");
    EXPECT_EQ(display.captions.back(), "3: 1[a]") << "the box takes the backspace";
    type("One\rTwo!\b\rThree");
    EXPECT_EQ(display.captions.back(), "3: 1[Two]");
    EXPECT_EQ(view.line, "Three");
    // Only the first 32 characters of a pasted line go out; backspace isn't wrapped.
    view.line = "Pasted text that runs beyond the 32 columns";
    type("\b\r");
    EXPECT_EQ(input.getExternalText(1), "Pasted text that runs beyond the");
    // Bytes another input left on the ring fill the row until the next CR.
    queue(std::string(30, 'x') + " YZ");  // the byte at column 32 goes to the carry
    tavo.drainQueue();
    EXPECT_EQ(input.getExternalText(1), "Z" + std::string(29, 'x'));
    queue(std::string(30, 'w') + "Q\rc");  // Q at column 32 again
    tavo.drainQueue();
    EXPECT_EQ(input.getExternalText(1), "c");
    EXPECT_EQ(view.line, "Q") << "the carry goes on the input line at the CR";
    std::string out = "stale";
    input.FilterAscii("a", out);
    EXPECT_EQ(out, "") << "no line ended";
}

}  // namespace
}  // namespace zelvan
