#pragma once
// The parts both line-21 windows are built of: the two memory panes with their
// rulers, the test buttons, and the main window that owns them on screen.

class QGridLayout;
class QHBoxLayout;
class QPlainTextEdit;
class QPushButton;
class QWidget;

namespace zelvan {

// A memory pane: 15 lines of 32 characters in a fixed-pitch font.
QPlainTextEdit* makePane(QWidget* parent, const char* name);
// The label above, the column ruler, the row ruler beside and the pane.
QGridLayout* memoryBlock(QWidget* parent, const char* label, QPlainTextEdit* pane);
QPushButton* makeButton(QWidget* parent, const char* name, const char* caption);
// "Disp:" or "NonDisp:" and its three test buttons.
QHBoxLayout* testRow(QWidget* parent, const char* label, QPushButton* erase, QPushButton* fill,
                     QPushButton* show);
// The main window, or null before it is made.
QWidget* mainWindow();
// Shows w modeless, kept above the main window by the window manager.
void showOwnedByMainWindow(QWidget* w);

}  // namespace zelvan
