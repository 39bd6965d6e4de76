#include "core/qthistorypane.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QTimer>

#include "platform/qtext.h"

namespace zelvan {

namespace {

// A line-21 stream has no line ends of its own, so a pane would hold one
// paragraph of up to 30000 characters, laid out again at every insert. Lines
// of the pane's width keep each insert cheap.
constexpr int kLineWidth = 56;

// A moment after the burst: long enough that a turn ended early by a null
// byte drains the rest of its caption before the widget takes the text.
constexpr int kRefreshMs = 2;

}  // namespace

QtHistoryPane::QtHistoryPane(QWidget* parent) : m_edit(new QPlainTextEdit(parent)) {
    m_edit->setReadOnly(true);
    m_edit->setUndoRedoEnabled(false);
    m_edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
}

// The capture loop drains a burst in one turn; the widget takes it a moment
// later in one edit, so a caption's frames never wait for the layout.
void QtHistoryPane::insertText(const std::string& bytes) {
    if (m_pending.empty() || !(m_pending.back().color == m_color))
        m_pending.push_back({m_color, {}});
    m_pending.back().text += bytes;
    m_length += static_cast<long>(bytes.size());
    scheduleFlush();
}

void QtHistoryPane::moveCaretToEnd() {
    m_scrollPending = true;
    scheduleFlush();
}

void QtHistoryPane::clear() {
    m_pending.clear();
    m_edit->clear();
    m_length = 0;
    m_lineLength = 0;
}

void QtHistoryPane::scheduleFlush() {
    if (m_flushScheduled) return;
    m_flushScheduled = true;
    QTimer::singleShot(kRefreshMs, m_edit, [this] { flush(); });
}

void QtHistoryPane::flush() {
    m_flushScheduled = false;
    for (const Run& run : m_pending) appendToWidget(run);
    m_pending.clear();
    if (m_scrollPending) {
        m_edit->moveCursor(QTextCursor::End);
        m_edit->verticalScrollBar()->setValue(m_edit->verticalScrollBar()->maximum());
        m_scrollPending = false;
    }
}

void QtHistoryPane::appendToWidget(const Run& run) {
    QTextCharFormat format;
    format.setForeground(QColor(run.color.r, run.color.g, run.color.b));
    QTextCursor cursor(m_edit->document());
    cursor.movePosition(QTextCursor::End);
    std::string segment;
    for (char c : run.text) {
        const bool lineEnd = c == '\n' || c == '\r';
        if (!lineEnd && m_lineLength >= kLineWidth) {
            cursor.insertText(toQString(segment), format);
            segment.clear();
            cursor.insertBlock();
            m_lineLength = 0;
        }
        segment += c;
        m_lineLength = lineEnd ? 0 : m_lineLength + 1;
    }
    cursor.insertText(toQString(segment), format);
}

}  // namespace zelvan
