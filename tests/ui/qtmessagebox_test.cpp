// The links' message boxes: the fixed text on top, the reason beneath, and the
// alert that doesn't hold up the program.

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include "platform/qtmessagebox.h"

namespace zelvan {
namespace {

QMessageBox* findBox() {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* box = qobject_cast<QMessageBox*>(w); box && box->isVisible()) return box;
    return nullptr;
}

TEST(MessageBoxes, ModalBoxShowsTextOverReasonUntilOk) {
    QString text, detail;
    QTimer::singleShot(0, [&] {
        QMessageBox* box = findBox();
        ASSERT_NE(box, nullptr);
        text = box->text();
        detail = box->informativeText();
        box->button(QMessageBox::Ok)->click();
    });
    // Should the box not be found, this ends it so the test fails instead of hanging.
    QTimer::singleShot(3000, [] {
        if (QWidget* modal = QApplication::activeModalWidget()) modal->close();
    });
    showMessageBox(nullptr, "Couldn't open port.", "/dev/ttyS0: Permission denied.");
    EXPECT_EQ(text, "Couldn't open port.");
    EXPECT_EQ(detail, "/dev/ttyS0: Permission denied.");
    EXPECT_EQ(findBox(), nullptr);
}

TEST(MessageBoxes, AlertReturnsAtOnceAndGoesOnOk) {
    showAlertBox(nullptr, "The port has gone away.", "");
    QMessageBox* box = findBox();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "The port has gone away.");
    EXPECT_TRUE(box->informativeText().isEmpty());
    box->button(QMessageBox::Ok)->click();
    QApplication::processEvents();
    EXPECT_EQ(findBox(), nullptr);
}

}  // namespace
}  // namespace zelvan
