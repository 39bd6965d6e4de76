// The caption file window's rules on virtual time: stepping through a script
// with Send, Rewind and Erase, what reaches the display at each press, and
// opening files (Cancel, a failed open, a second file, long captions).

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/fakes.h"
#include "textinput/tdsinput.h"

namespace zelvan {
namespace {

struct FakeTdsView : TdsView {
    void placeWindow() override {}
    void showWindow() override {}
    void hideWindow() override {}
    std::optional<std::string> chooseFile(const std::string& title, const std::string& start,
                                          const std::string&) override {
        asked = title + "|" + start;
        return answer;
    }
    void setFileName(const std::string& name) override { fileName = name; }
    void setOffsetText(const std::string&) override {}
    void setDisplayedText(const std::string& text) override { displayed = text; }
    void setOnDeckText(const std::string& text) override { onDeck = text; }
    void focusSend() override {}
    void showHelp() override {}

    std::optional<std::string> answer;
    std::string asked, fileName, displayed, onDeck;
};

struct TdsInputTest : ::testing::Test {
    testing::Rig rig;
    testing::CaptionRecorder display{rig.tavo};
    FakeTdsView view;
    TdsInput input{rig.tavo, view};
    std::filesystem::path dir =
        std::filesystem::temp_directory_path() / ("tdsinput-" + std::to_string(::getpid()));

    void SetUp() override {
        std::filesystem::create_directories(dir);
        rig.tavo.bInTDS = true;
        rig.tavo.frmInTDS = &input;
        rig.tavo.frmOutDW = &display;
        rig.tavo.bOutDW = true;
    }
    void TearDown() override { std::filesystem::remove_all(dir); }

    void open(const std::string& name, const std::string& text) {
        view.answer = (dir / name).string();
        std::ofstream(*view.answer, std::ios::binary) << text;
        input.openFile();
    }
    // "Caption 1" ... "Caption n", one line each.
    void openScript(int n) {
        std::string text;
        for (int i = 1; i <= n; ++i) text += "Caption " + std::to_string(i) + "\r\n\r\n";
        open("script.tds", text);
    }
    std::string shown() const { return display.captions.empty() ? "" : display.captions.back(); }
};

TEST_F(TdsInputTest, SendShowsEachCaptionInTurnAndBlanksTheSignAtTheEnd) {
    input.send();
    EXPECT_EQ(display.calls, 0) << "no file, no send";
    open("two.tds", "First top\r\nFirst bottom\r\n\r\nSecond");
    EXPECT_EQ(view.onDeck, "First top\r\nFirst bottom");
    EXPECT_EQ(input.getExternalText(2), "First bottom") << "the rows hold the caption on deck";
    input.send();
    EXPECT_EQ(shown(), "1: 1[First top] 2[First bottom]");
    EXPECT_EQ(view.displayed, "First top\r\nFirst bottom");
    input.send();
    EXPECT_EQ(shown(), "1: 1[Second]");
    EXPECT_EQ(view.onDeck, "");
    input.send();
    EXPECT_EQ(shown(), "1:") << "past the end blank rows go out";
    EXPECT_EQ(view.displayed, "");
}

TEST_F(TdsInputTest, RewindAndEraseLeaveTheSignBlankAndSendShowsWhatIsOnDeck) {
    input.rewind();
    EXPECT_EQ(display.calls, 0) << "Rewind with no script does nothing";
    input.erase();
    EXPECT_EQ(shown(), "1:") << "Erase works before any file";
    openScript(3);
    input.send();
    input.rewind();
    EXPECT_EQ(view.onDeck, "Caption 1");
    input.rewind();
    EXPECT_EQ(view.onDeck, "Caption 1") << "caption 1 is the floor";
    EXPECT_EQ(shown(), "1:");
    EXPECT_EQ(view.displayed, "");
    for (int i = 0; i < 5; ++i) input.send();
    input.rewind();
    EXPECT_EQ(view.onDeck, "Caption 2") << "from the end, the caption before the last";

    input.erase();
    // Bytes another input left on the ring write into the rows; Send still
    // shows what is on deck.
    std::string line;
    for (const char* b : {"A", "\r", "B"}) input.filterEntry(b, line);
    input.send();
    EXPECT_EQ(shown(), "1: 1[Caption 2]");

    rig.tavo.bOutDW = false;
    const long calls = display.calls;
    input.send();
    EXPECT_EQ(display.calls, calls) << "the display is down";
    EXPECT_EQ(view.displayed, "Caption 3") << "but the panes move";
}

TEST_F(TdsInputTest, CancelChangesNothingAFailedOpenKeepsTheScriptAndANewFileStartsAfresh) {
    input.openFile();
    EXPECT_EQ(view.asked, std::string(kTdsDialogTitle) + "|");
    EXPECT_TRUE(view.fileName.empty());
    openScript(3);
    input.send();
    view.answer = (dir / "gone.srt").string();
    input.openFile();
    EXPECT_EQ(view.fileName, "gone.srt") << "the name is taken before the open fails";
    view.answer = dir.string();  // a folder can't be read either
    input.openFile();
    EXPECT_EQ(view.onDeck, "Caption 2");
    EXPECT_EQ(view.asked, std::string(kTdsDialogTitle) + "|" + (dir / "gone.srt").string())
        << "the dialog starts at the file last chosen";

    open("next.srt", "1\r\n00:00:01,000 --> 00:00:02,000\r\n<i>Other</i>\r\n");
    EXPECT_EQ(view.onDeck, "Other");
    EXPECT_EQ(view.displayed, "Caption 1") << "the sign still shows the old caption";
}

TEST_F(TdsInputTest, LongCaptionsReachTheRowsCutWhileThePanesShowThemWhole) {
    std::string script = std::string(40, 'w');
    for (int i = 2; i <= 18; ++i) script += "\r\nline " + std::to_string(i);
    open("long.txt", script);
    EXPECT_EQ(view.onDeck.substr(0, 42), std::string(40, 'w') + "\r\n");
    const std::string tail = "line 15\r\n(3 lines left out)";
    EXPECT_EQ(view.onDeck.substr(view.onDeck.size() - tail.size()), tail);
    EXPECT_EQ(input.getExternalText(1), std::string(32, 'w'));
    input.send();
    EXPECT_EQ(view.displayed.find("left out"), std::string::npos);
    EXPECT_NE(shown().find("15[line 15]"), std::string::npos);
}

}  // namespace
}  // namespace zelvan
