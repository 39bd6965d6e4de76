#pragma once
// A history pane shown in a read-only text widget in a fixed-pitch font.

#include <QPlainTextEdit>
#include <QTextCharFormat>
#include <string>
#include <vector>

#include "core/historypane.h"
#include "platform/deferredrefresh.h"

namespace zelvan {

class QtHistoryPane : public HistoryPane {
  public:
    explicit QtHistoryPane(QWidget* parent);
    QPlainTextEdit* widget() const { return m_edit; }

    void setInsertColor(Rgb c) override { m_color = c; }
    void insertText(const std::string& bytes) override;
    void moveCaretToEnd() override;
    // Counted in bytes inserted: the widget folds CR LF into one line break,
    // and the limit is about what came in.
    long length() const override { return m_length; }
    void clear() override;

    // Puts what is waiting into the widget at once.
    void flush() { m_refresh.flush(); }

  private:
    struct Run {
        Rgb color;
        std::string text;
    };
    void applyPending();
    void appendRun(QTextCursor& cursor, const Run& run);

    QPlainTextEdit* m_edit;
    Rgb m_color = kBlack;
    long m_length = 0;
    int m_lineLength = 0;  // characters in the widget's last line
    std::vector<Run> m_pending;
    bool m_scrollPending = false;
    DeferredRefresh m_refresh{[this] { applyPending(); }};
};

}  // namespace zelvan
