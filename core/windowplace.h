#pragma once
// Where the input filter windows stand: under the main window, left edges
// aligned; and how a closed one comes back.

#include <QWidget>

namespace zelvan {

void placeUnderMainWindow(QWidget* w);
// Shows a window the operator closed where it stood, in front, to type in.
void bringWindowBack(QWidget* w);

}  // namespace zelvan
