// The line-21 decoder window as built: the rulers sit on the panes' character
// grid. (The program captures from the decoder box in endtoend_test.)

#include <gtest/gtest.h>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>

#include "line21/frml21serial.h"
#include "platform/qtext.h"
#include "support/frmserialconfig.h"
#include "support/qtrig.h"

namespace zelvan {
namespace {

struct FrmL21SerialTest : ::testing::Test, testing::QtRig {
    InL21 memory;
    frmL21Serial window{tavo, memory, shell};

    static QPoint charAt(QPlainTextEdit* edit, int line, int column, QWidget* in) {
        QTextCursor c(edit->document()->findBlockByNumber(line));
        c.setPosition(c.block().position() + column);
        return edit->viewport()->mapTo(in, edit->cursorRect(c).topLeft());
    }
};

// Character n of the column ruler stands over column n of the pane, and row n
// of the row ruler beside row n; a full pane needs no scrolling.
TEST_F(FrmL21SerialTest, RulersSitOnThePanesGridAndNothingIsClipped) {
    window.input().cmdFillDM_Click();
    window.input().cmdShowDM_Click();
    window.show();
    auto* columns = window.findChild<QPlainTextEdit*>(QStringLiteral("rtbDMColumns"));
    auto* rows = window.findChild<QPlainTextEdit*>(QStringLiteral("rtbDMRows"));
    ASSERT_TRUE(columns && rows);
    QPlainTextEdit* pane = window.panes.rtbDM;
    const auto onTheGrid = [&] {
        // The bank as the pane holds it: lines end in LF there.
        bool on = pane->toPlainText() == toQString(memory.memoryText(memory.iDM))
                                             .replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        for (int i : {0, 9, 14, 31}) {
            on = on && charAt(columns, 1, i, &window).x() == charAt(pane, 0, i, &window).x();
            if (i < 15)
                on = on && charAt(rows, i, 0, &window).y() == charAt(pane, i, 0, &window).y();
        }
        return on;
    };
    EXPECT_TRUE(testing::waitFor(onTheGrid)) << "once laid out";
    EXPECT_EQ(columns->toPlainText().split(u'\n').at(1),
              QStringLiteral("12345678901234567890123456789012"));
    EXPECT_EQ(rows->toPlainText().split(u'\n').last(), QStringLiteral("15"));
    EXPECT_EQ(pane->horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(pane->verticalScrollBar()->maximum(), 0);
    const QRect paneBox(pane->mapTo(&window, QPoint(0, 0)), pane->size());
    EXPECT_TRUE(window.rect().contains(paneBox));
}

// The setup button opens the dialog modeless; its OK sets the link.
TEST_F(FrmL21SerialTest, SetupWindowsOkSetsTheLinkAndItsButton) {
    window.cmdPortSetup->click();
    frmSerialConfig* setup = window.setupWindow();
    ASSERT_TRUE(setup && setup->isVisible() && !setup->isModal());
    setup->cmbBaud->setCurrentText(QStringLiteral("2400"));
    setup->cmdOK->click();
    EXPECT_EQ(window.cmdPortSetup->text(), QStringLiteral("1:2400,n,8,1"));
}

}  // namespace
}  // namespace zelvan
