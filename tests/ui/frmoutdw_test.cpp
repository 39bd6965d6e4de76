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
    EXPECT_EQ(child<QPlainTextEdit>("tbPending")->toPlainText(), QStringLiteral("HELLO \u2022"));

    // What hideForm does is the console's (its own tests); here it closes the line.
    window->hideForm();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(window->console().isPortOpen());
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

TEST_F(DisplayWindowTest, WindowStandsFixedRefusesToCloseAndAsksForHelpOnF1) {
    window->show();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Halvane Display"));
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
    auto* pending = child<QPlainTextEdit>("tbPending");
    EXPECT_EQ(pending->toPlainText(), QStringLiteral("12345678901234567890123456789012"));
    const QFontMetrics metrics(pending->font());
    EXPECT_EQ(metrics.horizontalAdvance(QLatin1Char('i')),
              metrics.horizontalAdvance(QLatin1Char('M')));
    EXPECT_EQ(child<QPushButton>("cmdLuckyCharm")->text(), QStringLiteral("\u00FB"));
    EXPECT_EQ(child<QLineEdit>("tbScrollLines")->text(), QStringLiteral("3"));

    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());

    // F1 is the window's, ahead of whichever control has the focus.
    auto* f1 = window->findChild<QShortcut*>();
    ASSERT_NE(f1, nullptr);
    EXPECT_EQ(f1->key(), QKeySequence(Qt::Key_F1));
    EXPECT_EQ(f1->context(), Qt::WindowShortcut);
    emit f1->activated();
    EXPECT_EQ(std::count(log.begin(), log.end(), "help"), 1);
}

// The box counts a line break as one character, the pending text as CR LF.
TEST_F(DisplayWindowTest, LuckyCharmReplacesTheSelectionAcrossLineBreaks) {
    window->show();
    auto* pending = child<QPlainTextEdit>("tbPending");
    pending->setPlainText(QStringLiteral("AB\nCD"));
    QTextCursor cursor = pending->textCursor();
    cursor.setPosition(3);
    cursor.setPosition(4, QTextCursor::KeepAnchor);  // the "C"
    pending->setTextCursor(cursor);
    child<QPushButton>("cmdLuckyCharm")->click();
    EXPECT_EQ(pending->toPlainText(), QStringLiteral("AB\n\u00FBD"));
    EXPECT_EQ(window->console().pendingText(),
              "AB\r\n\xFB"
              "D");
    EXPECT_EQ(pending->textCursor().position(), 4);
}

// The range itself is the console's; the box has to hand each key to it.
TEST_F(DisplayWindowTest, TypingInTheLinesBoxIsPulledBackIntoRange) {
    window->show();
    auto* lines = child<QLineEdit>("tbScrollLines");
    lines->selectAll();
    QKeyEvent zero(QEvent::KeyPress, Qt::Key_0, Qt::NoModifier, QStringLiteral("0"));
    QApplication::sendEvent(lines, &zero);
    EXPECT_EQ(lines->text(), QStringLiteral("1"));
    EXPECT_EQ(window->console().engine().iLines, 1);
}

}  // namespace
}  // namespace zelvan
