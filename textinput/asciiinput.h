#pragma once
// The rules of the ASCII serial input window, without a window system: its
// serial link (section "AsciiPort"), the byte filter over its row memory and
// the row view. The Qt window frmInAscii binds its controls to this class and
// forwards the filter contract to it; tests drive it over a fake port on
// virtual time.
//
// Received bytes go onto the capture ring as they come; the filter sees them
// only when the capture loop takes them off.

#include <cstdint>
#include <string>

#include "core/inputfilter.h"
#include "core/tavo.h"
#include "platform/seriallink.h"
#include "platform/serialport.h"
#include "textinput/textrows.h"

namespace zelvan {

inline constexpr const char* kAsciiTitle = "Input: Ascii (Serial)";
inline constexpr const char* kAsciiReminder = "Open the port, dummy!";

// What the window shows beyond its serial link: itself, the row view and the
// width box.
class AsciiView : public SerialLinkView {
  public:
    virtual void placeWindow() = 0;
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
    // rtbDM: the whole row memory, 15 lines of 32 characters.
    virtual void setDMText(const std::string& text) = 0;
    // Writes tbWrapWidth; the window's change handler then sets the width.
    virtual void setWrapWidthText(const std::string& text) = 0;
};

class AsciiInput : public InputFilter {
  public:
    // Puts the port settings text on the setup button, so the view's
    // controls must exist by now.
    AsciiInput(Tavo& tavo, SerialPort& port, AsciiView& view);

    // --- the filter contract ---
    // Shows the window with its port closed; the operator opens it.
    void showForm() override;
    // Closes the port and saves its section; capture isn't stopped.
    void hideForm() override;
    std::int16_t filterEntry(const std::string& inString, std::string& outString) override {
        return FilterAscii(inString, outString);
    }
    std::string getExternalText(std::int16_t i) override { return rows.getExternalText(i); }
    std::string getExternalTextTrimmed(std::int16_t i) override {
        return rows.getExternalTextTrimmed(i);
    }

    std::int16_t FilterAscii(const std::string& inString, std::string& outString);

    // --- the controls ---
    // Closes an open port and stops capture; opens a closed one and captures.
    void cmdPortOpen_Click();
    void cmdPortDial_Click(const std::string& dialText) { m_link.dial(dialText); }
    void cmdPortHangup_Click() { m_link.hangUpPort(); }
    void cmdPortSetup_Click() { m_link.setup(); }
    // The text of tbWrapWidth changed: the width is kept; lines wrap only past
    // column 31.
    void tbWrapWidth_Change(const std::string& text) { filter.setWrapWidth(parseWrapWidth(text)); }

    SerialLink& link() { return m_link; }
    std::string dump() const;

    TextRows rows;
    AsciiFilter filter{rows};

  private:
    Tavo& m_tavo;
    AsciiView& m_view;
    SerialLink m_link;
};

}  // namespace zelvan
