#include "core/windowplace.h"

#include <QApplication>

namespace zelvan {

void placeUnderMainWindow(QWidget* w) {
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top->objectName() == QLatin1String("frmTavo")) {
            w->move(top->frameGeometry().left(), top->frameGeometry().height());
            return;
        }
    }
}

void bringWindowBack(QWidget* w) {
    w->show();
    w->raise();
    w->activateWindow();
}

}  // namespace zelvan
