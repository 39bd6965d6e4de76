// The line output engine: from a filter's style and rows to frames on the sign.

#include "display/lineoutput.h"

#include <algorithm>

#include "core/inputfilter.h"
#include "core/readable.h"
#include "core/tavo.h"
#include "support/obfuscate.h"

namespace zelvan {

LineOutput::LineOutput(Tavo& tavo, DisplayLink& link) : DisplayProtocol(link), m_tavo(tavo) {}

// iLines is 1 to 3 while the window keeps it; a value outside that range must
// not reach past the three slots.
int LineOutput::slotsInUse() const {
    return std::clamp<int>(iLines, 0, kSignRows);
}

void LineOutput::doInput(std::int16_t theStyle, const std::string&) {
    if (!bListen) return;
    if (!bBufferRollup) {
        pullRows();
    } else if (theStyle == kStyleLineEnded) {
        pullRowsAt(iNextRow);
        ++iNextRow;
    } else if (theStyle == kStyleRows) {
        pullRows();
    } else {
        pullRowsAt(iNextRow);
    }
    showPending();
    emitLines(theStyle);
    // Also catches a line count lowered below the next slot.
    if (iNextRow > iLines) {
        iLineCount = 0;
        iNextRow = 1;
    }
}

// The first non-empty rows of the 15 become slots 1 upward, empty rows squeezed
// out; slots above the new count keep their old text.
void LineOutput::pullRows() {
    iLineCount = 0;
    std::int16_t j = 1;
    for (std::int16_t i = 1; i <= kFilterRows && j <= slotsInUse(); ++i) {
        std::string text = m_tavo.getExternalText(i);
        if (text.empty()) continue;
        sLines[static_cast<std::size_t>(j)] = std::move(text);
        iLineCount = j;
        ++j;
    }
}

// Like pullRows from slot iRow on, but the count isn't cleared first: with all
// rows empty it stays as it was.
void LineOutput::pullRowsAt(std::int16_t iRow) {
    std::int16_t j = iRow;
    for (std::int16_t i = 1; i <= kFilterRows && j <= slotsInUse(); ++i) {
        std::string text = m_tavo.getExternalText(i);
        if (text.empty()) continue;
        if (j >= 1) {
            sLines[static_cast<std::size_t>(j)] = std::move(text);
            iLineCount = j;
        }
        ++j;
    }
}

void LineOutput::showPending() {
    tbPending.clear();
    const int count = std::min<int>(iLineCount, kSignRows);
    for (int i = 1; i <= count; ++i) {
        if (i > 1) tbPending += m_tavo.vbCrLf;
        tbPending += sLines[static_cast<std::size_t>(i)];
    }
    if (m_listener) m_listener->pendingChanged(tbPending);
}

void LineOutput::emitLines(std::int16_t theStyle) {
    if (!bFilterOn) return;
    if (!bBufferRollup) {
        sendCaption(theStyle);
        return;
    }
    if (theStyle == kStyleLineEnded) {
        if (iLineCount != iLines) return;
        sendCaption(theStyle);
        // Reset whether or not the port took the block: those lines are gone.
        iLineCount = 0;
    } else if (theStyle == kStyleRows) {
        sendCaption(theStyle);
    }
}

// A closed port drops the caption without a notice: a notice per input byte
// would bury the operator.
void LineOutput::sendCaption(std::int16_t theStyle) {
    if (!link().isPortOpen()) return;
    if (theStyle == kStyleRows) {
        if (iLineCount != 0)
            paintLines();
        else
            DWErase();
    } else if (theStyle == kStyleLineEnded) {
        if (!bBufferRollup) {
            rollLines();
        } else if (iNextRow > iLines) {
            paintLines();
            iLineCount = 0;
            iNextRow = 1;
        }
    }
}

// The pop-on path: dimmed while the rows are rewritten, bright again after.
void LineOutput::paintLines() {
    sendDim();
    DWErase();
    const int count = std::min<int>(iLineCount, kSignRows);
    for (std::int16_t i = 1; i <= count; ++i)
        writeLine(obfuscateText(m_tavo, sLines[static_cast<std::size_t>(i)]), i, 1);
    sendBright();
}

// The roll-up path: each line scrolls the sign and lands on the bottom row in use.
void LineOutput::rollLines() {
    sendBright();
    const int count = std::min<int>(iLineCount, kSignRows);
    for (int i = 1; i <= count; ++i) {
        sendRollup();
        writeLine(obfuscateText(m_tavo, sLines[static_cast<std::size_t>(i)]), iLines, 1);
    }
}

void LineOutput::setBufferRollup(bool on) {
    bBufferRollup = on;
    iLineCount = 0;
    iNextRow = 1;
}

// The music note needs no setting up here: it is a fixed character of the code page.
void LineOutput::showStartupBarker(bool bDoIt) {
    DWErase();
    if (!bDoIt && !m_tavo.DoStartupBarker) return;
    const int count = std::min<int>(m_tavo.barkerLineCount, kBarkerSlots);
    for (std::int16_t i = 1; i <= count; ++i)
        writeLine(m_tavo.barkerLines[static_cast<std::size_t>(i - 1)], i, 1);
}

std::string LineOutput::dump() const {
    auto flag = [](bool b) { return b ? "1" : "0"; };
    std::string out = std::string("listen=") + flag(bListen) + " filter=" + flag(bFilterOn) +
                      " buffer=" + flag(bBufferRollup) + " sunrise=" + flag(bSunrise) +
                      " reverse=" + flag(bReverse) + " front=" + flag(bBoardFront) +
                      " lines=" + std::to_string(iLines) + " count=" + std::to_string(iLineCount) +
                      " next=" + std::to_string(iNextRow) + "\n";
    for (int i = 1; i <= kSignRows; ++i)
        out +=
            std::to_string(i) + ": \"" + toReadable(sLines[static_cast<std::size_t>(i)]) + "\"\n";
    return out;
}

}  // namespace zelvan
