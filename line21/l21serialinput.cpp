#include "line21/l21serialinput.h"

#include <algorithm>

namespace zelvan {

L21SerialInput::L21SerialInput(Tavo& tavo, InL21& memory, SerialPort& port, L21SerialView& view)
    : L21Window(tavo, memory, view),
      m_view(view),
      m_link(kL21Link, port, tavo.linkContext(), view) {
    m_link.refreshSetupCaption();
}

void L21SerialInput::showForm() {
    m_tavo.InputFilterType = 1;
    m_view.placeWindow();
    m_link.loadSettings();
    attachToDecoder();
    m_view.showWindow();
    cmdPortOpen_Click();
}

// The flush timer stops first, and the decoder lets go of this window: bytes
// left on the ring would reach the next filter, and the board filter, which
// doesn't reset the ring, would decode them. Then the port's section is saved
// as the window leaves.
void L21SerialInput::hideForm() {
    detachFromDecoder();
    m_link.saveSettings();  // stopCapture, close, 1000 yields, write "L21Port"
    m_tavo.bStopCapture = true;
    m_view.hideWindow();
}

// An open port closes and every capture loop ends. A closed port opens, the
// panes show the memory, and if the port is open now the ring starts empty
// and capture runs until something stops it.
void L21SerialInput::cmdPortOpen_Click() {
    if (m_link.isPortOpen()) {
        m_tavo.bStopCapture = true;
        m_link.closePort();
        return;
    }
    m_link.openPort();
    cmdShowNM_Click();
    cmdShowDM_Click();
    if (!m_link.isPortOpen()) return;
    m_tavo.emptyQueue();
    m_tavo.captureLoop();
}

void L21SerialInput::cmdPortDial_Click(const std::string& dialText) {
    m_link.dial(dialText);
}

void L21SerialInput::cmdPortHangup_Click() {
    m_link.hangUpPort();
}

// Leaves rowUsed alone, as a plain write into the rows.
void L21SerialInput::Command1_Click() {
    writeDisplayedRow(1, kCommand1Row1);
    writeDisplayedRow(2, kCommand1Row2);
}

void L21SerialInput::writeDisplayedRow(std::int16_t row, const std::string& text) {
    InL21::Row& cells = m_memory.memBank[static_cast<std::size_t>(m_memory.iDM - 1)]
                            .rowText[static_cast<std::size_t>(row - 1)];
    cells.fill(' ');
    std::copy_n(text.begin(), std::min(text.size(), cells.size()), cells.begin());
}

std::string L21SerialInput::dump() const {
    std::string s = "L21Serial: channel=" + std::to_string(m_memory.iChannel);
    s += " flush=" + std::string(flushTimerOn() ? "on" : "off");
    s += " view=" + viewOwner();
    return s + " " + m_link.dump();
}

}  // namespace zelvan
