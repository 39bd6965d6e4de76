// The support windows' logic: the reference's rich text reader, the preferences.

#include <gtest/gtest.h>

#include "support/ansireference.h"
#include "support/fakes.h"
#include "support/rtfreader.h"
#include "support/tavoprefs.h"

namespace zelvan {
namespace {

std::string text(std::string_view rtf) {
    return rtf::toPlainText(rtf::parse(rtf));
}

TEST(RtfReader, OurReferenceReadsAsTablesOfFramesCodesAndCharacters) {
    const std::string plain = text(ansiReferenceRtf());
    // A sign frame: the readable notation (û is U+00FB) and the bytes.
    EXPECT_NE(plain.find("Bright | \u00FB01\u00FB20\u00FB7F \u00FB01 | 01 20 7F 20 01"),
              std::string::npos)
        << plain;
    EXPECT_NE(plain.find("EOC | 14 2F | 1C 2F |"), std::string::npos);
    EXPECT_NE(plain.find("11 37 | \u2022"), std::string::npos);  // the music note stand-in
    // Row 8x of the code page starts with the euro sign; 81 has no character.
    EXPECT_NE(plain.find("8x | \u20AC |  | \u201A"), std::string::npos);
}

TEST(RtfReader, DecodesEscapedAndUnicodeCharactersAndSkipsDestinations) {
    EXPECT_EQ(text(R"({\rtf1 caf\'e9 \'80 \u8364? \uc2\u-3913 xxy\tab z\par})"),
              "caf\u00E9 \u20AC \u20AC \uF0B7y\tz\n");
    EXPECT_EQ(text(R"({\rtf1 a\{b\}c\\d\~e\'C9\'Af\par})"), "a{b}c\\d\u00A0e\u00C9\u00AF\n");
    // Surrogates and what lies beyond 16 bits are no characters; unknown words
    // of any case are dropped; an escape takes two hex digits.
    EXPECT_EQ(text(R"({\rtf1\u55295?\u55296?\u57343?\u57344?\u65536?\u-1?\u128?\'9Fa\_\AZaz b})"),
              "\uD7FF\uFFFD\uFFFD\uE000\uFFFD\uFFFF\u0080\u0178a\u2011b\n");
    // Destinations hold no text.
    EXPECT_EQ(text(R"({\rtf1{\fonttbl{\f0 Arial;}}{\colortbl;\red1;}{\info{\title T}})"
                   R"({\*\generator G;}{\pict\bin4 {{{ }shown\par})"),
              "shown\n");
    // A destination is named only right behind its group's brace.
    EXPECT_EQ(text(R"({\rtf1{a}\info b\b\info c{d\info e}})"), "abcde\n");
    EXPECT_EQ(text(R"(\info f)"), "f\n") << "no group at all";
}

// Each run keeps its look (a group's end ends it); rows of cells are one table.
TEST(RtfReader, KeepsTheLookOfEachRunAndJoinsRowsOfCellsIntoOneTable) {
    const rtf::Document doc = rtf::parse(
        R"({\rtf1 plain \b bold\b0{\i\fs40 big{\ul x}}\ul under\ulnone{\fs999\fs huge})"
        R"({\b\i\ul\fs40\plain p}\par)"
        R"(\trowd\cellx1\intbl a\cell b<\cell\row\trowd\intbl c\cell\row\pard after\par})");
    EXPECT_EQ(rtf::toPlainText(doc), "plain boldbigxunderhugep\na | b<\nc\nafter\n");
    const std::string html = rtf::toHtml(doc);
    EXPECT_EQ(html.rfind("<html><body><p>", 0), 0u) << html;
    for (const char* run : {"12pt\"><b>bold<", "20pt\"><i>big<", "20pt\"><i><u>x<",
                            "12pt\"><u>under<", "12pt\">hugep<", "b&lt;"})
        EXPECT_NE(html.find(run), std::string::npos) << run << "\n" << html;
    EXPECT_EQ(html.find("<table", html.find("<table") + 1), std::string::npos);
}

TEST(RtfReader, BrokenFilesGiveWhatCouldBeRead) {
    EXPECT_EQ(text(""), "");
    EXPECT_EQ(text("not rich text at all"), "not rich text at all\n");
    EXPECT_EQ(text(R"({\rtf1 kept\par}}}} more)"), "kept\n more\n");
    EXPECT_EQ(text(R"({\rtf1\intbl cut)"), "cut\n");
    EXPECT_EQ(text(std::string_view("a\\'", 2)), "a\n") << "nothing read past the end";
    EXPECT_EQ(text(std::string_view("x\\'4F", 4)), "x\x04\n");
    EXPECT_EQ(text(R"({\rtf1 cut \'4)"), "cut \x04\n");
    EXPECT_EQ(text(R"({\rtf1 x\bin99999999)"), "x\n");
    EXPECT_EQ(text(R"({\rtf1 a\bin-5 b\bin c})"), "abc\n") << "no count, nothing skipped";
    EXPECT_EQ(text(R"({\rtf1 \u00000000065 x})"), "\x06\n") << "digits past the tenth";
    EXPECT_EQ(text(std::string(100000, '{') + "deep"), "deep\n");
    // Beyond 512 levels a group's destination outlasts its end.
    const std::string hidden = R"({\*\x hidden}shown)";
    EXPECT_EQ(text(std::string(511, '{') + hidden) + text(std::string(512, '{') + hidden),
              "shown\n");
    EXPECT_EQ(text(std::string("a\0b\xff", 4)), std::string("a\0b\u00FF", 5) + "\n");
}

struct Prefs : ::testing::Test, testing::Rig {
    PrefsForm form{tavo};
    std::string stored(const char* key) { return store.get("General", key, "<none>"); }
};

// A box set to a value runs its click only when the value changes; an exit
// task chosen, then Cancel, writes nothing, yet shutdown saves the task.
TEST_F(Prefs, BoxesActOnChangeCancelWritesNothingAndApplyWritesEveryKey) {
    tavo.DoStartupBarker = false;
    tavo.ExitDisplayTask = 2;
    form.formLoad();
    EXPECT_EQ(form.c.exitOption, 2);
    EXPECT_EQ(form.c.lbObfuscateTypeIndex, 0) << "the hidden list holds the stored type";
    EXPECT_TRUE(form.c.tbStartupBarkerEnabled) << "an unticked box fires nothing at load";
    form.setStartupBarkerBox(1);
    form.setStartupBarkerBox(0);
    EXPECT_FALSE(form.c.tbStartupBarkerEnabled || form.c.lbObfuscateTypeVisible);
    form.setObfuscateBox(1);
    EXPECT_TRUE(form.c.lbObfuscateTypeVisible);
    EXPECT_EQ(form.c.lbObfuscateTypeIndex, 0);
    form.setObfuscateBox(0);
    EXPECT_FALSE(form.c.lbObfuscateTypeVisible);
    EXPECT_EQ(tavo.ObfuscateType, 0);
    // Startup caption, then Cancel: the window goes, applyPrefs doesn't run.
    form.setCaptionText("Not kept");
    form.rbExitDisp_Click(1);
    EXPECT_EQ(store.writes(), 0);
    EXPECT_EQ(tavo.ExitDisplayTask, 1);
    EXPECT_EQ(tavo.StartupBarker, kDefaultStartupBarker);
    tavo.saveSettings();  // as shutdown does
    EXPECT_EQ(stored("ExitDisplayTask"), "1");

    // What the window loaded goes back on Apply, but a stored type the list has
    // not got stays through Apply, and an exit task no button stands for doesn't.
    const int before = store.writes();
    tavo.ExitDisplayTask = 3;
    tavo.BeepOnMessage = tavo.DoStartupBarker = tavo.Obfuscate = true;
    tavo.ObfuscateType = 5;
    tavo.StartupBarker = "One<br>Two";
    form.formLoad();
    EXPECT_EQ(form.c.lbObfuscateTypeIndex, -1);
    form.applyPrefs();
    const int once = store.writes() - before;
    for (const char* key : {"BeepOnMessage", "DoStartupBarker", "Obfuscate"})
        EXPECT_EQ(stored(key), "True") << key;
    EXPECT_EQ(stored("ExitDisplayTask"), "0");
    EXPECT_EQ(stored("ObfuscateType"), "5");
    form.applyPrefs();
    EXPECT_EQ(store.writes() - before, 2 * once);
    EXPECT_EQ(stored("StartupBarker"), "One<br>Two");
    EXPECT_EQ(tavo.barkerLineCount, 2);
    EXPECT_EQ(tavo.barkerLines[1], "Two");
    form.setCaptionText("");
    form.applyPrefs();
    EXPECT_EQ(tavo.barkerLineCount, 0);
    EXPECT_EQ(stored("StartupBarker"), "");
    form.lbObfuscateType_Click(0);
    EXPECT_EQ(tavo.ObfuscateType, 0) << "a click on the list acts at once";
}

}  // namespace
}  // namespace zelvan
