#include "line21/l21serialinput.h"

#include <algorithm>

namespace zelvan {

L21SerialInput::L21SerialInput(Tavo& tavo, InL21& memory, SerialPort& port, L21SerialView& view)
    : m_tavo(tavo),
      m_memory(memory),
      m_view(view),
      m_link(kL21Link, port, tavo.linkContext(), view) {
    m_flushTimer = m_tavo.dispatch().makeTimer([this] { TimerFlushTimer_Timer(); });
    m_flushTimer->setInterval(kFlushMs);
    m_flushTimer->setEnabled(false);
    // Each new window starts from blank memory; the window's initialisation
    // and its load both reset it, and once is the same as twice.
    m_memory.initL21();
    m_link.refreshSetupCaption();
}

L21SerialInput::~L21SerialInput() {
    if (m_memory.view == this) m_memory.view = nullptr;
}

void L21SerialInput::showForm() {
    m_tavo.InputFilterType = 1;
    // From here on the decoder refreshes these panes and re-arms this timer.
    m_memory.view = this;
    m_view.placeWindow();
    m_link.loadSettings();
    m_view.showChannel(0);
    lbChannel_Click(0);
    m_view.showWindow();
    cmdPortOpen_Click();
}

// The flush timer stops first, and the decoder lets go of this window, so no
// CR pair is queued for whatever filter comes next: bytes left on the ring
// would reach that filter, and the board filter, which doesn't reset the
// ring, would decode them. Then the port's section is saved as the window
// leaves.
void L21SerialInput::hideForm() {
    stopFlushTimer();
    if (m_memory.view == this) m_memory.view = nullptr;
    m_link.saveSettings();  // stopCapture, close, 1000 yields, write "L21Port"
    m_tavo.bStopCapture = true;
    m_view.hideWindow();
}

std::int16_t L21SerialInput::filterEntry(const std::string& inString, std::string& outString) {
    return m_memory.FilterL21(inString, outString);
}

std::string L21SerialInput::getExternalText(std::int16_t i) {
    return m_memory.getExternalTextL21(i);
}

std::string L21SerialInput::getExternalTextTrimmed(std::int16_t i) {
    return m_memory.getExternalTextTrimmedL21(i);
}

void L21SerialInput::cmdShowDM_Click() {
    m_view.setDMText(m_memory.memoryText(m_memory.iDM));
}

void L21SerialInput::cmdShowNM_Click() {
    m_view.setNMText(m_memory.memoryText(m_memory.iNM));
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

// The test buttons change the memory only; the operator presses "Show".
void L21SerialInput::cmdEDM_Click() {
    m_memory.eraseDM();
}

void L21SerialInput::cmdENM_Click() {
    m_memory.eraseNM();
}

void L21SerialInput::cmdFillDM_Click() {
    m_memory.fillMemory(m_memory.iDM);
}

void L21SerialInput::cmdFillNM_Click() {
    m_memory.fillMemory(m_memory.iNM);
}

void L21SerialInput::cmdFlip_Click() {
    m_memory.flipMemory();
}

void L21SerialInput::cmdInit_Click() {
    m_memory.initL21();
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

void L21SerialInput::lbChannel_Click(std::int16_t index) {
    m_memory.iChannel = index;
}

// Firing doesn't stop the timer: it goes on every 5 seconds, and the decoder
// drops a repeated CR, so a silent stream changes nothing. The pair queues
// only where both bytes fit, as the port's bytes do: on a ring that a held
// loop let fill up, it would overwrite what the box sent. A ring that full
// isn't silent, and the next firing flushes once it has drained.
void L21SerialInput::TimerFlushTimer_Timer() {
    queueFlushPair(m_tavo);
}

void L21SerialInput::stopFlushTimer() {
    m_flushTimer->setEnabled(false);
}

std::string L21SerialInput::dump() const {
    std::string s = "L21Serial: channel=" + std::to_string(m_memory.iChannel);
    s += " flush=" + std::string(m_flushTimer->enabled() ? "on" : "off");
    const char* panes = m_memory.view == this ? "this" : m_memory.view ? "other" : "none";
    s += " view=" + std::string(panes);
    return s + " " + m_link.dump();
}

}  // namespace zelvan
