// The caption file input: the script reader, then the window's rules.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/fakes.h"
#include "textinput/captionscript.h"
#include "textinput/tdsinput.h"

namespace zelvan {
namespace {

using Captions = std::vector<std::string>;

Captions read(std::string_view file) {
    Captions list;
    script::appendCaptions(file, list);
    return list;
}

// TDS: text runs between blank lines, comments and markers skipped, bytes
// kept. Cues: their text only, UTF-8 in the code page where it can be. Broken
// files, cut short anywhere: what caption text they hold.
TEST(CaptionScript, ReadsTheCaptionTextOfEachFormat) {
    const std::string cue = "WEBVTT\n\n00:01.000 --> 00:02.000";
    const std::pair<std::string, Captions> cases[] = {
        {"\r\n  \r\n; comment first\r\n  First line  \r\nSecond; still text\r\n"
         "  ; comment inside\r\n_00:00:01:00 marker\r\n^marker\r\nThird\r\n\r\n   \r\n\r\n"
         "10:00:00:00 Caf\xE9 \x93quoted\x94\n\t\n\n"                    // LF ends
         "1234567890123456789012345678901234567890\rlast, no line end",  // lone CR
         {"First line\r\nSecond; still text\r\nThird", "10:00:00:00 Caf\xE9 \x93quoted\x94\r\n\t",
          "1234567890123456789012345678901234567890\r\nlast, no line end"}},
        {"\xEF\xBB\xBF"
         "1\r\n00:00:01,000 --> 00:00:02,500\r\n"
         "<i>Hello</i> &amp; <font color=\"#ff0000\">welcome</font>\r\n  {\\an8}second \r\n\r\n"
         "2\r\n00:00:03,000 --> 00:00:04,000 X1:10\r\n"
         "Caf\xC3\xA9 \xC2\xA9\xE2\x80\x9Cq\xE2\x80\x9D \xE4\xB8\xAD &lt;b&gt; "
         "&#233;&#32;&#x41;&#160;&#8220;&#0;&#x1F600;&quot;&apos;\r\n"
         "\r\n\r\n3\r\n00:00:05,000 --> 00:00:06,000\r\n<b></b>\r\n\r\n"
         "4\r\n00:00:07,000 --> 00:00:08,000\r\na < b, 3 > 2 --> fine\r\n",
         {"Hello & welcome\r\nsecond", "Caf\xE9 \xA9\x93q\x94 ? <b> \xE9 A\xA0\x93??\"'",
          "a < b, 3 > 2 --> fine"}},
        {"1\n00:00:01,000 --> 00:00:02,000\n\xE9t\xE9 Caf\xE9\n", {"\xE9t\xE9 Caf\xE9"}},
        {"1\n00:00:01,000 --> 00:00:02,000\n\xA9\xA9\xA9\xA9\n", {"\xA9\xA9\xA9\xA9"}},
        {"WEBVTT - a title\nKind: captions\n\nSTYLE\n::cue { color: yellow }\n\n"
         "NOTE by hand\nsecond line\n\nintro\n00:01.000 --> 00:02.000 line:0 align:start\n"
         "<v Roger>Hi there</v>&nbsp;<c.loud>you</c>\n<00:01.500>and <ruby>kan<rt>ji</rt></ruby>\n"
         "\n00:03.000 --> 00:04.000\nTwo &gt; one",
         {"Hi there you\r\nand kanji", "Two > one"}},
        {std::string("A\0B\r\n\r\nC", 8), {std::string("A\0B", 3), "C"}},
        {cue + "\n<i unclosed &amp", {"<i unclosed &amp"}},
        {cue + "\nend \xC3", {"end \xC3"}},
        {cue + "\n\xE2\x99\xAA sing &#9834;\n \t \nx <3 y > z</3>\n",
         {"\x95 sing \x95\r\nx <3 y > z</3>"}},
        {"1\n0:00:01.000 --> 0:00:02.000\nOne-digit hours\n", {"One-digit hours"}},
        // Only a sure sign leaves the TDS road; cues that give nothing are TDS.
        {"1\r\nLadies --> gentlemen\r\n\r\nNext", {"1\r\nLadies --> gentlemen", "Next"}},
        {"WEBVTT is where\r\nwe begin\r\n", {"WEBVTT is where\r\nwe begin"}},
        {cue, {"WEBVTT", "00:01.000 --> 00:02.000"}},
    };
    for (const auto& [file, captions] : cases) EXPECT_EQ(read(file), captions) << file;
    Captions list{"kept"};
    for (const char* noText : {"", "\r\n\r\n", "; only\r\n_markers\r\n^here\r\n"})
        script::appendCaptions(noText, list);
    EXPECT_EQ(list, Captions{"kept"});
}

TEST(CaptionScript, TheFormatIsToldByContentAlone) {
    EXPECT_EQ(script::detectFormat("\xEF\xBB\xBFWEBVTT\tx\r\n\r\n01:00.000 --> 01:02.000\r\n"),
              script::Format::WebVtt);
    EXPECT_EQ(script::detectFormat("\r\n190\r\n00:00:01,000 --> 00:00:02,000\r\nA\r\n"),
              script::Format::SubRip);
    EXPECT_EQ(script::detectFormat("WEBVTTISH\n00:01.000 --> 00:02.000\n"), script::Format::Tds);
    EXPECT_EQ(script::detectFormat("  \r\n7"), script::Format::Tds);
    EXPECT_EQ(read("1\r\nFirst caption\r\n"), (Captions{"1\r\nFirst caption"}));
}

struct FakeTdsView : TdsView {
    void placeWindow() override {}
    void showWindow() override {}
    void hideWindow() override {}
    std::optional<std::string> chooseFile(const std::string&, const std::string&,
                                          const std::string&) override {
        return answer;
    }
    void setFileName(const std::string& name) override { fileName = name; }
    void setOffsetText(const std::string&) override {}
    void setDisplayedText(const std::string& text) override { displayed = text; }
    void setOnDeckText(const std::string& text) override { onDeck = text; }
    void focusSend() override {}
    void showHelp() override {}

    std::optional<std::string> answer;
    std::string fileName, displayed, onDeck;
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
    std::string shown() const { return display.captions.empty() ? "" : display.captions.back(); }
};

// A caption of more than 15 lines keeps 15 on the rows and says so on deck.
TEST_F(TdsInputTest, SendShowsEachCaptionInTurnAndBlanksTheSignAtTheEnd) {
    input.send();
    EXPECT_EQ(display.calls, 0) << "no file, no send";
    std::string script = "First top\r\nFirst bottom\r\n\r\n" + std::string(40, 'w');
    for (int i = 2; i <= 18; ++i) script += "\r\nline " + std::to_string(i);
    open("two.tds", script);
    EXPECT_EQ(view.onDeck, "First top\r\nFirst bottom");
    EXPECT_EQ(input.getExternalText(2), "First bottom") << "the rows hold the caption on deck";
    input.send();
    EXPECT_EQ(shown(), "1: 1[First top] 2[First bottom]");
    EXPECT_EQ(view.displayed, "First top\r\nFirst bottom");
    EXPECT_EQ(view.onDeck.substr(0, 42), std::string(40, 'w') + "\r\n");
    const std::string tail = "line 15\r\n(3 lines left out)";
    EXPECT_EQ(view.onDeck.substr(view.onDeck.size() - tail.size()), tail);
    EXPECT_EQ(input.getExternalText(1), std::string(32, 'w'));
    input.send();
    EXPECT_EQ(view.displayed.find("left out"), std::string::npos);
    EXPECT_NE(shown().find("15[line 15]"), std::string::npos);
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
    open("three.tds", "Caption 1\r\n\r\nCaption 2\r\n\r\nCaption 3\r\n");
    input.send();
    input.rewind();
    input.rewind();
    EXPECT_EQ(view.onDeck, "Caption 1") << "caption 1 is the floor";
    EXPECT_EQ(shown(), "1:");
    EXPECT_EQ(view.displayed, "");
    for (int i = 0; i < 5; ++i) input.send();
    input.rewind();
    EXPECT_EQ(view.onDeck, "Caption 2") << "from the end, the caption before the last";

    input.erase();  // bytes another input left on the ring don't change what Send shows
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

TEST_F(TdsInputTest, AFailedOpenKeepsTheScriptAndANewFileStartsAfresh) {
    open("three.tds", "Caption 1\r\n\r\nCaption 2\r\n\r\nCaption 3\r\n");
    input.send();
    view.answer = (dir / "gone.srt").string();
    input.openFile();
    EXPECT_EQ(view.fileName, "gone.srt") << "the name is taken before the open fails";
    view.answer = dir.string();  // a folder can't be read either
    input.openFile();
    EXPECT_EQ(view.onDeck, "Caption 2");
    open("next.srt", "1\r\n00:00:01,000 --> 00:00:02,000\r\n<i>Other</i>\r\n");
    EXPECT_EQ(view.onDeck, "Other");
    EXPECT_EQ(view.displayed, "Caption 1") << "the sign still shows the old caption";
}

}  // namespace
}  // namespace zelvan
