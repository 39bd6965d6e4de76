// The capture pipeline: producers put bytes on the ring inside a yield, and the
// capture loop takes them off, shows them and runs them through the filter.

#include <string>

#include "core/tavo.h"

namespace zelvan {

Tavo::Tavo(EventDispatch& dispatch, SettingsStore& store, Tone& tone)
    : m_dispatch(dispatch), m_store(store), m_tone(tone) {
    GeneralTimer = m_dispatch.makeTimer([this] { GeneralTimer_Timer(); });
}

Tavo::~Tavo() = default;

bool& Tavo::flag(FilterKind kind) {
    switch (kind) {
        case FilterKind::L21Serial:
            return bInL21Serial;
        case FilterKind::L21USB:
            return bInL21USB;
        case FilterKind::Ascii:
            return bInAscii;
        case FilterKind::Key:
            return bInKey;
        case FilterKind::L21Video:
            return bInL21Video;
        case FilterKind::TDS:
            break;
    }
    return bInTDS;
}

InputFilter*& Tavo::filterRef(FilterKind kind) {
    switch (kind) {
        case FilterKind::L21Serial:
            return frmL21Serial;
        case FilterKind::L21USB:
            return frmL21USB;
        case FilterKind::Ascii:
            return frmInAscii;
        case FilterKind::Key:
            return frmInKey;
        case FilterKind::L21Video:
            return frmL21Video;
        case FilterKind::TDS:
            break;
    }
    return frmInTDS;
}

InputFilter* Tavo::selectedFilter() {
    for (FilterKind kind : kFilterOrder)
        if (flag(kind)) return filterRef(kind);
    return nullptr;
}

void Tavo::doStatus(const std::string& s) {
    if (view) view->doStatus(s);
}

// A producer that gets a whole ring ahead of the reader overwrites unread
// bytes without notice: there is no full test, by design.
void Tavo::queueByte(std::uint8_t b) {
    ++totalChars;
    if (view) view->setTotChars(std::to_string(totalChars));
    rawQueue[rawQueueIn - 1] = b;
    rawQueueIn = static_cast<std::int16_t>(rawQueueIn == kRawQueueSize ? 1 : rawQueueIn + 1);
}

std::string Tavo::dequeueByte() {
    std::string ch(1, static_cast<char>(rawQueue[rawQueueOut - 1]));
    rawQueueOut = static_cast<std::int16_t>(rawQueueOut == kRawQueueSize ? 1 : rawQueueOut + 1);
    return ch;
}

void Tavo::writeMarker(HistoryPane& pane, const char* text) {
    pane.insertText(vbCrLf + text + vbCrLf);
}

// Loops may stand on top of each other: a handler run in the yield may enter
// here again. Each loop writes its own marker pair, and one raised stop ends
// them all, innermost first.
void Tavo::captureLoop() {
    ++captureDepth;
    if (view) {
        view->rtbRawHistory().setInsertColor(kBlack);
        view->rtbReadHistory().setInsertColor(kBlack);
        writeMarker(view->rtbRawHistory(), "[*** START CAPTURE ***]");
        writeMarker(view->rtbReadHistory(), "[*** START CAPTURE ***]");
    }
    bStopCapture = false;
    while (!bStopCapture) pollInput();
    if (view) {
        for (HistoryPane* pane : {&view->rtbRawHistory(), &view->rtbReadHistory()}) {
            pane->moveCaretToEnd();
            writeMarker(*pane, "[*** END CAPTURE ***]");  // in the colour at the caret
            pane->moveCaretToEnd();
        }
    }
    --captureDepth;
}

// With nothing queued the yield may sleep until the next event, so a quiet
// capture loop doesn't keep a processor busy. A board raises no event: while
// it is selected the sleep is cut short, so it is still read a few hundred
// times a second.
void Tavo::pollInput() {
    if (!queueEmpty())
        m_dispatch.yield();
    else if (bInL21USB)
        m_dispatch.yieldOrWaitFor(kBoardPollMs);
    else
        m_dispatch.yieldOrWait();
    if (bInL21USB && frmL21USB) frmL21USB->readBoard();
    drainQueue();
}

void Tavo::showInPanes(const std::string& ch) {
    HistoryPane& raw = view->rtbRawHistory();
    if (raw.length() > kPaneLimit) {
        totalChars = 0;
        raw.clear();
    }
    raw.setInsertColor(kBlack);
    raw.insertText(ch);
    raw.moveCaretToEnd();

    HistoryPane& read = view->rtbReadHistory();
    if (read.length() > kPaneLimit) read.clear();
    const auto code = static_cast<unsigned char>(ch[0]);
    if (code < 32) {
        read.setInsertColor(kRed);
        read.insertText(std::string(1, static_cast<char>(code + 64)));
    } else {
        read.setInsertColor(kBlack);
        read.insertText(ch);
    }
    read.moveCaretToEnd();
}

void Tavo::drainQueue() {
    while (!queueEmpty()) {
        const std::string ch = dequeueByte();
        if (ch[0] == '\0') {
            doStatus("null byte");
            return;  // bytes behind the null wait for the next turn
        }
        doStatus("");
        if (view) showInPanes(ch);
        std::int16_t style = kStyleNothing;
        std::string line;
        if (InputFilter* filter = selectedFilter()) style = filter->filterEntry(ch, line);
        if (bOutDW && frmOutDW) frmOutDW->doInput(style, line);
    }
}

// One timer serves every wait: a wait started inside another re-arms it, and
// both end together when it fires.
void Tavo::startWaitTimer(std::int16_t ms) {
    bWaitDone = false;
    GeneralTimer->setInterval(ms);
    GeneralTimer->setEnabled(true);
}

void Tavo::GeneralTimer_Timer() {
    GeneralTimer->setInterval(0);
    GeneralTimer->setEnabled(false);
    bWaitDone = true;
}

void Tavo::timedWait(std::int16_t ms) {
    startWaitTimer(ms);
    while (!bWaitDone) pollInput();
}

std::string Tavo::getExternalText(std::int16_t i) {
    InputFilter* filter = selectedFilter();
    return filter ? filter->getExternalText(i) : std::string();
}

std::string Tavo::getExternalTextTrimmed(std::int16_t i) {
    InputFilter* filter = selectedFilter();
    return filter ? filter->getExternalTextTrimmed(i) : std::string();
}

}  // namespace zelvan
