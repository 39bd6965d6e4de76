// The section "General": defaults, text forms, the round trip, and the
// startup caption's split into lines.

#include <gtest/gtest.h>

#include "support/fakes.h"

namespace zelvan {
namespace {

struct SettingsTest : ::testing::Test {
    testing::Rig rig;
    Tavo& tavo = rig.tavo;
    void store(const char* key, const char* value) { rig.store.set("General", key, value); }
};

// The seven values, in the order of the section.
std::string values(const Tavo& t) {
    return std::to_string(t.BeepOnMessage) + " " + std::to_string(t.DoStartupBarker) + " |" +
           t.StartupBarker + "| " + std::to_string(t.Obfuscate) + " " +
           std::to_string(t.ObfuscateType) + " " + std::to_string(t.InputFilterType) + " " +
           std::to_string(t.ExitDisplayTask);
}

TEST_F(SettingsTest, MissingOrUnreadableTextKeepsTheDefaultAndNumericBooleansCount) {
    const std::string barker = kDefaultStartupBarker;
    tavo.loadSettings();
    EXPECT_EQ(values(tavo), "0 1 |" + barker + "| 0 0 1 1");
    store("BeepOnMessage", "7");
    store("DoStartupBarker", "0");
    store("Obfuscate", "maybe");
    store("InputFilterType", "2x");
    store("ExitDisplayTask", "40000");  // beyond 16 bits
    store("ObfuscateType", "-1");       // out of its table, but used as read
    tavo.loadSettings();
    EXPECT_EQ(values(tavo), "1 0 |" + barker + "| 0 -1 1 1");
}

TEST_F(SettingsTest, SaveWritesTextFormsThatComeBackAsTheyWere) {
    tavo.BeepOnMessage = true;
    tavo.DoStartupBarker = false;
    tavo.StartupBarker = "One<br>\x95 Two \x95";
    tavo.ObfuscateType = -2;
    tavo.InputFilterType = 3;
    tavo.ExitDisplayTask = 0;
    tavo.saveSettings();
    for (auto [key, text] : {std::pair{"BeepOnMessage", "True"},
                             {"DoStartupBarker", "False"},
                             {"ObfuscateType", "-2"}})
        EXPECT_EQ(rig.store.get("General", key, ""), text) << key;
    EXPECT_EQ(tavo.barkerLineCount, 2) << "saving splits the caption again at once";

    tavo.Obfuscate = true;
    tavo.saveSettings();
    Tavo fresh(rig.dispatch, rig.store, rig.tone);
    fresh.loadSettings();
    EXPECT_EQ(values(fresh), values(tavo));
}

// Pieces are trimmed, empty ones take no slot, the tag's case counts and the
// sign's three rows take the first three.
TEST_F(SettingsTest, StartupCaptionSplitsIntoAtMostThreeLines) {
    for (auto [caption, lines] : {std::pair{"   ", ""},
                                  {"  A  <br>  B  ", "A|B|"},
                                  {"<br>A<br><br>B<br>", "A|B|"},
                                  {"A<BR>B", "A<BR>B|"},
                                  {"A<br>B<br>C<br>D<br>E", "A|B|C|"}}) {
        tavo.StartupBarker = caption;
        tavo.splitStartupBarker();
        std::string got;
        for (int i = 0; i < tavo.barkerLineCount; ++i) got += tavo.barkerLines[i] + "|";
        EXPECT_EQ(got, lines) << caption;
    }
}

}  // namespace
}  // namespace zelvan
