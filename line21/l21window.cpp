#include "line21/l21window.h"

namespace zelvan {

L21Window::L21Window(Tavo& tavo, InL21& memory, L21PanesView& panes)
    : m_tavo(tavo), m_memory(memory), m_panes(panes) {
    m_flushTimer = m_tavo.dispatch().makeTimer([this] { TimerFlushTimer_Timer(); });
    m_flushTimer->setInterval(kFlushMs);
    m_flushTimer->setEnabled(false);
    // The window's initialisation and its load both reset the memory; once
    // is the same as twice.
    m_memory.initL21();
}

L21Window::~L21Window() {
    if (m_memory.view == this) m_memory.view = nullptr;
}

void L21Window::attachToDecoder() {
    m_memory.view = this;
    m_panes.showChannel(0);
    lbChannel_Click(0);
}

void L21Window::detachFromDecoder() {
    m_flushTimer->setEnabled(false);
    if (m_memory.view == this) m_memory.view = nullptr;
}

std::string L21Window::viewOwner() const {
    return m_memory.view == this ? "this" : m_memory.view ? "other" : "none";
}

std::int16_t L21Window::filterEntry(const std::string& inString, std::string& outString) {
    return m_memory.FilterL21(inString, outString);
}

std::string L21Window::getExternalText(std::int16_t i) {
    return m_memory.getExternalTextL21(i);
}

std::string L21Window::getExternalTextTrimmed(std::int16_t i) {
    return m_memory.getExternalTextTrimmedL21(i);
}

void L21Window::cmdShowDM_Click() {
    m_panes.setDMText(m_memory.memoryText(m_memory.iDM));
}

void L21Window::cmdShowNM_Click() {
    m_panes.setNMText(m_memory.memoryText(m_memory.iNM));
}

void L21Window::cmdEDM_Click() {
    m_memory.eraseDM();
}

void L21Window::cmdENM_Click() {
    m_memory.eraseNM();
}

void L21Window::cmdFillDM_Click() {
    m_memory.fillMemory(m_memory.iDM);
}

void L21Window::cmdFillNM_Click() {
    m_memory.fillMemory(m_memory.iNM);
}

void L21Window::cmdFlip_Click() {
    m_memory.flipMemory();
}

void L21Window::cmdInit_Click() {
    m_memory.initL21();
}

void L21Window::lbChannel_Click(std::int16_t index) {
    m_memory.iChannel = index;
}

// Firing doesn't stop the timer: it goes on every 5 seconds, and the decoder
// drops a repeated CR, so a silent stream changes nothing. The pair queues
// only where both bytes fit, as received bytes do: on a ring that a held loop
// let fill up, it would overwrite what the source sent. A ring that full
// isn't silent, and the next firing flushes once it has drained.
void L21Window::TimerFlushTimer_Timer() {
    queueFlushPair(m_tavo);
}

}  // namespace zelvan
