// The display console's rules: boxes, lines, buttons, the board switch.

#include "display/console.h"

#include <cctype>
#include <cmath>

#include "core/mainconsole.h"
#include "core/readable.h"
#include "core/tavo.h"

namespace zelvan {

double numericValue(const std::string& text) {
    std::size_t i = text.find_first_not_of(" \t");
    if (i == std::string::npos) return 0;
    double sign = 1;
    if (text[i] == '+' || text[i] == '-') sign = text[i++] == '-' ? -1 : 1;
    double value = 0;
    for (; i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])); ++i)
        value = value * 10 + (text[i] - '0');
    if (i < text.size() && text[i] == '.') {
        double scale = 0.1;
        for (++i; i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])); ++i) {
            value += (text[i] - '0') * scale;
            scale /= 10;
        }
    }
    return sign * value;
}

DisplayConsole::DisplayConsole(Tavo& tavo, SerialPort& port, SerialLinkView& linkView,
                               ConsoleView& view)
    : m_tavo(tavo),
      m_port(port),
      m_view(view),
      m_link(kDisplayLink, port, tavo.linkContext(), linkView),
      m_engine(tavo, *this) {
    m_engine.setListener(this);
    m_timerDebounceCD = tavo.dispatch().makeTimer([this] { timerDebounceCD_Timer(); });
    m_port.onCarrier = [this] { onCarrier(); };
    // A port that went away can't take frames: a ticked filter would give a
    // notice and a beep for every frame of every caption. Once the port opens
    // again the filter runs as before; one the operator had stopped stays off.
    m_link.whenLost = [this] {
        const bool wasOn = box(ConsoleBox::Filter);
        setBox(ConsoleBox::Filter, false);
        return wasOn;
    };
    m_link.whenBack = [this] { setBox(ConsoleBox::Filter, true); };
}

DisplayConsole::~DisplayConsole() {
    m_port.onCarrier = nullptr;
}

// --- the window's life ---

void DisplayConsole::formLoad() {
    m_link.refreshSetupCaption();
    setDefaults();
}

void DisplayConsole::setDefaults() {
    m_engine.bBoardFront = true;
    setBox(ConsoleBox::RevOnCD, true);
    setBox(ConsoleBox::Input, true);
    setBox(ConsoleBox::Filter, false);
    setScrollLines(3);
    setBox(ConsoleBox::Sunrise, false);
    setBox(ConsoleBox::Reverse, true);
    setBox(ConsoleBox::Rollup, false);
}

// A port that fails to open leaves its one message box; the tick of the
// filter box then reminds the operator, and the startup caption's frames each
// repeat that reminder.
void DisplayConsole::showForm() {
    m_view.placeWindow();
    m_link.loadSettings();
    setDefaults();
    m_view.showWindow();
    cmdPortOutOpen_Click();
    setBox(ConsoleBox::Filter, true);
    m_engine.showStartupBarker(false);
}

// Sends nothing to the sign: what it shows at exit was settled before this.
void DisplayConsole::hideForm() {
    // Unticking the box runs its click, as a tick by hand would: the output
    // flag falls and the reference goes (the click's own hideForm runs the
    // rest of this once, inside).
    if (m_tavo.view) m_tavo.view->showOutDWValue(0);
    if (m_tavo.bOutDW && m_tavo.console) m_tavo.console->chkOutDW_Click(0);
    m_link.saveSettings();
    m_view.hideWindow();
}

void DisplayConsole::doInput(std::int16_t theStyle, const std::string& theLine) {
    m_engine.doInput(theStyle, theLine);
}

// --- the port controls ---

void DisplayConsole::cmdPortOutOpen_Click() {
    if (!m_link.isPortOpen()) {
        m_link.openPort();
        return;
    }
    setBox(ConsoleBox::Filter, false);
    m_link.closePort();
}

// --- the boxes ---

void DisplayConsole::setBox(ConsoleBox box, bool ticked) {
    bool& value = boxValue(box);
    if (value == ticked) return;
    value = ticked;
    m_view.showBox(box, ticked);
    switch (box) {
        case ConsoleBox::RevOnCD:
            return chkRevOnCD_Click(ticked);
        case ConsoleBox::Input:
            m_engine.bListen = ticked;
            return;
        case ConsoleBox::Filter:
            return chkFilter_Click(ticked);
        case ConsoleBox::Reverse:
            m_engine.bReverse = ticked;
            return;
        case ConsoleBox::Rollup:
            return m_engine.setBufferRollup(ticked);
        case ConsoleBox::Sunrise:
            return chkSunrise_Click(ticked);
    }
}

void DisplayConsole::chkRevOnCD_Click(bool ticked) {
    m_port.setCdEvents(ticked);
}

// A tick on a closed port unticks the box again, which runs this once more
// with the box unticked, before the operator is told.
void DisplayConsole::chkFilter_Click(bool ticked) {
    if (ticked && !m_link.isPortOpen()) {
        setBox(ConsoleBox::Filter, false);
        m_engine.bFilterOn = false;
        m_link.showNotice(true, kOpenPortFirst);
    } else if (ticked) {
        m_engine.bFilterOn = true;
        m_view.showFilterCaption(kCaptionStopFilter, kColourRed);
    } else {
        m_engine.bFilterOn = false;
        m_view.showFilterCaption(kCaptionStartFilter, kColourBlack);
    }
}

// Unticked, the rows in use stay as they are.
void DisplayConsole::chkSunrise_Click(bool ticked) {
    m_engine.bSunrise = ticked;
    if (!ticked) return;
    setScrollLines(3);
    // Rows lowered by typing leave the bar at 3, so setting it changed
    // nothing: the box follows the bar all the same.
    VScrollLines_Change();
}

void DisplayConsole::setScrollLines(int value) {
    if (value == m_scrollLines) return;
    m_scrollLines = value;
    m_view.showScrollLines(value);
    VScrollLines_Change();
}

void DisplayConsole::VScrollLines_Change() {
    setLinesText(std::to_string(m_scrollLines));
}

void DisplayConsole::setLinesText(const std::string& text) {
    if (text == m_linesText) return;
    m_linesText = text;
    m_view.showLinesText(text);
    tbScrollLines_Change();
}

// Halves round to the even neighbour. A value out of range rewrites the box,
// whose change then sets the rows in use, so iLines never holds a value the
// engine can't use. The box doesn't move the scroll bar.
void DisplayConsole::tbScrollLines_Change() {
    const double value = std::nearbyint(numericValue(m_linesText));
    if (value >= kScrollLinesMax + 1)
        setLinesText(std::to_string(kScrollLinesMax));
    else if (value < kScrollLinesMin)
        setLinesText(std::to_string(kScrollLinesMin));
    else
        m_engine.iLines = static_cast<std::int16_t>(value);
}

// --- the pending text and its buttons ---

// The operator types a whole frame in the readable notation: nothing is added.
void DisplayConsole::cmdSendIt_Click() {
    if (m_engine.tbPending.empty() || !m_engine.bFilterOn) return;
    m_engine.sendToPort(fromReadable(m_engine.tbPending));
}

void DisplayConsole::cmdSendAt_Click() {
    m_engine.writeLine(m_engine.tbPending, m_engine.iLines, 1);
}

void DisplayConsole::cmdFromReadable_Click(const std::string& clipboard) {
    m_engine.tbPending = fromReadable(clipboard);
    m_view.showPending(m_engine.tbPending);
}

void DisplayConsole::cmdToReadable_Click(const std::string& clipboard) {
    m_engine.tbPending = toReadable(clipboard);
    m_view.showPending(m_engine.tbPending);
}

std::size_t DisplayConsole::cmdLuckyCharm_Click(std::size_t selStart, std::size_t selLength) {
    std::string& text = m_engine.tbPending;
    selStart = std::min(selStart, text.size());
    selLength = std::min(selLength, text.size() - selStart);
    text.replace(selStart, selLength, 1, kReadableEscape);
    m_view.showPending(text);
    return selStart + 1;
}

// --- the carrier-detect board switch ---

// The event turns itself off for a second, so a bouncing contact switches the
// board once.
void DisplayConsole::onCarrier() {
    m_port.setCdEvents(false);
    m_link.showNotice(true, kToggleBoardNotice);
    m_timerDebounceCD->setInterval(kDebounceCDMs);
    m_timerDebounceCD->setEnabled(true);
    m_engine.toggleBoard();
}

// Re-arms the event even if "RevOnCD" was unticked within the second, as the
// window always has.
void DisplayConsole::timerDebounceCD_Timer() {
    m_timerDebounceCD->setEnabled(false);
    m_port.setCdEvents(true);
}

std::string DisplayConsole::dump() const {
    auto flag = [this](ConsoleBox b) { return box(b) ? "1" : "0"; };
    return std::string("boxes: revOnCD=") + flag(ConsoleBox::RevOnCD) +
           " input=" + flag(ConsoleBox::Input) + " filter=" + flag(ConsoleBox::Filter) +
           " reverse=" + flag(ConsoleBox::Reverse) + " rollup=" + flag(ConsoleBox::Rollup) +
           " sunrise=" + flag(ConsoleBox::Sunrise) + " scroll=" + std::to_string(m_scrollLines) +
           " linesText=\"" + m_linesText + "\"" +
           " debounce=" + (m_timerDebounceCD->enabled() ? "1" : "0") + "\n" + m_link.dump() + "\n" +
           m_engine.dump();
}

}  // namespace zelvan
