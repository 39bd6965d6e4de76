// The keyboard window's rules with a fake input line on virtual time: what an
// operator's typing sends to the display, the wrap at the wrap width, and the
// notice that greets the operator.

#include <gtest/gtest.h>

#include "support/fakes.h"
#include "textinput/keyinput.h"

namespace zelvan {
namespace {

// The input line as a box has it: keys the filter doesn't consume are typed
// at the end, and backspace takes the last character.
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

struct KeyInputTest : ::testing::Test {
    testing::Rig rig;
    FakeKeyView view;
    KeyInput input{rig.tavo, view};
    testing::CaptionRecorder display{rig.tavo};

    KeyInputTest() {
        rig.tavo.frmInKey = &input;
        rig.tavo.bInKey = true;
        rig.tavo.frmOutDW = &display;
        rig.tavo.bOutDW = true;
    }
    void key(unsigned char c) {
        if (input.tbInput_KeyPress(c)) return;
        if (c == '\b' && !view.line.empty()) view.line.pop_back();
        if (c >= 32) view.line += static_cast<char>(c);
    }
    // Types the keys, then lets the capture pipeline run, as the yield does.
    void type(const std::string& keys) {
        for (unsigned char c : keys) key(c);
        rig.tavo.drainQueue();
    }
};

// Each row: the width, the line before the key, the key, what goes to the
// display (as the row reader gives it) and what stays on the input line.
TEST_F(KeyInputTest, APrintableKeyAtTheWrapWidthSendsUpToTheLastWordBreak) {
    struct Case {
        const char* width;
        std::string before;
        char k;
        std::string sent, stays;
    };
    const std::string thirtyOne = "Now is the time for all good me n";
    const Case cases[] = {
        {"32", std::string(30, 'a') + " b", 'c', std::string(30, 'a'), "bc"},
        {"10", "abcdefghij", 'k', "abcdefghij", "k"},
        {"10", "abcdefg-hi", 'j', "abcdefg-", "hij"},
        {"10", "abcdefghi ", 'x', "abcdefghi", "x"},
        {"10",
         "ab\xC0"
         "defghij",
         'k',
         "ab\xC0"
         "defghij",
         "k"},
        {"10",
         "ab\x80"
         "defghij",
         'k', "ab\x80", "defghijk"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.before);
        display.captions.clear();
        input.tbWrapWidth_Change(c.width);
        view.line = c.before;
        type(std::string(1, c.k));
        EXPECT_EQ(display.captions, std::vector<std::string>{"3: 1[" + c.sent + "]"});
        EXPECT_EQ(view.line, c.stays);
    }
}

TEST_F(KeyInputTest, EnterOrSendItSendsTheLineWhichLastsUntilTheNextByte) {
    type("Hello world\r");
    EXPECT_EQ(display.captions, std::vector<std::string>{"3: 1[Hello world]"});
    EXPECT_EQ(view.line, "");
    type("\r");  // an empty line still sends, and the row went blank first
    type("Bye");
    input.cmdSend_Click();
    rig.tavo.drainQueue();
    EXPECT_EQ(display.captions, (std::vector<std::string>{"3: 1[Hello world]", "3:", "3: 1[Bye]"}));
}

TEST_F(KeyInputTest, OnlyTheFirst32CharactersOfAPastedLineGoOut) {
    input.tbWrapWidth_Change("32");
    view.line = "Pasted text that runs beyond the 32 columns";
    type("\b\r");  // backspace isn't wrapped, however long the line
    EXPECT_EQ(input.getExternalText(1), "Pasted text that runs beyond the");
}

TEST_F(KeyInputTest, AWidthOfZeroWrapsEveryPrintableKey) {
    input.tbWrapWidth_Change("none");
    type("a");
    type("b");
    EXPECT_EQ(display.captions, (std::vector<std::string>{"3:", "3:"}));
    EXPECT_EQ(view.line, "ab");
}

// Keys typed before a sent line's CR is drained belong to the next line.
TEST_F(KeyInputTest, KeysTypedBeforeTheLineIsTakenStartTheNextLineInOrder) {
    input.tbWrapWidth_Change("10");
    type("abcdefghi xyz-pqrstuv");  // as if typed slowly
    EXPECT_EQ(display.captions, (std::vector<std::string>{"3: 1[abcdefghi]", "3: 1[xyz-]"}));
    EXPECT_EQ(view.line, "pqrstuv");
    view.line.clear();
    type("One\rTwo!\b\rThree");
    EXPECT_EQ(display.captions.back(), "3: 1[Two]");
    EXPECT_EQ(view.line, "Three");
}

// Only the input in use before leaves printable bytes on the ring.
TEST_F(KeyInputTest, BytesLeftOnTheRingFillTheRowUntilTheNextCR) {
    rig.queue(std::string(30, 'x') + " YZ");  // the byte at column 32 goes to the carry
    rig.tavo.drainQueue();
    EXPECT_EQ(input.getExternalText(1), "Z" + std::string(29, 'x'));
    rig.queue("\rc");
    rig.tavo.drainQueue();
    EXPECT_EQ(input.getExternalText(1), "c");
}

TEST_F(KeyInputTest, ShowFormGreetsWithANoticeForFiveSecondsAndCaptures) {
    rig.dispatch.postAt(4999,
                        [&] { EXPECT_EQ(view.notice, std::string("shown:") + kBetterTypeFast); });
    rig.dispatch.postAt(5001, [&] { EXPECT_EQ(view.notice, ""); });
    rig.dispatch.postAt(6000, [&] { type("Hi\r"); });
    rig.dispatch.postAt(7000, [&] { rig.tavo.stopCapture(); });
    rig.console();
    input.showForm();
    EXPECT_EQ(view.widthText, "32");
    EXPECT_EQ(input.iWrapWidth, 32);
    EXPECT_EQ(rig.tone.tones.size(), 6u);  // three double beeps
    EXPECT_FALSE(input.timerNotify().enabled());
    EXPECT_EQ(display.captions, std::vector<std::string>{"3: 1[Hi]"});
}

}  // namespace
}  // namespace zelvan
