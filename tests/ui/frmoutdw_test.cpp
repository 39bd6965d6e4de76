// The display window for real, its port on a pseudo-terminal whose master
// plays the sign: the startup caption and a caption arrive as frames, a closed
// port gives the notice, and the controls that need the widgets behave.

#include <gtest/gtest.h>
#include <QApplication>
#include <QCheckBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>

#include "display/frmoutdw.h"
#include "display/signmodel.h"
#include "platform/devicemap.h"
#include "support/displayfakes.h"
#include "support/pty.h"
#include "support/qtrig.h"

namespace zelvan {
namespace {

using testing::waitFor;

struct DisplayWindowTest : ::testing::Test, testing::QtRig {
    testing::RowsFilter filter;
    testing::PtyEnd sign;
    std::unique_ptr<frmOutDW> window;

    void SetUp() override {
        ASSERT_FALSE(sign.slave.empty());
        setDevicePath(store, 2, sign.slave);
        tavo.view = &shell.view;
        tavo.splitStartupBarker();
        tavo.bInTDS = true;
        tavo.frmInTDS = &filter;
        window = std::make_unique<frmOutDW>(tavo, shell);
    }
    template <typename T>
    T* child(const char* name) {
        T* w = window->findChild<T*>(QString::fromLatin1(name));
        EXPECT_NE(w, nullptr) << name;
        return w;
    }
    // Reads the line until the sign has taken `frames` frames.
    void readSign(SignModel& model, int frames) {
        EXPECT_TRUE(waitFor([&] {
            model.feed(sign.take());
            return model.frames >= frames;
        })) << model.dump();
    }
};

TEST_F(DisplayWindowTest, CaptionsReachTheSignAsFramesAndHideFormClosesTheLine) {
    window->showForm();
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(window->console().isPortOpen());
    EXPECT_TRUE(waitFor([&] { return child<QPushButton>("cmdPortOutOpen")->text() == "Close"; }));
    EXPECT_EQ(child<QCheckBox>("chkFilter")->text(), QStringLiteral("Stop Filter"));
    EXPECT_EQ(child<QPushButton>("cmdPortOutSetup")->text(),
              QString::fromStdString("2:9600,n,8,1"));

    SignModel model;
    readSign(model, 6);  // three cleared rows, three lines of the startup caption
    EXPECT_EQ(model.rowThroughReflector(2).substr(0, 29), "Please adjust your reflector.");

    filter.rows[15] = "HELLO \x95";
    window->doInput(kStyleRows, "");
    readSign(model, 6 + 1 + 3 + 1 + 1);  // dim, three cleared rows, the row, bright
    EXPECT_EQ(model.rowThroughReflector(1), "HELLO \x7F" + std::string(25, ' '));
    EXPECT_EQ(model.strayBytes + model.unknownFrames, 0) << model.dump();
    EXPECT_TRUE(waitFor([&] {
        return child<QPlainTextEdit>("tbPending")->toPlainText() == QStringLiteral("HELLO \u2022");
    }));

    // What hideForm does is the console's (its own tests); here it closes the line.
    window->hideForm();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(window->console().isPortOpen());
}

// A refresh asked for before the operator's edit must not bring older text back.
TEST_F(DisplayWindowTest, TheOperatorsEditOfThePendingBoxWins) {
    window->show();
    filter.rows[15] = "FROM THE CAPTION";
    window->doInput(kStyleRows, "");
    auto* box = child<QPlainTextEdit>("tbPending");
    box->setPlainText(QStringLiteral("typed by hand"));
    testing::settle(2 * DeferredRefresh::kIntervalMs);
    EXPECT_EQ(box->toPlainText(), QStringLiteral("typed by hand"));
    EXPECT_EQ(window->console().pendingText(), "typed by hand");
}

// The notice, its beep and the filter box's captions are the link's and the
// console's; here the buttons have to reach them.
TEST_F(DisplayWindowTest, ClosedPortGivesTheNoticeInTheWindow) {
    window->show();
    child<QPushButton>("cmdBright")->click();
    EXPECT_EQ(window->noticeText(), QStringLiteral("Open port first."));
    QCheckBox* filterBox = child<QCheckBox>("chkFilter");
    filterBox->click();
    EXPECT_FALSE(filterBox->isChecked());
    EXPECT_EQ(filterBox->text(), QStringLiteral("Start Filter"));
    EXPECT_TRUE(sign.take().empty());
}

}  // namespace
}  // namespace zelvan
