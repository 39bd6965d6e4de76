// The timecode board window as built, over the simulated board: the list
// names the board, showing the window starts capture once, F1 asks for help
// and the window can't be closed by hand.

#include <gtest/gtest.h>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QShortcut>
#include <QTimer>

#include "line21/frml21usb.h"
#include "platform/simulatedboard.h"
#include "support/qtrig.h"
#include "support/testdata.h"

namespace zelvan {
namespace {

struct FrmL21USBTest : ::testing::Test, testing::QtRig {
    InL21 memory;
    SimulatedBoardSettings settings;
    std::unique_ptr<SimulatedBoard> board;
    std::unique_ptr<frmL21USB> window;

    void make() {
        board = std::make_unique<SimulatedBoard>(settings, [this] { return dispatch.nowMs(); });
        window = std::make_unique<frmL21USB>(tavo, memory, *board, shell);
        tavo.frmL21USB = window.get();
    }
};

TEST_F(FrmL21USBTest, TheListNamesTheBoardOrSaysThereIsNone) {
    make();
    EXPECT_EQ(window->cboBrdLst->count(), 1);
    EXPECT_EQ(window->cboBrdLst->currentText(), QStringLiteral("No Board Currently Selected"));

    settings.recording = testing::samplePath("popon-short.scc");
    make();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Input: Line-21 USB"));
    EXPECT_EQ(window->cboBrdLst->count(), 2);
    EXPECT_EQ(window->cboBrdLst->currentText(), QStringLiteral("PCI-LTC/RDR (rev. A1 )  at  CC00"));
    EXPECT_TRUE(board->playing()) << "set up at load";
}

TEST_F(FrmL21USBTest, ShowingTheWindowStartsCaptureOnceAndHideFormEndsIt) {
    settings.recording = testing::samplePath("popon-short.scc");
    make();
    int depthSeen = 0;
    QTimer probe;
    QObject::connect(&probe, &QTimer::timeout, [&] {
        depthSeen = std::max(depthSeen, tavo.captureDepth);
        if (tavo.captureDepth > 0) window->hideForm();
    });
    probe.start(20);
    window->showForm();
    tavo.bInL21USB = true;
    ASSERT_TRUE(testing::waitFor([&] { return depthSeen > 0 && tavo.captureDepth == 0; }));
    EXPECT_FALSE(window->isVisible());
    window->input().Form_Activate();
    EXPECT_EQ(tavo.captureDepth, 0) << "a later activation starts nothing";
}

TEST_F(FrmL21USBTest, F1AsksForHelpAndACloseIsRefused) {
    make();
    for (QShortcut* key : window->findChildren<QShortcut*>())
        if (key->key() == QKeySequence(Qt::Key_F1)) emit key->activated();
    EXPECT_NE(std::find(log.begin(), log.end(), "help"), log.end());
    QCloseEvent close;
    QApplication::sendEvent(window.get(), &close);
    EXPECT_FALSE(close.isAccepted());
}

}  // namespace
}  // namespace zelvan
