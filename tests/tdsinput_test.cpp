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

// Text of code points below 256 as UTF-16 with its mark, little-endian or big.
std::string utf16(std::u16string_view text, bool little) {
    std::string bytes = little ? "\xFF\xFE" : "\xFE\xFF";
    for (char16_t c : text) {
        const char lo = static_cast<char>(c & 0xFF), hi = static_cast<char>(c >> 8);
        bytes += little ? std::string{lo, hi} : std::string{hi, lo};
    }
    return bytes;
}

// TDS: text runs between blank lines, comments and markers skipped, bytes
// kept. Cues: their text only, UTF-8 in the code page where it can be. Broken
// files, cut short anywhere: what caption text they hold.
TEST(CaptionScript, ReadsTheCaptionTextOfEachFormatToldByContentAlone) {
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
         "Caf\xC3\xA9 \xC2\xA9\xE2\x80\x9Cq\xE2\x80\x9D \xE0\xA4\xB9 &lt;b&gt; "
         "&#233;&#32;&#x41;&#160;&#8220;&#0;&#x1F600;&quot;&apos;&#x4f;&#1z;\r\n"
         "\r\n\r\n3\r\n00:00:05,000 --> 00:00:06,000\r\n<b></b>\r\n\r\n"
         "4\r\n00:00:07,000 --> 00:00:08,000\r\na < b, 3 > 2 --> fine\r\n",
         {"Hello & welcome\r\nsecond", "Caf\xE9 \xA9\x93q\x94 ? <b> \xE9 A\xA0\x93??\"'O?",
          "a < b, 3 > 2 --> fine"}},
        {"1\n0:00:01.000 --> 0:00:02.000\n\xE9t\xE9 Caf\xE9\n", {"\xE9t\xE9 Caf\xE9"}},
        {"1\n00:00:01,000 --> 00:00:02,000\n\xA9\xA9\xA9\xA9\n", {"\xA9\xA9\xA9\xA9"}},
        // A time without an arrow, or an arrow without an end, is no timing line.
        {"1\n00:00:01,000 --> 00:00:02,000\nA\n\n0:00:09.000 x\n0:00:03.000 --> 0:00:04.000\nB\n\n"
         "00:00:05,000 -->\nC\n",
         {"A", "B"}},
        {"1\n00:00:01,000 --> 00:00:02,000\n\xE2\x41\x80\n", {"\xE2\x41\x80"}},
        {"1\n00:00:01,000 --> 00:00:02,000\n\xE2\x80\x41\n", {"\xE2\x80\x41"}},
        {"WEBVTT - a title\nKind: captions\n\nSTYLE\n::cue { color: yellow }\n\n"
         "NOTE by hand\nsecond line\n\nintro\n00:01.000 --> 00:02.000 line:0 align:start\n"
         "<v Roger>Hi there</v>&nbsp;<c.loud>you</c>\n<00:01.500>and <ruby>kan<rt>ji</rt></ruby>\n"
         "\n00:03.000 --> 00:04.000\nTwo &gt; one",
         {"Hi there you\r\nand kanji", "Two > one"}},
        {std::string("A\0B\r\n\r\nC", 8), {std::string("A\0B", 3), "C"}},
        {cue + "\n<i unclosed &amp", {"<i unclosed &amp"}},
        {cue + "\nend \xC3", {"end \xC3"}},
        {cue + "\n\xE2\x99\xAA sing &#9834;\n \t \nx <3 y > z</3><a>\n",
         {"\x95 sing \x95\r\nx <3 y > z</3>"}},
        // Only a sure sign leaves the TDS road; cues that give nothing are TDS.
        {"1\r\nLadies --> gentlemen\r\n\r\nNext", {"1\r\nLadies --> gentlemen", "Next"}},
        {"WEBVTT is where\r\nwe begin\r\n", {"WEBVTT is where\r\nwe begin"}},
        {"1\r\nFirst caption\r\n", {"1\r\nFirst caption"}},
        {cue, {"WEBVTT", "00:01.000 --> 00:02.000"}},
        {utf16(u"1\r\n00:00:01,000 --> 00:00:02,000\r\nCaf\u00e9 \u266a\U0001F600", true),
         {"Caf\xE9 \x95?"}},
        {utf16(u"Caf\u00e9 \u20ac", false), {"Caf\xE9 \x80"}},
        {utf16(u"A\U0001F400", true) + "B", {"A?"}},  // a low half of 0xDC00; an odd last byte
        {"1\n00:00:01,000 --> 00:00:02,000\n\xF5\x80\x80\x80\n", {"\xF5\x80\x80\x80"}},
    };
    for (const auto& [file, captions] : cases) EXPECT_EQ(read(file), captions) << file;
    Captions list{"kept"};
    for (const char* noText : {"", "\r\n\r\n", "; only\r\n_markers\r\n^here\r\n"})
        script::appendCaptions(noText, list);
    EXPECT_EQ(list, Captions{"kept"});
    EXPECT_EQ(script::detectFormat("\xEF\xBB\xBFWEBVTT\tx\r\n\r\n01:00.000 --> 01:02.000\r\n"),
              script::Format::WebVtt);
    EXPECT_EQ(script::detectFormat("\r\n190\r\n00:00:01,000 --> 00:00:02,000\r\nA\r\n"),
              script::Format::SubRip);
    EXPECT_EQ(script::detectFormat("WEBVTTISH\n00:01.000 --> 00:02.000\n"), script::Format::Tds);
    EXPECT_EQ(script::detectFormat("  \r\n7"), script::Format::Tds);
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
    void focusSend() override { ++focused; }
    void showHelp() override {}
    void showPlayState(bool enabled, bool playing) override {
        play = !enabled ? "disabled" : playing ? "Pause" : "Play";
    }
    void setClockText(const std::string& text) override { clock = text; }
    void setPlaybackBoxes(const std::string&, const std::string&) override {}

    std::optional<std::string> answer;
    std::string fileName, displayed, onDeck, play, clock;
    int focused = 0;
};

struct TdsInputTest : ::testing::Test, testing::Rig {
    testing::CaptionRecorder display{tavo};
    FakeTdsView view;
    TdsInput input{tavo, view};
    std::filesystem::path dir =
        std::filesystem::temp_directory_path() / ("tdsinput-" + std::to_string(::getpid()));

    void SetUp() override {
        std::filesystem::create_directories(dir);
        tavo.bInTDS = true;
        tavo.frmInTDS = &input;
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
    input.rewind();
    EXPECT_EQ(display.calls, 0) << "no file: Send and Rewind do nothing";
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

TEST_F(TdsInputTest, RewindEraseAndOpenKeepTheirPlaceInTheScript) {
    input.erase();
    EXPECT_EQ(shown(), "1:") << "Erase works before any file";
    open("three.tds", "Caption 1\r\n\r\nCaption 2\r\n\r\nCaption 3\r\n");
    input.send();
    view.answer = (dir / "gone.srt").string();  // a failed open keeps the script
    input.openFile();
    EXPECT_EQ(view.fileName, "gone.srt") << "the name is taken before the open fails";
    view.answer = dir.string();  // a folder can't be read either
    input.openFile();
    EXPECT_EQ(view.onDeck, "Caption 2");
    input.rewind();
    input.rewind();
    EXPECT_EQ(view.onDeck, "Caption 1") << "caption 1 is the floor";
    EXPECT_EQ(view.focused, 4) << "Open, Send and Rewind hand the keys back to Send";
    EXPECT_EQ(shown() + "|" + view.displayed, "1:|") << "Rewind blanks the sign";
    for (int i = 0; i < 5; ++i) input.send();
    input.rewind();
    EXPECT_EQ(view.onDeck, "Caption 2") << "from the end, the caption before the last";

    input.erase();  // bytes another input left on the ring don't change what Send shows
    std::string line;
    for (const char* b : {"A", "\r", "B"}) input.filterEntry(b, line);
    EXPECT_EQ(input.getExternalText(1), "B") << "a new line starts at column 1";
    input.send();
    EXPECT_EQ(shown(), "1: 1[Caption 2]");

    tavo.bOutDW = false;
    const long calls = display.calls;
    input.send();
    EXPECT_EQ(display.calls, calls) << "the display is down";
    EXPECT_EQ(view.displayed, "Caption 3") << "but the panes move";
    open("next.srt", "1\r\n00:00:01,000 --> 00:00:02,000\r\n<i>Other</i>\r\n");
    EXPECT_EQ(view.onDeck, "Other") << "a new file starts afresh";
    EXPECT_EQ(view.displayed, "Caption 3") << "the sign still shows the old caption";
}

TEST(SubtitleClock, ReadsTheTimesTypedAndInCuesAndShowsTenths) {
    EXPECT_EQ(clockText(3723456), "01:02:03.4");
    using Times = std::vector<std::pair<const char*, std::optional<long long>>>;
    const Times times{{"", 0},
                      {" 1:02:03.5 ", 3723500},
                      {"02:03", 123000},
                      {"7.25", 7250},
                      {"1.5:00", std::nullopt},
                      {"1:2:3:4", std::nullopt},
                      {"x", std::nullopt}};
    for (const auto& [text, ms] : times) EXPECT_EQ(parseFileTime(text), ms) << text;
    const Times offsets{{"", 0},     {"-1.25", -1300},       {"+0.04", 0},
                        {"2", 2000}, {"1.5s", std::nullopt}, {"--1", std::nullopt}};
    for (const auto& [text, ms] : offsets) EXPECT_EQ(parseOffset(text), ms) << text;
    // Cue times with hours or without; a minute or second past 59 is no time.
    const script::Script s = script::readScript(
        "1\n1:02:03.456 --> 01:02:04,000\nA\n\n2\n59:58,001 --> 59:59.999\nB\n\n"
        "3\n00:60:00,000 --> 01:00:00,000\nC\n\n4\n00:00:60,000 --> 00:01:00,000\nD\n");
    std::vector<std::pair<std::int64_t, std::int64_t>> cues;
    for (const script::Caption& c : s.captions) cues.emplace_back(c.startMs, c.endMs);
    EXPECT_EQ(cues, (decltype(cues){{3723456, 3724000}, {3598001, 3599999}}));
}

// A cue of 56 characters, one of five lines, two that overlap and a gap.
constexpr const char* kSubtitles =
    "1\r\n00:00:01,000 --> 00:00:03,000\r\n"
    "We're actually at the Lucern Hotel, just down the street\r\n\r\n"
    "2\r\n00:00:04,000 --> 00:00:10,000\r\nline one\r\nline two\r\nline three\r\n"
    "line four\r\nline five\r\n\r\n"
    "3\r\n00:00:09,000 --> 00:00:12,000\r\nOverlap\r\n";
const std::string kLucern = "1[We're actually at the Lucern] 2[Hotel, just down the street]";
const std::string kLines1to3 = "1[line one] 2[line two] 3[line three]";
const std::string kLines4and5 = "1[line four] 2[line five]";

struct SubtitleTest : TdsInputTest {
    void SetUp() override {
        TdsInputTest::SetUp();
        display.stamp = [this] { return std::to_string(dispatch.nowMs() - t0) + " "; };
        open("film.srt", kSubtitles);
    }
    // Plays from now, on virtual time, until the file has ended.
    void play() {
        t0 = dispatch.nowMs();
        display.captions.clear();
        input.playPause();
    }
    long long t0 = 0;
};

TEST_F(SubtitleTest, EachChangeReachesTheSignAtItsCueTimeAndOffsetMovesThemAll) {
    for (const auto& [offset, shift] : {std::pair{"", 0}, {"+1.5", 1500}, {"-0.46", -500}}) {
        SCOPED_TRACE(offset);
        open("film.srt", kSubtitles);
        input.offsetChanged(offset);
        play();
        EXPECT_EQ(view.play, "Pause");
        dispatch.advance(15000);
        auto at = [&](long long ms, const std::string& rows) {
            return std::to_string(ms + shift) + " 1:" + (rows.empty() ? "" : " " + rows);
        };
        EXPECT_EQ(display.captions,
                  (Captions{"0 1:", at(1000, kLucern), at(3000, ""), at(4000, kLines1to3),
                            at(7000, kLines4and5), at(9000, kLines4and5 + " 3[Overlap]"),
                            at(10000, "1[Overlap]"), at(12000, "")}));
        EXPECT_EQ(view.play, "Play") << "the clock stops at the end of the file";
    }
}

TEST_F(SubtitleTest, PauseHoldsAndSendRewindEraseMoveFromCueToCue) {
    input.startAtChanged("00:00:00.9");
    play();
    dispatch.advance(1000);  // file time 1.9 s: the first cue shows
    input.playPause();
    dispatch.advance(60000);
    EXPECT_EQ(view.clock, "00:00:01.9");
    EXPECT_EQ(view.onDeck, "line one\r\nline two\r\nline three");
    input.playPause();  // sends what shows at once
    input.send();       // to the next cue's start, 4 s
    input.send();       // 9 s
    input.rewind();     // to the cue before the one that started last: 4 s
    input.erase();
    dispatch.advance(5500);  // 9.5 s: blank until cue 3, then cue 2 ends at 10 s
    EXPECT_EQ(
        display.captions,
        (Captions{"0 1:", "100 1: " + kLucern, "61000 1: " + kLucern, "61000 1: " + kLines1to3,
                  "61000 1: " + kLines4and5 + " 3[Overlap]", "61000 1: " + kLines1to3,
                  "61000 1:", "66000 1: " + kLines4and5 + " 3[Overlap]"}));
    EXPECT_EQ(view.clock, "00:00:09.5");
    EXPECT_EQ(view.displayed, "line four\r\nline five\r\nOverlap") << "as the sign shows";
}

// By hand a cue steps out as many rows at a time as the display uses.
TEST_F(SubtitleTest, StepsFittedRowsByHandAndATdsScriptCantPlay) {
    EXPECT_EQ(view.onDeck, "We're actually at the Lucern\r\nHotel, just down the street");
    input.send();
    display.rows = 2;  // the cue on deck fits the rows anew at Send
    for (int i = 0; i < 3; ++i) input.send();
    EXPECT_EQ(display.captions, (Captions{"0 1: " + kLucern, "0 1: 1[line one] 2[line two]",
                                          "0 1: 1[line three] 2[line four]", "0 1: 1[line five]"}));
    EXPECT_EQ(view.onDeck, "Overlap");
    open("film.tds", "1\r\n00:00:01,000 --> 00:00:02,000 is only text\r\n");
    EXPECT_EQ(view.play, "disabled");
    input.playPause();
    EXPECT_EQ(display.captions.size(), 4u) << "nothing played";
}

}  // namespace
}  // namespace zelvan
