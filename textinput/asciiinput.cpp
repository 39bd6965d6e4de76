#include "textinput/asciiinput.h"

namespace zelvan {

AsciiInput::AsciiInput(Tavo& tavo, SerialPort& port, AsciiView& view)
    : m_tavo(tavo), m_view(view), m_link(kAsciiLink, port, tavo.linkContext(), view) {
    m_link.refreshSetupCaption();
}

void AsciiInput::showForm() {
    m_tavo.InputFilterType = 3;
    m_view.placeWindow();
    m_link.loadSettings();
    m_view.setWrapWidthText("32");
    tbWrapWidth_Change("32");
    m_view.showWindow();
}

void AsciiInput::hideForm() {
    m_link.saveSettings();  // closes an open port first
    m_view.hideWindow();
}

// The port closes before capture is told to stop, so nothing more arrives
// for the loop to drain. An opened port starts from an empty ring.
void AsciiInput::cmdPortOpen_Click() {
    if (m_link.isPortOpen()) {
        m_link.closePort();
        m_tavo.bStopCapture = true;
        return;
    }
    m_link.openPort();
    if (!m_link.isPortOpen()) return;
    m_tavo.emptyQueue();
    m_tavo.captureLoop();
}

std::int16_t AsciiInput::FilterAscii(const std::string& inString, std::string& outString) {
    const std::int16_t style = filter.FilterAscii(inString, outString);
    m_view.setDMText(rows.rowsAsText());
    return style;
}

std::string AsciiInput::dump() const {
    return "Ascii: " + filter.dump() + " " + m_link.dump();
}

}  // namespace zelvan
