#pragma once
// The logic of the preferences window: the state of its controls, the load
// steps, the clicks that act on the settings at once, and applyPrefs. The
// window shows this state and hands each click to it; tests drive it alone.

#include <cstdint>
#include <optional>
#include <string>

namespace zelvan {

class Tavo;

struct PrefsControls {
    int chkBeepOnMessage = 0;
    int chkStartupBarker = 0;
    std::string tbStartupBarker;
    bool tbStartupBarkerEnabled = true;
    std::optional<int> exitOption;  // which of rbExitDispNOP/STB/CLS is set, 0-2
    int chkObfuscate = 0;
    bool lbObfuscateTypeVisible = false;
    int lbObfuscateTypeIndex = -1;  // -1: no entry selected
};

// The wacky output list has this many entries.
inline constexpr int kObfuscateTypes = 1;

class PrefsForm {
  public:
    explicit PrefsForm(Tavo& tavo) : m_tavo(tavo) {}

    // The load steps after centring: copies the settings in memory to the
    // controls.
    void formLoad();

    // A box set to a value: its click runs only when the value changes.
    void setStartupBarkerBox(int value);
    void setObfuscateBox(int value);
    void setBeepBox(int value) { c.chkBeepOnMessage = value; }
    void setCaptionText(const std::string& text) { c.tbStartupBarker = text; }

    void chkStartupBarker_Click();
    void chkObfuscate_Click();
    // These two write the setting at once, before any Apply.
    void rbExitDisp_Click(int task);
    void lbObfuscateType_Click(int index);

    void applyPrefs();

    PrefsControls c;

  private:
    Tavo& m_tavo;
};

}  // namespace zelvan
