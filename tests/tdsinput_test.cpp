// The caption file window's rules on virtual time: stepping through a script
// with Send, Rewind and Erase, what reaches the display at each press, opening
// files (Cancel, a failed open, a second file), long captions and the keys.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/fakes.h"
#include "textinput/tdsinput.h"

namespace zelvan {
namespace {

struct FakeTdsView : TdsView {
    void placeWindow() override {}
    void showWindow() override { shown = true; }
    void hideWindow() override { shown = false; }
    std::optional<std::string> chooseFile(const std::string& title, const std::string& start,
                                          const std::string& filter) override {
        asked.push_back(title + "|" + start + "|" + filter);
        return answer;
    }
    void setFileName(const std::string& name) override { fileName = name; }
    void setOffsetText(const std::string& text) override { offset = text; }
    void setDisplayedText(const std::string& text) override { displayed = text; }
    void setOnDeckText(const std::string& text) override { onDeck = text; }
    void focusSend() override { ++focused; }
    void showHelp() override { ++helps; }

    std::optional<std::string> answer;
    std::vector<std::string> asked;
    std::string fileName, offset, displayed, onDeck;
    bool shown = false;
    int focused = 0, helps = 0;
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

    std::string write(const std::string& name, const std::string& text) {
        const std::string path = (dir / name).string();
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    void open(const std::string& path) {
        view.answer = path;
        input.openFile();
    }
    // A script of n one-line captions "Caption 1" ... "Caption n".
    void openScript(int n) {
        std::string text;
        for (int i = 1; i <= n; ++i) text += "Caption " + std::to_string(i) + "\r\n\r\n";
        open(write("script.tds", text));
    }
    std::string lastShown() const {
        return display.captions.empty() ? "" : display.captions.back();
    }
};

TEST_F(TdsInputTest, SendShowsEachCaptionInTurnAndBlanksTheSignAtTheEnd) {
    input.showForm();
    EXPECT_EQ(view.offset, kTdsDefaultOffset);
    input.send();
    EXPECT_TRUE(display.captions.empty()) << "no file, no send";

    open(write("two.tds", "; script\r\nFirst top\r\nFirst bottom\r\n\r\nSecond"));
    EXPECT_EQ(view.fileName, "two.tds");
    EXPECT_EQ(view.onDeck, "First top\r\nFirst bottom");
    EXPECT_EQ(input.getExternalText(2), "First bottom") << "the rows hold the caption on deck";
    EXPECT_TRUE(display.captions.empty()) << "opening sends nothing";

    input.send();
    EXPECT_EQ(lastShown(), "1: 1[First top] 2[First bottom]");
    EXPECT_EQ(view.displayed, "First top\r\nFirst bottom");
    EXPECT_EQ(view.onDeck, "Second");
    input.send();
    EXPECT_EQ(lastShown(), "1: 1[Second]");
    EXPECT_EQ(view.onDeck, "");

    for (int i = 0; i < 2; ++i) {
        input.send();
        EXPECT_EQ(lastShown(), "1:") << "end of script: blank rows go out";
        EXPECT_EQ(view.displayed, "");
        EXPECT_EQ(input.iNextCaption(), 3);
    }
    EXPECT_EQ(display.captions.size(), 4u);
}

TEST_F(TdsInputTest, RewindStepsBackToTheCaptionBeforeAndBlanksTheSign) {
    input.rewind();
    EXPECT_EQ(display.calls, 0) << "Rewind with no script does nothing";
    openScript(3);
    input.send();
    EXPECT_EQ(view.onDeck, "Caption 2");
    input.rewind();
    EXPECT_EQ(view.onDeck, "Caption 1");
    EXPECT_EQ(lastShown(), "1:");
    EXPECT_EQ(view.displayed, "");
    input.rewind();
    EXPECT_EQ(view.onDeck, "Caption 1") << "caption 1 is the floor";

    for (int i = 0; i < 4; ++i) input.send();
    EXPECT_EQ(view.onDeck, "");
    input.rewind();
    EXPECT_EQ(view.onDeck, "Caption 2") << "from the end, the caption before the last";
    input.send();
    EXPECT_EQ(lastShown(), "1: 1[Caption 2]");
}

TEST_F(TdsInputTest, EraseBlanksTheSignAndTheNextSendShowsWhatIsOnDeck) {
    input.erase();
    EXPECT_EQ(lastShown(), "1:") << "Erase works before any file";
    openScript(2);
    input.send();
    input.erase();
    EXPECT_EQ(lastShown(), "1:");
    EXPECT_EQ(view.displayed, "");
    EXPECT_EQ(view.onDeck, "Caption 2");
    input.send();
    EXPECT_EQ(lastShown(), "1: 1[Caption 2]") << "the sign agrees with the pane";
    EXPECT_EQ(view.displayed, "Caption 2");
}

TEST_F(TdsInputTest, WithTheDisplayDownThePanesAndPositionStillMove) {
    rig.tavo.bOutDW = false;
    openScript(2);
    input.send();
    input.erase();
    input.rewind();
    EXPECT_EQ(display.calls, 0);
    EXPECT_EQ(view.onDeck, "Caption 1");
    input.send();
    EXPECT_EQ(view.displayed, "Caption 1");
}

TEST_F(TdsInputTest, OpeningAFileCancelFailureAndASecondFile) {
    view.answer.reset();
    input.openFile();
    EXPECT_EQ(view.asked.back(), std::string(kTdsDialogTitle) + "||" + kTdsFileFilter);
    EXPECT_FALSE(input.bFileLoaded());
    EXPECT_EQ(view.fileName, "");

    openScript(3);
    input.send();
    const std::string missing = (dir / "gone.srt").string();
    open(missing);
    EXPECT_EQ(view.fileName, "gone.srt") << "the name is taken before the open fails";
    EXPECT_EQ(input.sFilePath(), missing);
    EXPECT_EQ(input.captionList().size(), 3u);
    EXPECT_EQ(view.onDeck, "Caption 2");
    open(dir.string());  // a folder can't be read either
    EXPECT_EQ(input.captionList().size(), 3u);

    input.openFile();
    EXPECT_EQ(view.asked.back().rfind(std::string(kTdsDialogTitle) + "|" + dir.string() + "|", 0),
              0u)
        << "the dialog starts at the file last chosen";
    open(write("next.srt", "1\r\n00:00:01,000 --> 00:00:02,000\r\n<i>Other</i>\r\n"));
    EXPECT_EQ(input.captionList(), std::vector<std::string>{"Other"}) << "a fresh script";
    EXPECT_EQ(view.onDeck, "Other");
    EXPECT_EQ(view.displayed, "Caption 1") << "the sign still shows the old caption";
}

TEST_F(TdsInputTest, LongCaptionsReachTheRowsCutWhileThePanesShowThemWhole) {
    std::string script = std::string(40, 'w') + "\r\n";
    for (int i = 2; i <= 18; ++i) script += "line " + std::to_string(i) + "\r\n";
    open(write("long.txt", script));
    EXPECT_EQ(view.onDeck.substr(0, 42), std::string(40, 'w') + "\r\n");
    const std::string tail = "line 15\r\n(3 lines left out)";
    EXPECT_EQ(view.onDeck.substr(view.onDeck.size() - tail.size()), tail);
    EXPECT_EQ(input.getExternalText(1), std::string(32, 'w'));
    EXPECT_EQ(input.getExternalText(15), "line 15");
    input.send();
    EXPECT_EQ(view.displayed.find("left out"), std::string::npos);
    EXPECT_NE(lastShown().find("15[line 15]"), std::string::npos);
}

TEST_F(TdsInputTest, KeysStepByCodeAndStrayBytesDoNotOutliveTheNextSend) {
    openScript(3);
    input.keyDown(kKeyPageDown);
    input.keyDown(kKeyPageDown);
    EXPECT_EQ(lastShown(), "1: 1[Caption 2]");
    input.keyDown(kKeyPageUp);
    EXPECT_EQ(view.onDeck, "Caption 2");
    input.keyDown(kKeyE);
    EXPECT_EQ(lastShown(), "1:");
    input.keyDown(kKeyF1);
    input.keyDown('X');
    EXPECT_EQ(view.helps, 1);

    // Bytes another input left on the ring fill a row as the ASCII filter does.
    std::string line;
    input.filterEntry("A", line);
    EXPECT_EQ(input.filterEntry("\r", line), kStyleLineEnded);
    EXPECT_EQ(line.substr(0, 1), "A");
    input.filterEntry("B", line);
    input.send();
    EXPECT_EQ(lastShown(), "1: 1[Caption 2]");
}

}  // namespace
}  // namespace zelvan
