// The caption script reader: TDS line classes and captions, SubRip and WebVTT
// cues brought down to their text, the format told by content, and files that
// are broken in every way still loading what caption text they hold.

#include <gtest/gtest.h>

#include "textinput/captionscript.h"

namespace zelvan::script {
namespace {

using Captions = std::vector<std::string>;

Captions read(std::string_view file) {
    Captions list;
    appendCaptions(file, list);
    return list;
}

TEST(TdsScript, LineClassesMakeCaptionsOfTextRunsBetweenBlankLines) {
    const std::string file =
        "\r\n  \r\n"
        "; a comment before anything\r\n"
        "  First line  \r\n"
        "Second; still text\r\n"
        "  ; comment inside the run\r\n"
        "_00:00:01:00 marker\r\n"
        "^another marker\r\n"
        "Third line\r\n"
        "\r\n   \r\n\r\n"
        "\"Quoted\" 10:00:00:00 stays text\r\n"
        "\t\r\n"
        "\r\n"
        "1234567890123456789012345678901234567890\r\n";
    EXPECT_EQ(read(file), (Captions{"First line\r\nSecond; still text\r\nThird line",
                                    "\"Quoted\" 10:00:00:00 stays text\r\n\t",
                                    "1234567890123456789012345678901234567890"}));
}

TEST(TdsScript, AnyLineEndWorksAndTheBytesStayAsTheyAre) {
    EXPECT_EQ(read("A\nB\n\nC\rD\r\rE\r\n"), (Captions{"A\r\nB", "C\r\nD", "E"}));
    EXPECT_EQ(read("Caf\xE9 \x93quoted\x94"), (Captions{"Caf\xE9 \x93quoted\x94"}));
    // A byte-order mark is no part of the format: it stays text, as every byte does.
    EXPECT_EQ(read("\xEF\xBB\xBFHi"), (Captions{"\xEF\xBB\xBFHi"}));
}

TEST(TdsScript, FilesWithoutTextGiveNoCaptionAndLeaveTheListAlone) {
    Captions list{"kept"};
    for (const char* file : {"", "\r\n\r\n", "; only\r\n_markers\r\n^here\r\n"}) {
        appendCaptions(file, list);
        EXPECT_EQ(list, Captions{"kept"}) << file;
    }
    appendCaptions("next", list);
    EXPECT_EQ(list, (Captions{"kept", "next"}));
}

TEST(SubRipScript, CuesKeepTheirTextWithoutNumbersTimingsOrTags) {
    const std::string file =
        "\xEF\xBB\xBF"
        "1\r\n"
        "00:00:01,000 --> 00:00:02,500\r\n"
        "<i>Hello</i> &amp; <font color=\"#ff0000\">welcome</font>\r\n"
        "  {\\an8}second line  \r\n"
        "\r\n"
        "2\r\n"
        "00:00:03,000 --> 00:00:04,000 X1:10 X2:20\r\n"
        "Caf\xC3\xA9 \xE2\x80\x9Cquoted\xE2\x80\x9D \xE4\xB8\xAD &lt;b&gt; &#233;&#x41;&#0;\r\n"
        "\r\n\r\n"
        "3\r\n"
        "00:00:05,000 --> 00:00:06,000\r\n"
        "<b></b>\r\n"
        "\r\n"
        "4\r\n"
        "00:00:07,000 --> 00:00:08,000\r\n"
        "a < b, 3 > 2 --> fine\r\n";
    EXPECT_EQ(read(file), (Captions{"Hello & welcome\r\nsecond line",
                                    "Caf\xE9 \x93quoted\x94 ? <b> \xE9"
                                    "A?",
                                    "a < b, 3 > 2 --> fine"}));
}

TEST(SubRipScript, TextInTheCodePageItselfIsKept) {
    EXPECT_EQ(read("1\n00:00:01,000 --> 00:00:02,000\nCaf\xE9 &quot;ok&apos;\n"),
              (Captions{"Caf\xE9 \"ok'"}));
}

TEST(WebVttScript, HeaderNotesStylesIdentifiersAndCueSettingsAreDropped) {
    const std::string file =
        "WEBVTT - a title\n"
        "Kind: captions\n"
        "\n"
        "STYLE\n"
        "::cue { color: yellow }\n"
        "\n"
        "NOTE written by hand\n"
        "with a second line\n"
        "\n"
        "intro\n"
        "00:01.000 --> 00:02.000 line:0 position:20% align:start\n"
        "<v Roger>Hi there</v>&nbsp;<c.loud>you</c>\n"
        "<00:01.500>and <ruby>kan<rt>ji</rt></ruby>\n"
        "\n"
        "00:03.000 --> 00:04.000\n"
        "Two &gt; one";
    EXPECT_EQ(read(file), (Captions{"Hi there you\r\nand kanji", "Two > one"}));
}

TEST(ScriptFormat, IsToldByContentAlone) {
    EXPECT_EQ(detectFormat("WEBVTT\n\n00:01.000 --> 00:02.000\nA\n"), Format::WebVtt);
    EXPECT_EQ(detectFormat("\xEF\xBB\xBFWEBVTT\r\n"), Format::WebVtt);
    EXPECT_EQ(detectFormat("\r\n12\r\n00:00:01,000 --> 00:00:02,000\r\nA\r\n"), Format::SubRip);
    // Captions that merely start with a number, or a word that begins "WEBVTT".
    EXPECT_EQ(detectFormat("1\r\nFirst caption\r\n\r\n2\r\n"), Format::Tds);
    EXPECT_EQ(detectFormat("WEBVTTISH\n00:01.000 --> 00:02.000\n"), Format::Tds);
    EXPECT_EQ(read("1\r\nFirst caption\r\n"), (Captions{"1\r\nFirst caption"}));
}

TEST(BadScript, BrokenFilesLoadWhatCaptionTextTheyHold) {
    std::string binary;
    for (int i = 0; i < 4096; ++i) binary += static_cast<char>((i * 37) & 0xFF);
    EXPECT_FALSE(read(binary).empty());

    const std::string nul("A\0B\r\n\r\nC", 8);
    EXPECT_EQ(read(nul), (Captions{std::string("A\0B", 3), "C"}));

    const std::string longLine(10000, 'x');
    EXPECT_EQ(read(longLine + "\r\n\r\n" + longLine), (Captions{longLine, longLine}));
    EXPECT_EQ(read("1\n00:00:01,000 --> 00:00:02,000\n" + longLine), (Captions{longLine}));

    // Cut short anywhere: an open tag, a half entity, half a UTF-8 character.
    EXPECT_EQ(read("WEBVTT\n\n00:01.000 --> 00:02.000\n<i unclosed &amp"),
              (Captions{"<i unclosed &amp"}));
    EXPECT_EQ(read("WEBVTT\n\n00:01.000 --> 00:02.000\nend \xC3"), (Captions{"end \xC3"}));
    EXPECT_TRUE(read("WEBVTT\n\n00:01.000 --> 00:02.000").empty());
}

}  // namespace
}  // namespace zelvan::script
