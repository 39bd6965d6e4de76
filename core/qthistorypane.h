#pragma once
// A history pane shown in a read-only rich text widget in a fixed-pitch font.

#include <QTextCharFormat>
#include <QTextEdit>

#include "core/historypane.h"

namespace zelvan {

class QtHistoryPane : public HistoryPane {
  public:
    explicit QtHistoryPane(QWidget* parent);
    QTextEdit* widget() const { return m_edit; }

    void setInsertColor(Rgb c) override;
    void insertText(const std::string& bytes) override;
    void moveCaretToEnd() override;
    // Counted in bytes inserted: the widget folds CR LF into one paragraph
    // break, and the limit is about what came in.
    long length() const override { return m_length; }
    void clear() override;

  private:
    QTextEdit* m_edit;
    QTextCharFormat m_format;
    long m_length = 0;
};

}  // namespace zelvan
