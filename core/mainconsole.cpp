#include "core/mainconsole.h"

namespace zelvan {

MainConsole::MainConsole(Tavo& tavo, MainView& view, Shell& shell)
    : m_tavo(tavo), m_shell(shell) {
    m_tavo.view = &view;
    m_tavo.console = this;
}

void MainConsole::giveUp(FilterKind kind) {
    auto& slot = m_filters[static_cast<std::size_t>(kind)];
    InputFilter*& ref = m_tavo.filterRef(kind);
    if (ref) ref->hideForm();
    m_tavo.flag(kind) = false;
    ref = nullptr;
    if (slot) m_retired.push_back(std::move(slot));
}

void MainConsole::select(FilterKind kind) {
    const SelectionRule& rule = kSelectionRules[static_cast<std::size_t>(kind)];
    if (rule.stopFirst) m_tavo.bStopCapture = true;
    for (int i = 0; i < rule.yields; ++i) m_tavo.dispatch().yield();
    for (FilterKind other : kFilterOrder)
        if (other != kind && m_tavo.flag(other)) giveUp(other);

    auto& slot = m_filters[static_cast<std::size_t>(kind)];
    if (slot) m_retired.push_back(std::move(slot));
    slot = m_shell.makeFilter(kind, m_tavo);
    InputFilter* window = slot.get();
    m_tavo.filterRef(kind) = window;
    if (rule.flagBeforeShow) {
        m_tavo.flag(kind) = true;
        window->showForm();
    } else {
        window->showForm();
        m_tavo.flag(kind) = true;
    }
}

void MainConsole::chkOutDW_Click(int value) {
    if (value == 1) {
        if (m_display) m_retiredDisplays.push_back(std::move(m_display));
        m_display = m_shell.makeDisplay(m_tavo);
        m_tavo.frmOutDW = m_display.get();
        m_display->showForm();
        m_tavo.bOutDW = true;
        return;
    }
    m_tavo.bOutDW = false;
    if (m_tavo.frmOutDW) m_tavo.frmOutDW->hideForm();
    m_tavo.frmOutDW = nullptr;
    if (m_display) m_retiredDisplays.push_back(std::move(m_display));
}

}  // namespace zelvan
