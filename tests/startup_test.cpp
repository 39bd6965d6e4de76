// The program's start and its orderly end, with the windows faked.

#include <gtest/gtest.h>

#include "support/fakes.h"

namespace zelvan {
namespace {

using testing::Log;
using testing::Rig;

TEST(Startup, FirstStartComesUpInOrderAndCapturesOnTheSerialDecoder) {
    Rig rig;
    rig.tavo.rawQueueIn = 9;
    rig.shell.onMake = [&](FilterKind kind, testing::FakeFilter& f) {
        if (kind == FilterKind::L21Serial)
            f.onShow = [&] { rig.log.push_back(rig.tavo.bInL21Serial ? "flag up" : "flag down"); };
    };
    rig.tavo.startup(rig.shell);
    EXPECT_EQ(rig.log, (Log{"busy", "splash", "idle", "mainWindow", "display.showForm",
                            "L21Serial.showForm", "flag up"}));
    EXPECT_EQ(rig.view().outDW, 1);
    EXPECT_EQ(rig.view().option, FilterKind::L21Serial);
    EXPECT_EQ(rig.tavo.rawQueueIn, 1) << "the ring starts empty";
}

// The board comes back as the board filter; the ASCII input selects nothing
// and is written back as it was.
TEST(Startup, StoredFilterTypeSelectsItsFilter) {
    for (auto [type, lastStep] : {std::pair{"2", "L21USB.showForm"}, {"3", "display.showForm"}}) {
        Rig rig;
        rig.store.set("General", "InputFilterType", type);
        rig.tavo.startup(rig.shell);
        EXPECT_EQ(rig.log.back(), lastStep);
        EXPECT_EQ(rig.view().option, *type == '2' ? FilterKind::L21USB : FilterKind::TDS);
        rig.tavo.saveSettings();
        EXPECT_EQ(rig.store.get("General", "InputFilterType", ""), type);
    }
}

TEST(Startup, ShutdownActsOnTheDisplayThenClosesEverythingAndSaves) {
    for (auto [task, displayAction] :
         {std::pair{"0", ""}, {"1", "display.showStartupBarker(true)"}, {"2", "display.DWErase"}}) {
        Rig rig;
        rig.store.set("General", "ExitDisplayTask", task);
        rig.store.set("General", "InputFilterType", "2");
        rig.tavo.startup(rig.shell);
        rig.log.clear();
        rig.tavo.exitProgram();
        Log want;
        if (*displayAction) want.push_back(displayAction);
        for (const char* step :
             {"busy", "display.hideForm", "L21USB.hideForm", "idle", "endProcess"})
            want.push_back(step);
        EXPECT_EQ(rig.log, want) << task;
        EXPECT_EQ(rig.view().status, "Closing input filter. Stand by...");
        EXPECT_TRUE(rig.store.has("General", "BeepOnMessage"));
    }
}

TEST(Startup, ASecondExitDuringTheYieldsRunsAgainInsideTheFirst) {
    Rig rig;
    rig.store.set("General", "InputFilterType", "3");
    rig.tavo.startup(rig.shell);
    rig.dispatch.post([&] { rig.tavo.exitProgram(); });
    rig.tavo.exitProgram();
    EXPECT_EQ(rig.shell.ends, 2);  // the real shell ends the process at the first of these
    EXPECT_EQ(std::count(rig.log.begin(), rig.log.end(), "display.showStartupBarker(true)"), 2);
}

}  // namespace
}  // namespace zelvan
