// The program's start and its orderly end, with the windows faked.

#include <gtest/gtest.h>

#include "support/fakes.h"

namespace zelvan {
namespace {

using testing::Log;
using testing::Rig;

struct StartupTest : ::testing::Test {
    Rig rig;
    Tavo& tavo = rig.tavo;
    void storedFilter(const char* type) { rig.store.set("General", "InputFilterType", type); }
};

TEST_F(StartupTest, FirstStartComesUpInOrderAndCapturesOnTheSerialDecoder) {
    rig.tavo.rawQueueIn = 9;
    rig.shell.onMake = [&](FilterKind kind, testing::FakeFilter& f) {
        if (kind == FilterKind::L21Serial)
            f.onShow = [&] { rig.log.push_back(tavo.bInL21Serial ? "flag up" : "flag down"); };
    };
    tavo.startup(rig.shell);
    EXPECT_EQ(rig.log, (Log{"busy", "splash", "idle", "mainWindow", "display.showForm",
                            "L21Serial.showForm", "flag up"}));
    EXPECT_EQ(rig.view().outDW, 1);
    EXPECT_EQ(rig.view().option, FilterKind::L21Serial);
    EXPECT_TRUE(tavo.bOutDW);
    EXPECT_EQ(tavo.rawQueueIn, 1);
    EXPECT_EQ(tavo.barkerLineCount, 3);
}

TEST_F(StartupTest, StoredBoardComesBackAsTheBoardFilter) {
    storedFilter("2");
    tavo.startup(rig.shell);
    EXPECT_EQ(rig.log.back(), "L21USB.showForm");
    EXPECT_TRUE(tavo.bInL21USB);
    EXPECT_EQ(rig.view().option, FilterKind::L21USB);
}

TEST_F(StartupTest, StoredAsciiSelectsNothingAndIsWrittenBackUnchanged) {
    storedFilter("3");
    tavo.startup(rig.shell);
    EXPECT_EQ(rig.log.back(), "display.showForm");
    EXPECT_EQ(tavo.selectedFilter(), nullptr);
    tavo.saveSettings();
    EXPECT_EQ(rig.store.get("General", "InputFilterType", ""), "3");
}

struct ExitCase {
    const char* task;
    const char* displayAction;  // what the display gets first, or "" for nothing
};

class ExitDisplayTask : public StartupTest, public ::testing::WithParamInterface<ExitCase> {};

TEST_P(ExitDisplayTask, ShutdownActsOnTheDisplayThenClosesEverythingAndSaves) {
    rig.store.set("General", "ExitDisplayTask", GetParam().task);
    storedFilter("2");
    tavo.startup(rig.shell);
    rig.log.clear();
    const long long yieldsBefore = rig.dispatch.yieldCount();
    tavo.exitProgram();

    Log want;
    if (*GetParam().displayAction) want.push_back(GetParam().displayAction);
    for (const char* step : {"busy", "display.hideForm", "L21USB.hideForm", "idle", "endProcess"})
        want.push_back(step);
    EXPECT_EQ(rig.log, want);
    EXPECT_EQ(rig.dispatch.yieldCount() - yieldsBefore, 10000);
    EXPECT_EQ(rig.view().status, "Closing input filter. Stand by...");
    EXPECT_EQ(rig.store.get("General", "ExitDisplayTask", ""), GetParam().task);
    EXPECT_TRUE(rig.store.has("General", "BeepOnMessage"));
}

INSTANTIATE_TEST_SUITE_P(Tasks, ExitDisplayTask,
                         ::testing::Values(ExitCase{"0", ""},
                                           ExitCase{"1", "display.showStartupBarker(true)"},
                                           ExitCase{"2", "display.DWErase"}, ExitCase{"5", ""}));

TEST_F(StartupTest, ASecondExitDuringTheYieldsRunsAgainInsideTheFirst) {
    storedFilter("3");
    tavo.startup(rig.shell);
    rig.dispatch.post([&] { tavo.exitProgram(); });
    tavo.exitProgram();
    EXPECT_EQ(rig.shell.ends, 2);  // the real shell ends the process at the first of these
    EXPECT_EQ(std::count(rig.log.begin(), rig.log.end(), "display.showStartupBarker(true)"), 2);
}

}  // namespace
}  // namespace zelvan
