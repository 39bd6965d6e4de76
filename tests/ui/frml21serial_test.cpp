// The line-21 decoder window as built, on a pseudo-terminal for the decoder
// box: a caption written into the line lands in the caption memory and on
// screen, and the rulers sit on the panes' character grid.

#include <gtest/gtest.h>
#include <QApplication>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTimer>

#include "line21/frml21serial.h"
#include "platform/devicemap.h"
#include "platform/qtext.h"
#include "support/l21fakes.h"
#include "support/pty.h"
#include "support/qtrig.h"

namespace zelvan {
namespace {

void closeMessageBoxes() {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* box = qobject_cast<QMessageBox*>(w)) box->close();
}

struct FrmL21SerialTest : ::testing::Test, testing::QtRig {
    InL21 memory;
    testing::PtyEnd pty;
    std::unique_ptr<frmL21Serial> window;

    void SetUp() override {
        ASSERT_FALSE(pty.slave.empty());
        setDevicePath(store, 1, pty.slave);
        // A pty takes neither seven data bits nor parity.
        store.set("L21Port", "parity", "0");
        store.set("L21Port", "databits", "8");
        window = std::make_unique<frmL21Serial>(tavo, memory, shell);
        tavo.frmL21Serial = window.get();
        tavo.bInL21Serial = true;
    }
    void TearDown() override { closeMessageBoxes(); }

    // Runs showForm, which captures until `step` (called every 10 ms inside
    // the loop) returns true or 3 seconds pass; then the port is closed.
    void captureUntil(const std::function<bool()>& step) {
        QElapsedTimer clock;
        clock.start();
        QTimer tick;
        QObject::connect(&tick, &QTimer::timeout, [&] {
            if (tavo.captureDepth == 0) return;
            if (step() || clock.elapsed() > 3000) {
                tick.stop();
                if (window->input().link().isPortOpen()) window->input().cmdPortOpen_Click();
                tavo.bStopCapture = true;
            }
        });
        tick.start(10);
        window->showForm();
    }
    // A bank as its pane holds it: lines end in LF there.
    QString shown(std::int16_t bank) const {
        return toQString(memory.memoryText(bank))
            .replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    }
    bool panesFollowMemory() const {
        return window->rtbDM->toPlainText() == shown(memory.iDM) &&
               window->rtbNM->toPlainText() == shown(memory.iNM);
    }
    static QPoint charAt(QPlainTextEdit* edit, int line, int column, QWidget* in) {
        QTextCursor c(edit->document()->findBlockByNumber(line));
        c.setPosition(c.block().position() + column);
        return edit->viewport()->mapTo(in, edit->cursorRect(c).topLeft());
    }
};

TEST_F(FrmL21SerialTest, PopOnCaptionFromTheLineLandsInMemoryAndOnScreen) {
    QString captionWhileOpen;
    bool sent = false;
    captureUntil([&] {
        captionWhileOpen = window->cmdPortOpen->text();
        if (!sent) sent = pty.send(testing::popOnCaption("Hi"));
        return memory.getExternalTextL21(15) == "Hi";
    });
    EXPECT_EQ(memory.getExternalTextL21(15), "Hi");
    EXPECT_EQ(captionWhileOpen, QStringLiteral("Close"));
    // The panes take new text a moment after the decoder offers it.
    EXPECT_TRUE(testing::waitFor([&] { return panesFollowMemory(); }));
    EXPECT_EQ(window->rtbDM->toPlainText().split(u'\n').at(14),
              QStringLiteral("Hi") + QString(30, u' '));
    QApplication::processEvents();
    EXPECT_EQ(window->cmdPortOpen->text(), QStringLiteral("Open"));
}

// Character n of the column ruler stands over column n of the pane, and row n
// of the row ruler beside row n; a full pane needs no scrolling.
TEST_F(FrmL21SerialTest, RulersSitOnThePanesGridAndNothingIsClipped) {
    window->input().cmdFillDM_Click();
    window->input().cmdShowDM_Click();
    window->show();
    auto* columns = window->findChild<QPlainTextEdit*>(QStringLiteral("rtbDMColumns"));
    auto* rows = window->findChild<QPlainTextEdit*>(QStringLiteral("rtbDMRows"));
    ASSERT_TRUE(columns && rows);
    QPlainTextEdit* pane = window->rtbDM;
    const auto onTheGrid = [&] {
        bool on = pane->toPlainText() == shown(memory.iDM);
        for (int i : {0, 9, 14, 31}) {
            on = on &&
                 charAt(columns, 1, i, window.get()).x() == charAt(pane, 0, i, window.get()).x();
            if (i < 15)
                on = on &&
                     charAt(rows, i, 0, window.get()).y() == charAt(pane, i, 0, window.get()).y();
        }
        return on;
    };
    EXPECT_TRUE(testing::waitFor(onTheGrid)) << "once laid out";
    EXPECT_EQ(columns->toPlainText().split(u'\n').at(1),
              QStringLiteral("12345678901234567890123456789012"));
    EXPECT_EQ(rows->toPlainText().split(u'\n').last(), QStringLiteral("15"));
    EXPECT_EQ(pane->horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(pane->verticalScrollBar()->maximum(), 0);
    const QRect paneBox(pane->mapTo(window.get(), QPoint(0, 0)), pane->size());
    EXPECT_TRUE(window->rect().contains(paneBox));
}

}  // namespace
}  // namespace zelvan
