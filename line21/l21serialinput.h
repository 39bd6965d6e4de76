#pragma once
// The rules of the line-21 serial decoder window, without a window system: the
// port to the decoder box and its link, the flush timer, the memory panes'
// contents, the test buttons and the channel list. The Qt window
// frmL21Serial binds its controls to this class and forwards the filter
// contract to it; tests drive it over a fake port on virtual time.
//
// Bytes from the box go onto the capture ring as they come; decoding happens
// in the capture loop, through the shared caption memory's FilterL21.

#include <cstdint>
#include <memory>
#include <string>

#include "core/inputfilter.h"
#include "core/tavo.h"
#include "line21/l21window.h"
#include "platform/seriallink.h"
#include "platform/serialport.h"

namespace zelvan {

inline constexpr const char* kL21SerialTitle = "Line-21 Decoder";

// Rows the hidden Command1 button writes into the displayed bank.
inline constexpr const char* kCommand1Row1 = "this is line 1";
inline constexpr const char* kCommand1Row2 = "this is line 2";

// What the window shows beyond its serial link: itself, the two memory panes
// and the channel list.
class L21SerialView : public SerialLinkView, public L21PanesView {
  public:
    // Left edge at the main window's left edge, top at its height.
    virtual void placeWindow() = 0;
    // Modeless, owned by the main window.
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
};

class L21SerialInput : public L21Window {
  public:
    // Runs initL21 and puts the port settings text on the setup button, so the
    // view's controls must exist by now.
    L21SerialInput(Tavo& tavo, InL21& memory, SerialPort& port, L21SerialView& view);

    // --- the filter contract ---
    // Opens the port and stays in the capture loop until capture stops.
    void showForm() override;
    void hideForm() override;

    // --- the controls ---
    // Closes an open port (capture stops); opens a closed one and captures.
    void cmdPortOpen_Click();
    void cmdPortDial_Click(const std::string& dialText);
    void cmdPortHangup_Click();
    void Command1_Click();

    SerialLink& link() { return m_link; }
    // The window's state as text, for tests and debugging.
    std::string dump() const;

  private:
    void writeDisplayedRow(std::int16_t row, const std::string& text);

    L21SerialView& m_view;
    SerialLink m_link;
};

}  // namespace zelvan
