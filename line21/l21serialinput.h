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
#include "line21/inl21.h"
#include "line21/l21view.h"
#include "platform/seriallink.h"
#include "platform/serialport.h"

namespace zelvan {

inline constexpr const char* kL21SerialTitle = "Line-21 Decoder";
inline constexpr int kFlushMs = 5000;
// The pair the flush timer queues: a CR of channel index 0.
inline constexpr std::uint8_t kFlushFirst = 0x14;
inline constexpr std::uint8_t kFlushSecond = 0x2D;

// Queues the flush pair where it fits on the ring, as a receive does; on a
// full ring this firing is skipped and the next one flushes.
inline void queueFlushPair(Tavo& tavo) {
    if (tavo.queueRoom() < 2) return;
    tavo.queueByte(kFlushFirst);
    tavo.queueByte(kFlushSecond);
}

// Rows the hidden Command1 button writes into the displayed bank.
inline constexpr const char* kCommand1Row1 = "this is line 1";
inline constexpr const char* kCommand1Row2 = "this is line 2";

// What the window shows beyond its serial link: itself, the two memory panes
// and the channel list.
class L21SerialView : public SerialLinkView {
  public:
    // Left edge at the main window's left edge, top at its height.
    virtual void placeWindow() = 0;
    // Modeless, owned by the main window.
    virtual void showWindow() = 0;
    virtual void hideWindow() = 0;
    // The panes rtbDM and rtbNM: 15 lines of 32 characters.
    virtual void setDMText(const std::string& text) = 0;
    virtual void setNMText(const std::string& text) = 0;
    // Shows the selection of lbChannel without running its click.
    virtual void showChannel(std::int16_t index) = 0;
};

class L21SerialInput : public InputFilter, public L21View {
  public:
    // Runs initL21 and puts the port settings text on the setup button, so the
    // view's controls must exist by now.
    L21SerialInput(Tavo& tavo, InL21& memory, SerialPort& port, L21SerialView& view);
    ~L21SerialInput() override;
    L21SerialInput(const L21SerialInput&) = delete;
    L21SerialInput& operator=(const L21SerialInput&) = delete;

    // --- the filter contract ---
    // Opens the port and stays in the capture loop until capture stops.
    void showForm() override;
    void hideForm() override;
    std::int16_t filterEntry(const std::string& inString, std::string& outString) override;
    std::string getExternalText(std::int16_t i) override;
    std::string getExternalTextTrimmed(std::int16_t i) override;

    // --- what the decoder asks of the window ---
    void cmdShowDM_Click() override;
    void cmdShowNM_Click() override;
    Timer& TimerFlushTimer() override { return *m_flushTimer; }

    // --- the controls ---
    // Closes an open port (capture stops); opens a closed one and captures.
    void cmdPortOpen_Click();
    void cmdPortDial_Click(const std::string& dialText);
    void cmdPortHangup_Click();
    void cmdEDM_Click();
    void cmdENM_Click();
    void cmdFillDM_Click();
    void cmdFillNM_Click();
    void cmdFlip_Click();
    void cmdInit_Click();
    void Command1_Click();
    void lbChannel_Click(std::int16_t index);
    // Queues the CR pair; the timer runs it every 5 seconds once started.
    void TimerFlushTimer_Timer();

    SerialLink& link() { return m_link; }
    InL21& memory() { return m_memory; }
    // The window's state as text, for tests and debugging.
    std::string dump() const;

  private:
    void stopFlushTimer();
    void writeDisplayedRow(std::int16_t row, const std::string& text);

    Tavo& m_tavo;
    InL21& m_memory;
    L21SerialView& m_view;
    SerialLink m_link;
    std::unique_ptr<Timer> m_flushTimer;
};

}  // namespace zelvan
