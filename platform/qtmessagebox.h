#pragma once
// The message boxes and notices of the serial links, for the windows that
// show them: the fixed text, and under it the system's reason when there is one.

#include <string>

class QLabel;
class QWidget;

namespace zelvan {

inline constexpr const char* kMessageTitle = "Zelvan21";

// Modal: returns when the operator has pressed OK.
void showMessageBox(QWidget* parent, const std::string& text, const std::string& detail);
// Returns at once and leaves the box on screen until the operator presses OK,
// so capture and the other windows go on beneath it.
void showAlertBox(QWidget* parent, const std::string& text, const std::string& detail);
// A line of red text for an input window's notices, with room for two lines
// of it, so the window keeps its size whatever the notice says.
QLabel* makeNoticeLabel(QWidget* parent);

}  // namespace zelvan
