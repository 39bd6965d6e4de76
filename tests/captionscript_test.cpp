// The caption script reader: TDS line classes, SubRip and WebVTT cues brought
// down to their text, the format told by content, and broken files loading
// what caption text they hold.

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

TEST(TdsScript, CaptionsAreTextRunsBetweenBlankLinesWithCommentsAndMarkersSkipped) {
    const std::string file =
        "\r\n  \r\n; comment first\r\n  First line  \r\nSecond; still text\r\n"
        "  ; comment inside\r\n_00:00:01:00 marker\r\n^marker\r\nThird\r\n\r\n   \r\n\r\n"
        "10:00:00:00 Caf\xE9 \x93quoted\x94\n\t\n\n"                    // LF ends, bytes kept
        "1234567890123456789012345678901234567890\rlast, no line end";  // lone CR
    EXPECT_EQ(read(file),
              (Captions{"First line\r\nSecond; still text\r\nThird",
                        "10:00:00:00 Caf\xE9 \x93quoted\x94\r\n\t",
                        "1234567890123456789012345678901234567890\r\nlast, no line end"}));
    Captions list{"kept"};
    for (const char* noText : {"", "\r\n\r\n", "; only\r\n_markers\r\n^here\r\n"})
        appendCaptions(noText, list);
    EXPECT_EQ(list, Captions{"kept"});
}

TEST(CueScript, SubRipCuesKeepTheirTextOnly) {
    const std::string file =
        "\xEF\xBB\xBF"
        "1\r\n00:00:01,000 --> 00:00:02,500\r\n"
        "<i>Hello</i> &amp; <font color=\"#ff0000\">welcome</font>\r\n  {\\an8}second \r\n\r\n"
        "2\r\n00:00:03,000 --> 00:00:04,000 X1:10\r\n"
        "Caf\xC3\xA9 \xE2\x80\x9Cq\xE2\x80\x9D \xE4\xB8\xAD &lt;b&gt; "
        "&#233;&#32;&#x41;&#160;&#8220;&#0;&#x1F600;&quot;&apos;\r\n"
        "\r\n\r\n3\r\n00:00:05,000 --> 00:00:06,000\r\n<b></b>\r\n\r\n"
        "4\r\n00:00:07,000 --> 00:00:08,000\r\na < b, 3 > 2 --> fine\r\n";
    EXPECT_EQ(read(file), (Captions{"Hello & welcome\r\nsecond",
                                    "Caf\xE9 \x93q\x94 ? <b> \xE9"
                                    " A\xA0\x93??\"'",
                                    "a < b, 3 > 2 --> fine"}));
    // Not UTF-8: a script written in the code page itself.
    EXPECT_EQ(read("1\n00:00:01,000 --> 00:00:02,000\n\xE9t\xE9 Caf\xE9\n"),
              Captions{"\xE9t\xE9 Caf\xE9"});
    EXPECT_EQ(read("1\n00:00:01,000 --> 00:00:02,000\n\xA9\xA9\xA9\xA9\n"),
              Captions{"\xA9\xA9\xA9\xA9"});
}

TEST(CueScript, WebVttDropsHeaderNotesStylesIdentifiersAndSettings) {
    const std::string file =
        "WEBVTT - a title\nKind: captions\n\nSTYLE\n::cue { color: yellow }\n\n"
        "NOTE by hand\nsecond line\n\nintro\n00:01.000 --> 00:02.000 line:0 align:start\n"
        "<v Roger>Hi there</v>&nbsp;<c.loud>you</c>\n<00:01.500>and <ruby>kan<rt>ji</rt></ruby>\n"
        "\n00:03.000 --> 00:04.000\nTwo &gt; one";
    EXPECT_EQ(read(file), (Captions{"Hi there you\r\nand kanji", "Two > one"}));
}

TEST(ScriptFormat, IsToldByContentAlone) {
    EXPECT_EQ(detectFormat("\xEF\xBB\xBFWEBVTT\r\n"), Format::WebVtt);
    EXPECT_EQ(detectFormat("\r\n19\r\n00:00:01,000 --> 00:00:02,000\r\nA\r\n"), Format::SubRip);
    EXPECT_EQ(detectFormat("WEBVTTISH\n00:01.000 --> 00:02.000\n"), Format::Tds);
    EXPECT_EQ(detectFormat("  \r\n7"), Format::Tds);
    EXPECT_EQ(read("1\r\nFirst caption\r\n"), (Captions{"1\r\nFirst caption"}));
}

TEST(BadScript, BrokenFilesLoadWhatCaptionTextTheyHold) {
    std::string binary;
    for (int i = 0; i < 4096; ++i) binary += static_cast<char>((i * 37) & 0xFF);
    EXPECT_FALSE(read(binary).empty());
    EXPECT_EQ(read(std::string("A\0B\r\n\r\nC", 8)), (Captions{std::string("A\0B", 3), "C"}));
    const std::string longLine(10000, 'x');
    EXPECT_EQ(read(longLine + "\r\n\r\n" + longLine), (Captions{longLine, longLine}));
    // Cut short anywhere: an open tag, a half entity, half a UTF-8 character, no text.
    const std::string cue = "WEBVTT\n\n00:01.000 --> 00:02.000";
    EXPECT_EQ(read(cue + "\n<i unclosed &amp"), (Captions{"<i unclosed &amp"}));
    EXPECT_EQ(read(cue + "\nend \xC3"), (Captions{"end \xC3"}));
    EXPECT_TRUE(read(cue).empty());
}

}  // namespace
}  // namespace zelvan::script
