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

// The seven values, in the order of the section.
std::string values(const Tavo& t) {
    return std::to_string(t.BeepOnMessage) + " " + std::to_string(t.DoStartupBarker) + " |" +
           t.StartupBarker + "| " + std::to_string(t.Obfuscate) + " " +
           std::to_string(t.ObfuscateType) + " " + std::to_string(t.InputFilterType) + " " +
           std::to_string(t.ExitDisplayTask);
}

TEST_F(SettingsTest, AnEmptyStoreGivesEveryDefault) {
    tavo.loadSettings();
    EXPECT_EQ(values(tavo), "0 1 |" + std::string(kDefaultStartupBarker) + "| 0 0 1 1");
    EXPECT_EQ(tavo.barkerLineCount, 3);
    EXPECT_EQ(tavo.barkerLines[1], "Please adjust your reflector.");
}

TEST_F(SettingsTest, SaveWritesSevenKeysInTextFormsThatComeBackAsTheyWere) {
    tavo.BeepOnMessage = true;
    tavo.DoStartupBarker = false;
    tavo.StartupBarker = "One<br>\x95 Two \x95";
    tavo.ObfuscateType = -2;
    tavo.InputFilterType = 3;
    tavo.ExitDisplayTask = 0;
    tavo.saveSettings();
    EXPECT_EQ(rig.store.writes(), 7);
    for (auto [key, text] : {std::pair{"BeepOnMessage", "True"},
                             {"DoStartupBarker", "False"},
                             {"Obfuscate", "False"},
                             {"ObfuscateType", "-2"},
                             {"InputFilterType", "3"},
                             {"ExitDisplayTask", "0"}})
        EXPECT_EQ(rig.store.get("General", key, ""), text) << key;
    EXPECT_EQ(tavo.barkerLineCount, 2) << "saving splits the caption again at once";

    tavo.Obfuscate = true;
    tavo.saveSettings();
    Tavo fresh(rig.dispatch, rig.store, rig.tone);
    fresh.loadSettings();
    EXPECT_EQ(values(fresh), values(tavo));
}

TEST_F(SettingsTest, NumericBooleansCountAndUnreadableTextKeepsTheDefault) {
    store("BeepOnMessage", "7");
    store("DoStartupBarker", "0");
    store("Obfuscate", "maybe");
    store("InputFilterType", "2x");
    store("ExitDisplayTask", "40000");  // beyond 16 bits
    store("ObfuscateType", "-1");       // out of its table, but used as read
    tavo.loadSettings();
    EXPECT_EQ(values(tavo), "1 0 |" + std::string(kDefaultStartupBarker) + "| 0 -1 1 1");
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

}  // namespace
}  // namespace zelvan
