#pragma once
// The control code reference window "Ascii": one rich text pane that fills
// it, showing ansi.rtf. A double-click on the pane closes the window.

#include <QTextBrowser>
#include <QWidget>

namespace zelvan {

class frmAnsiTable : public QWidget {
    Q_OBJECT
  public:
    explicit frmAnsiTable(QWidget* parent = nullptr);

    // Loads the reference into the pane; a file that is missing, empty or not
    // rich text leaves the pane empty or with what could be read.
    void loadFile(const QString& path);
    QTextBrowser* pane() const { return rtbAnsi; }

  protected:
    bool eventFilter(QObject* watched, QEvent* e) override;

  private:
    QTextBrowser* rtbAnsi = nullptr;
};

// Where the reference is read from: see findAnsiReference.
QString ansiReferencePath();

}  // namespace zelvan
