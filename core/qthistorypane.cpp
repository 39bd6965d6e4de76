#include "core/qthistorypane.h"

#include <QFontDatabase>
#include <QScrollBar>

#include "platform/qtext.h"

namespace zelvan {

namespace {

// A line-21 stream has no line ends of its own, so a pane would hold one
// paragraph of up to 30000 characters, laid out again at every insert. Lines
// of the pane's width keep each insert cheap.
constexpr int kLineWidth = 56;

}  // namespace

QtHistoryPane::QtHistoryPane(QWidget* parent) : m_edit(new QPlainTextEdit(parent)) {
    m_edit->setReadOnly(true);
    m_edit->setUndoRedoEnabled(false);
    m_edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
}

// The widget takes a drained burst a moment later, in one edit.
void QtHistoryPane::insertText(const std::string& bytes) {
    if (m_pending.empty() || !(m_pending.back().color == m_color))
        m_pending.push_back({m_color, {}});
    m_pending.back().text += bytes;
    m_length += static_cast<long>(bytes.size());
    m_refresh.request();
}

void QtHistoryPane::moveCaretToEnd() {
    m_scrollPending = true;
    m_refresh.request();
}

void QtHistoryPane::clear() {
    m_pending.clear();
    m_edit->clear();
    m_length = 0;
    m_lineLength = 0;
}

// One edit block: the pane is laid out once for the whole burst, not once per
// colour run.
void QtHistoryPane::applyPending() {
    QTextCursor cursor(m_edit->document());
    cursor.movePosition(QTextCursor::End);
    cursor.beginEditBlock();
    for (const Run& run : m_pending) appendRun(cursor, run);
    cursor.endEditBlock();
    m_pending.clear();
    if (m_scrollPending) {
        m_edit->moveCursor(QTextCursor::End);
        m_edit->verticalScrollBar()->setValue(m_edit->verticalScrollBar()->maximum());
        m_scrollPending = false;
    }
}

void QtHistoryPane::appendRun(QTextCursor& cursor, const Run& run) {
    QTextCharFormat format;
    format.setForeground(QColor(run.color.r, run.color.g, run.color.b));
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
