// The section "General": defaults, text forms, the round trip, and the
// startup caption's split into lines.

#include <gtest/gtest.h>

#include "support/fakes.h"

namespace zelvan {
namespace {

using testing::Rig;

struct SettingsTest : ::testing::Test {
    Rig rig;
    Tavo& tavo = rig.tavo;
    void store(const char* key, const char* value) { rig.store.set("General", key, value); }
};

TEST_F(SettingsTest, AnEmptyStoreGivesEveryDefault) {
    tavo.loadSettings();
    EXPECT_FALSE(tavo.BeepOnMessage);
    EXPECT_TRUE(tavo.DoStartupBarker);
    EXPECT_EQ(tavo.StartupBarker, kDefaultStartupBarker);
    EXPECT_FALSE(tavo.Obfuscate);
    EXPECT_EQ(tavo.ObfuscateType, 0);
    EXPECT_EQ(tavo.InputFilterType, 1);
    EXPECT_EQ(tavo.ExitDisplayTask, 1);
    EXPECT_EQ(tavo.barkerLineCount, 3);
    EXPECT_EQ(tavo.barkerLines[1], "Please adjust your reflector.");
}

TEST_F(SettingsTest, SaveWritesAllSevenKeysInTheirTextForms) {
    tavo.BeepOnMessage = true;
    tavo.ObfuscateType = -2;
    tavo.saveSettings();
    EXPECT_EQ(rig.store.writes(), 7);
    EXPECT_EQ(rig.store.get("General", "BeepOnMessage", ""), "True");
    EXPECT_EQ(rig.store.get("General", "DoStartupBarker", ""), "True");
    EXPECT_EQ(rig.store.get("General", "Obfuscate", ""), "False");
    EXPECT_EQ(rig.store.get("General", "ObfuscateType", ""), "-2");
    EXPECT_EQ(rig.store.get("General", "InputFilterType", ""), "1");
    EXPECT_EQ(rig.store.get("General", "ExitDisplayTask", ""), "1");
}

TEST_F(SettingsTest, ValuesComeBackAsTheyWereSaved) {
    tavo.BeepOnMessage = true;
    tavo.DoStartupBarker = false;
    tavo.StartupBarker = "One<br>\x95 Two \x95";
    tavo.Obfuscate = true;
    tavo.ObfuscateType = 1;
    tavo.InputFilterType = 3;
    tavo.ExitDisplayTask = 0;
    tavo.saveSettings();

    Tavo fresh(rig.dispatch, rig.store, rig.tone);
    fresh.loadSettings();
    EXPECT_TRUE(fresh.BeepOnMessage);
    EXPECT_FALSE(fresh.DoStartupBarker);
    EXPECT_EQ(fresh.StartupBarker, "One<br>\x95 Two \x95");
    EXPECT_TRUE(fresh.Obfuscate);
    EXPECT_EQ(fresh.ObfuscateType, 1);
    EXPECT_EQ(fresh.InputFilterType, 3);
    EXPECT_EQ(fresh.ExitDisplayTask, 0);
}

TEST_F(SettingsTest, NumericBooleansCountAndUnreadableTextKeepsTheDefault) {
    store("BeepOnMessage", "7");
    store("DoStartupBarker", "0");
    store("Obfuscate", "maybe");
    store("InputFilterType", "2x");
    store("ExitDisplayTask", "40000");  // beyond 16 bits
    store("ObfuscateType", "-1");
    tavo.loadSettings();
    EXPECT_TRUE(tavo.BeepOnMessage);
    EXPECT_FALSE(tavo.DoStartupBarker);
    EXPECT_FALSE(tavo.Obfuscate);
    EXPECT_EQ(tavo.InputFilterType, 1);
    EXPECT_EQ(tavo.ExitDisplayTask, 1);
    EXPECT_EQ(tavo.ObfuscateType, -1);  // out of its table, but used as read
}

struct SplitCase {
    const char* caption;
    std::vector<std::string> lines;
};

class StartupBarkerSplit : public SettingsTest, public ::testing::WithParamInterface<SplitCase> {};

TEST_P(StartupBarkerSplit, PiecesAreTrimmedAndEmptyOnesTakeNoSlot) {
    tavo.StartupBarker = GetParam().caption;
    tavo.splitStartupBarker();
    const auto& want = GetParam().lines;
    ASSERT_EQ(tavo.barkerLineCount, static_cast<std::int16_t>(want.size()));
    for (std::size_t i = 0; i < want.size(); ++i) EXPECT_EQ(tavo.barkerLines[i], want[i]);
}

INSTANTIATE_TEST_SUITE_P(Captions, StartupBarkerSplit,
                         ::testing::Values(SplitCase{"", {}}, SplitCase{"   ", {}},
                                           SplitCase{"One line", {"One line"}},
                                           SplitCase{"  A  <br>  B  ", {"A", "B"}},
                                           SplitCase{"A<br><br>B", {"A", "B"}},
                                           SplitCase{"A<br>", {"A"}}, SplitCase{"<br>A", {"A"}},
                                           SplitCase{"A<BR>B", {"A<BR>B"}},
                                           SplitCase{"A<br>B<br>C<br>D<br>E", {"A", "B", "C"}}));

TEST_F(SettingsTest, SavingReSplitsTheCaptionAtOnce) {
    tavo.StartupBarker = "New<br>Caption";
    tavo.saveSettings();
    EXPECT_EQ(tavo.barkerLineCount, 2);
    EXPECT_EQ(tavo.barkerLines[0], "New");
}

}  // namespace
}  // namespace zelvan
