#include "textinput/keyinput.h"

namespace zelvan {

namespace {
constexpr std::uint8_t kCR = 13;
constexpr std::uint8_t kBackspace = 8;
}  // namespace

KeyInput::KeyInput(Tavo& tavo, KeyView& view) : m_tavo(tavo), m_view(view) {
    m_timerNotify = m_tavo.dispatch().makeTimer([this] { notify(false, ""); });
}

void KeyInput::showForm() {
    m_view.placeWindow();
    setDefaultWrapWidth();
    m_view.showWindow();
    notify(true, kBetterTypeFast);
    m_tavo.captureLoop();
}

void KeyInput::hideForm() {
    m_view.hideWindow();
}

void KeyInput::setDefaultWrapWidth() {
    m_view.setWrapWidthText("32");
    tbWrapWidth_Change("32");
}

void KeyInput::tbWrapWidth_Change(const std::string& text) {
    iWrapWidth = parseWrapWidth(text);
}

// Editing keys go on to the box; Enter sends; a printable key either types or,
// with the line at the wrap width, wraps.
//
// A sent line is taken from the box only when its CR comes out of the ring.
// Keys that arrive before that (a fast typist, a busy turn) belong to the
// lines after it: they are typed, and wrapped, into the text that each
// waiting CR puts on the input line, so none joins a line already sent and
// none is lost.
bool KeyInput::tbInput_KeyPress(std::int16_t KeyAscii) {
    if (KeyAscii == kCR) {
        sendLine();
        return true;
    }
    const bool waiting = !m_nextLines.empty();
    if (KeyAscii == kBackspace && waiting) {
        if (!m_nextLines.back().empty()) m_nextLines.back().pop_back();
        return true;
    }
    if (KeyAscii < 32 || KeyAscii > 255) return false;
    const char k = static_cast<char>(KeyAscii);
    if (!waiting) {
        if (static_cast<long>(m_view.inputText().size()) < iWrapWidth) return false;
        std::string sLine = m_view.inputText();
        std::string carry = wrap(sLine, k);
        m_view.setInputText(sLine);
        sendLine(std::move(carry));
        return true;
    }
    std::string& line = m_nextLines.back();
    if (static_cast<long>(line.size()) < iWrapWidth) {
        line += k;
        return true;
    }
    sendLine(wrap(line, k));
    return true;
}

// Queues the CR; `next` goes on the input line when the filter takes it.
void KeyInput::sendLine(std::string next) {
    m_tavo.queueByte(kCR);
    m_nextLines.push_back(std::move(next));
}

// Cuts sLine at its wrap point and returns the rest with the key behind it.
std::string KeyInput::wrap(std::string& sLine, char k) const {
    const auto iBreak =
        std::min<std::size_t>(static_cast<std::size_t>(findWrapPoint(sLine)), sLine.size());
    std::string carry = sLine.substr(iBreak) + k;
    sLine.resize(iBreak);
    return carry;
}

void KeyInput::cmdSend_Click() {
    sendLine();
}

std::int16_t KeyInput::FilterAscii(const std::string& inString, std::string& outString) {
    outString.clear();
    if (rows.bClearRows) {
        rows.clearRows();
        rows.bClearRows = false;
    }
    if (inString.empty()) return kStyleNothing;
    const auto code = static_cast<unsigned char>(inString[0]);
    if (code >= 32 && code <= 126) storePrintable(inString[0]);
    if (code != kCR) return kStyleNothing;
    takeLine(outString);
    return kStyleLineEnded;
}

// Only the input in use before can leave such a byte on the ring.
void KeyInput::storePrintable(char c) {
    if (rows.iCurCol >= kTextRowWidth) {
        sCarry.assign(1, c);
        bCarry = true;
        rows.iCurCol = 1;
        return;
    }
    rows.put(c);
    bCarry = false;
}

// The line goes into the row, cut or padded to 32 characters; the row stays
// until the next byte, so the display reads it first.
void KeyInput::takeLine(std::string& outString) {
    rows.setRow(rows.iCurRow, m_view.inputText());
    rows.iCurCol = 1;
    outString = rows.row(rows.iCurRow);
    m_view.setInputText("");
    rows.bClearRows = true;
    if (!m_nextLines.empty()) {
        m_view.setInputText(m_nextLines.front());
        m_nextLines.pop_front();
    } else if (bCarry) {
        m_view.setInputText(sCarry);
    }
    bCarry = false;
}

void KeyInput::notify(bool bShow, const std::string& sText) {
    if (!bShow) {
        m_view.showNotify(false, sText);
        m_timerNotify->setInterval(0);  // an interval of 0 stops the timer
        return;
    }
    m_view.showNotify(true, sText);
    m_timerNotify->setInterval(kNotifyMs);
    m_timerNotify->setEnabled(true);
    for (int i = 0; i < 3; ++i) m_tavo.doubleBeep();
}

std::string KeyInput::dump() const {
    std::string s = "Key: width=" + std::to_string(iWrapWidth);
    s += " col=" + std::to_string(rows.iCurCol);
    s += " waiting=" + std::to_string(m_nextLines.size());
    s += std::string(" clear=") + (rows.bClearRows ? "1" : "0");
    s += " carry=" + (bCarry ? "\"" + sCarry + "\"" : std::string("none"));
    s += " line=\"" + m_view.inputText() + "\" row1=\"" + rows.getExternalText(1) + "\"";
    s += std::string(" notice=") + (m_timerNotify->enabled() ? "on" : "off");
    return s;
}

}  // namespace zelvan
