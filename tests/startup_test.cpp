// Start-up and shutdown with the windows faked, and the settings section "General".

#include <gtest/gtest.h>

#include "support/fakes.h"

namespace zelvan {
namespace {

using testing::Rig;

// The seven values, in the order of the section.
std::string values(const Tavo& t) {
    return std::to_string(t.BeepOnMessage) + " " + std::to_string(t.DoStartupBarker) + " |" +
           t.StartupBarker + "| " + std::to_string(t.Obfuscate) + " " +
           std::to_string(t.ObfuscateType) + " " + std::to_string(t.InputFilterType) + " " +
           std::to_string(t.ExitDisplayTask);
}

// Unreadable text keeps the default, booleans count by value too; saved values come back.
TEST(Settings, UnreadableTextKeepsTheDefaultAndSavedValuesComeBack) {
    Rig rig;
    Tavo& tavo = rig.tavo;
    const std::string barker = kDefaultStartupBarker;
    tavo.loadSettings();
    EXPECT_EQ(values(tavo), "0 1 |" + barker + "| 0 0 1 1");
    // A task beyond 16 bits; a type out of its table, but used as read.
    const std::pair<const char*, const char*> stored[] = {
        {"BeepOnMessage", "tRuE"}, {"DoStartupBarker", "0.0"},   {"Obfuscate", "1 maybe"},
        {"InputFilterType", "2x"}, {"ExitDisplayTask", "40000"}, {"ObfuscateType", "-1"}};
    for (auto [key, text] : stored) rig.store.set("General", key, text);
    tavo.loadSettings();
    EXPECT_EQ(values(tavo), "1 0 |" + barker + "| 0 -1 1 1");
    rig.store.set("General", "Obfuscate", "2.5");
    tavo.loadSettings();
    EXPECT_TRUE(tavo.Obfuscate) << "numeric text counts by its value";

    tavo.Obfuscate = true;
    tavo.StartupBarker = "One<br>\x95 Two \x95";
    tavo.InputFilterType = 3;
    tavo.ExitDisplayTask = 0;
    tavo.saveSettings();
    EXPECT_EQ(tavo.barkerLineCount, 2) << "saving splits the caption again at once";
    Tavo fresh(rig.dispatch, rig.store, rig.tone);
    fresh.loadSettings();
    EXPECT_EQ(values(fresh), values(tavo));

    // Pieces are trimmed, empty ones dropped, and the sign's three rows take the first three.
    for (auto [caption, lines] : {std::pair{"   ", ""},
                                  {"  A  <br>  B  ", "A|B|"},
                                  {"<br>A<br><br>B<br>", "A|B|"},
                                  {"A<BR>B", "A<BR>B|"},
                                  {"A<br>B<br>C<br>D<br>E", "A|B|C|"}}) {
        rig.tavo.StartupBarker = caption;
        rig.tavo.splitStartupBarker();
        std::string got;
        for (int i = 0; i < rig.tavo.barkerLineCount; ++i) got += rig.tavo.barkerLines[i] + "|";
        EXPECT_EQ(got, lines) << caption;
    }
}

// A first start captures on the serial decoder, later ones on the stored
// filter; at the end the display does its task, then all closes and saves.
TEST(Startup, StartsWithTheStoredFilterAndEndsActingOnTheDisplayThenClosing) {
    using K = FilterKind;
    for (auto [type, task, displayAction, filter, kind] :
         {std::tuple{"", "", "display.showStartupBarker(true)", "L21Serial", K::L21Serial},
          {"2", "0", "", "L21USB", K::L21USB},
          {"6", "0", "", "L21Video", K::L21Video},
          {"3", "2", "display.DWErase", "", K::TDS}}) {
        Rig rig;
        if (*type) rig.store.set("General", "InputFilterType", type);
        if (*task) rig.store.set("General", "ExitDisplayTask", task);
        rig.tavo.rawQueueIn = 9;
        rig.tavo.startup(rig.shell);
        testing::Log want{"busy", "splash", "idle", "mainWindow", "display.showForm"};
        if (*filter) want.push_back(std::string(filter) + ".showForm");
        EXPECT_EQ(rig.log, want) << type;
        EXPECT_EQ(rig.view().option, kind);
        EXPECT_EQ(rig.view().outDW, 1);
        EXPECT_EQ(rig.tavo.rawQueueIn, 1) << "the ring starts empty";

        rig.log.clear();
        rig.tavo.exitProgram();
        want = {"busy", "display.hideForm", "idle", "endProcess"};
        if (*filter) want.insert(want.begin() + 2, std::string(filter) + ".hideForm");
        if (*displayAction) want.insert(want.begin(), displayAction);
        EXPECT_EQ(rig.log, want) << type;
        EXPECT_EQ(rig.view().status, "Closing input filter. Stand by...");
        EXPECT_EQ(rig.store.get("General", "InputFilterType", ""), *type ? type : "1");
        EXPECT_TRUE(rig.store.has("General", "BeepOnMessage"));
    }
}

}  // namespace
}  // namespace zelvan
