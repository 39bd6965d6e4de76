#include "core/qthistorypane.h"

#include <QFontDatabase>
#include <QScrollBar>

#include "platform/qtext.h"

namespace zelvan {

QtHistoryPane::QtHistoryPane(QWidget* parent) : m_edit(new QTextEdit(parent)) {
    m_edit->setReadOnly(true);
    m_edit->setUndoRedoEnabled(false);
    m_edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_format.setForeground(Qt::black);
}

void QtHistoryPane::setInsertColor(Rgb c) {
    m_format.setForeground(QColor(c.r, c.g, c.b));
}

void QtHistoryPane::insertText(const std::string& bytes) {
    QTextCursor cursor(m_edit->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(toQString(bytes), m_format);
    m_length += static_cast<long>(bytes.size());
}

void QtHistoryPane::moveCaretToEnd() {
    m_edit->moveCursor(QTextCursor::End);
    m_edit->verticalScrollBar()->setValue(m_edit->verticalScrollBar()->maximum());
}

void QtHistoryPane::clear() {
    m_edit->clear();
    m_length = 0;
}

}  // namespace zelvan
