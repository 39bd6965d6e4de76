#pragma once
// The main window's logic: the five filter selections, the display output box
// and the window references. The Qt window binds its controls to these.

#include <array>
#include <memory>
#include <vector>

#include "core/tavo.h"

namespace zelvan {

// How each selection handler begins and when it raises its filter's flag.
struct SelectionRule {
    FilterKind kind;
    bool stopFirst;       // raises bStopCapture before anything else
    int yields;           // plain yields after the stop
    bool flagBeforeShow;  // flag up before showForm (showForm may enter the loop)
};

inline constexpr std::array<SelectionRule, kFilterCount> kSelectionRules{{
    {FilterKind::L21Serial, true, 0, true},
    {FilterKind::L21USB, true, 10000, false},
    {FilterKind::Ascii, false, 0, false},
    {FilterKind::Key, false, 0, true},
    {FilterKind::TDS, true, 0, false},
    {FilterKind::L21Video, true, 0, true},
}};

class MainConsole {
  public:
    MainConsole(Tavo& tavo, MainView& view, Shell& shell);

    void obIFL21Serial_Click() { select(FilterKind::L21Serial); }
    void obIFL21USB_Click() { select(FilterKind::L21USB); }
    void obIFAscii_Click() { select(FilterKind::Ascii); }
    void obIFKey_Click() { select(FilterKind::Key); }
    void obIFTDS_Click() { select(FilterKind::TDS); }
    void obIFL21Video_Click() { select(FilterKind::L21Video); }
    void select(FilterKind kind);
    void chkOutDW_Click(int value);

    // The window of a selected filter, for the windows that bind to it.
    InputFilter* filterWindow(FilterKind kind) { return m_tavo.filterRef(kind); }

  private:
    void giveUp(FilterKind kind);

    Tavo& m_tavo;
    Shell& m_shell;
    std::unique_ptr<DisplayOutput> m_display;
    std::array<std::unique_ptr<InputFilter>, kFilterCount> m_filters;
    // A window given up may still have a handler running below us (a port's
    // open button sits in the capture loop that called this selection), so it
    // is kept, hidden, until the process ends. One per selection at most.
    std::vector<std::unique_ptr<InputFilter>> m_retired;
    std::vector<std::unique_ptr<DisplayOutput>> m_retiredDisplays;
};

}  // namespace zelvan
