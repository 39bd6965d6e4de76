#pragma once
// Where the input filter windows stand: under the main window, left edges
// aligned.

#include <QWidget>

namespace zelvan {

void placeUnderMainWindow(QWidget* w);

}  // namespace zelvan
