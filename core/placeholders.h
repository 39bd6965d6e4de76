#pragma once
// Stand-ins for the input windows that are not built yet.
// Each obeys the filter contract and the calls that start-up and shutdown
// make, and says in its window that it is a placeholder.

#include <QLabel>
#include <QWidget>

#include "core/tavo.h"

namespace zelvan {

class PlaceholderFilter : public QWidget, public InputFilter {
  public:
    PlaceholderFilter(FilterKind kind, Tavo& tavo);
    void showForm() override;
    void hideForm() override;
    std::int16_t filterEntry(const std::string& inString, std::string& outString) override;
    std::string getExternalText(std::int16_t i) override;
    std::string getExternalTextTrimmed(std::int16_t i) override;

  private:
    FilterKind m_kind;
    Tavo& m_tavo;
};

// Puts a window under the main window, left edges aligned.
void placeUnderMainWindow(QWidget* w);

}  // namespace zelvan
