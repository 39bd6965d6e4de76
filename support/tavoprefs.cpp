#include "support/tavoprefs.h"

#include "core/tavo.h"

namespace zelvan {

void PrefsForm::formLoad() {
    setBeepBox(m_tavo.BeepOnMessage ? 1 : 0);
    setStartupBarkerBox(m_tavo.DoStartupBarker ? 1 : 0);
    setCaptionText(m_tavo.StartupBarker);
    const int task = m_tavo.ExitDisplayTask;
    c.exitOption = task >= 0 && task <= 2 ? std::optional<int>(task) : std::nullopt;
    setObfuscateBox(m_tavo.Obfuscate ? 1 : 0);
    chkObfuscate_Click();
}

void PrefsForm::setStartupBarkerBox(int value) {
    if (value == c.chkStartupBarker) return;
    c.chkStartupBarker = value;
    chkStartupBarker_Click();
}

void PrefsForm::setObfuscateBox(int value) {
    if (value == c.chkObfuscate) return;
    c.chkObfuscate = value;
    chkObfuscate_Click();
}

void PrefsForm::chkStartupBarker_Click() {
    c.tbStartupBarkerEnabled = c.chkStartupBarker == 1;
}

// A stored type the list hasn't got leaves the list without a selection and
// the setting as it was: the list can't stand for it, and a later Apply keeps
// it (see applyPrefs).
void PrefsForm::chkObfuscate_Click() {
    c.lbObfuscateTypeVisible = c.chkObfuscate == 1;
    const int type = m_tavo.ObfuscateType;
    c.lbObfuscateTypeIndex = type >= 0 && type < kObfuscateTypes ? type : -1;
}

void PrefsForm::rbExitDisp_Click(int task) {
    c.exitOption = task;
    m_tavo.ExitDisplayTask = static_cast<std::int16_t>(task);
}

void PrefsForm::lbObfuscateType_Click(int index) {
    if (index < 0 || index >= kObfuscateTypes) return;
    c.lbObfuscateTypeIndex = index;
    m_tavo.ObfuscateType = static_cast<std::int16_t>(index);
}

void PrefsForm::applyPrefs() {
    m_tavo.BeepOnMessage = c.chkBeepOnMessage == 1;
    m_tavo.DoStartupBarker = c.chkStartupBarker == 1;
    m_tavo.StartupBarker = c.tbStartupBarker;
    m_tavo.ExitDisplayTask = static_cast<std::int16_t>(c.exitOption.value_or(0));
    m_tavo.Obfuscate = c.chkObfuscate == 1;
    if (c.lbObfuscateTypeIndex >= 0)
        m_tavo.ObfuscateType = static_cast<std::int16_t>(c.lbObfuscateTypeIndex);
    m_tavo.saveSettings();
}

}  // namespace zelvan
