// The preferences: the controls, the two choices that act at once, Apply.

#include <gtest/gtest.h>

#include "support/fakes.h"
#include "support/tavoprefs.h"

namespace zelvan {
namespace {

struct Prefs : ::testing::Test, testing::Rig {
    PrefsForm form{tavo};
    std::string stored(const char* key) { return store.get("General", key, "<none>"); }
};

// A box set to a value runs its click only when the value changes.
TEST_F(Prefs, TheBoxesShowTheirControlsOnlyOnceTheirTickChanges) {
    tavo.DoStartupBarker = false;
    form.formLoad();
    EXPECT_TRUE(form.c.tbStartupBarkerEnabled) << "an unticked box fires nothing at load";
    form.setStartupBarkerBox(1);
    form.setStartupBarkerBox(0);
    EXPECT_FALSE(form.c.tbStartupBarkerEnabled);
    EXPECT_FALSE(form.c.lbObfuscateTypeVisible);
    form.setObfuscateBox(1);
    EXPECT_TRUE(form.c.lbObfuscateTypeVisible);
    EXPECT_EQ(form.c.lbObfuscateTypeIndex, 0);
    form.setObfuscateBox(0);
    EXPECT_FALSE(form.c.lbObfuscateTypeVisible);
    EXPECT_EQ(tavo.ObfuscateType, 0);
}

TEST_F(Prefs, ClearThenCancelWritesNothingYetShutdownSavesClear) {
    form.formLoad();
    form.setCaptionText("Not kept");
    form.rbExitDisp_Click(2);
    // Cancel: the window goes, applyPrefs doesn't run.
    EXPECT_EQ(store.writes(), 0);
    EXPECT_EQ(tavo.ExitDisplayTask, 2);
    EXPECT_EQ(tavo.StartupBarker, kDefaultStartupBarker);
    tavo.saveSettings();  // as shutdown does
    EXPECT_EQ(stored("ExitDisplayTask"), "2");
}

// A stored type the list has not got stays through Apply.
TEST_F(Prefs, ApplyWritesEveryKeyEachTimeAndAnEmptyCaptionHasNoLines) {
    tavo.ExitDisplayTask = 7;  // no option button stands for it
    tavo.Obfuscate = true;
    tavo.ObfuscateType = 5;
    form.formLoad();
    EXPECT_EQ(form.c.lbObfuscateTypeIndex, -1);
    form.setBeepBox(1);
    form.setCaptionText("One<br>Two");
    form.applyPrefs();
    const int once = store.writes();
    EXPECT_EQ(stored("BeepOnMessage"), "True");
    EXPECT_EQ(stored("ExitDisplayTask"), "0");
    EXPECT_EQ(stored("ObfuscateType"), "5");
    form.applyPrefs();
    EXPECT_EQ(store.writes(), 2 * once);
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
