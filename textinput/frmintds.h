#pragma once
// "Input: TDS File": the window in which an operator steps through a prepared
// caption script. It shows the file, the caption on the sign and the one on
// deck, and binds its buttons, menu and keys to TdsInput, which holds the
// rules. The filter contract is forwarded to it.
//
// The window sees every key before its controls do and lets the control have
// it as well: PageDown sends, PageUp rewinds, E erases (an E typed into a
// text box also goes into the box), F1 opens the help, F5 plays or pauses a
// subtitle file. It refuses to be closed; it goes only through hideForm.

#include <QMainWindow>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>

#include "core/mainview.h"
#include "core/windowplace.h"
#include "textinput/tdsinput.h"

class QAction;
class QLabel;
class QLayout;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace zelvan {

class frmInTDS : public QMainWindow, public InputFilter, private TdsView {
  public:
    // Shows an open-file dialog and gives the chosen path, or nothing on Cancel.
    using FileChooser = std::function<std::optional<QString>(
        QWidget* parent, const QString& title, const QString& start, const QStringList& filters)>;

    frmInTDS(Tavo& tavo, Shell& shell);
    ~frmInTDS() override;

    // --- the filter contract, forwarded to the logic ---
    void showForm() override { m_input.showForm(); }
    void hideForm() override { m_input.hideForm(); }
    // Its close box hides it; the script stands where it was once it is back.
    void bringBack() override { bringWindowBack(this); }
    std::int16_t filterEntry(const std::string& inString, std::string& outString) override {
        return m_input.filterEntry(inString, outString);
    }
    std::string getExternalText(std::int16_t i) override { return m_input.getExternalText(i); }
    std::string getExternalTextTrimmed(std::int16_t i) override {
        return m_input.getExternalTextTrimmed(i);
    }

    TdsInput& input() { return m_input; }
    // Tests put a dialog of their own in place of Qt's.
    void setFileChooser(FileChooser chooser) { m_chooser = std::move(chooser); }
    // "Name (a;b)|*.a;*.b|..." as the name filters of a Qt file dialog.
    static QStringList nameFilters(const std::string& filter);

    // The controls, for the tests and the screenshots.
    QLineEdit* tbTDSFile;
    QPushButton* cmdSelectTDSFile;
    QLineEdit* tbTCOffset;
    QPlainTextEdit* rtbCaptionCurrent;
    QPlainTextEdit* rtbCaptionNext;
    QPushButton* bSend;
    QPushButton* bRewind;
    QPushButton* bErase;
    QAction* mnuFileOpen;
    QAction* mnuSend;
    QAction* mnuCaptionRewind;
    QAction* mnuErase;
    QPushButton* cmdPlay;
    QLabel* lblClock;
    QLineEdit* tbStartAt;
    QLineEdit* tbOffset;
    QAction* mnuPlayPause;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // --- TdsView ---
    void placeWindow() override;
    void showWindow() override;
    void hideWindow() override;
    std::optional<std::string> chooseFile(const std::string& title, const std::string& start,
                                          const std::string& filter) override;
    void setFileName(const std::string& name) override;
    void setOffsetText(const std::string& text) override;
    void setDisplayedText(const std::string& text) override;
    void setOnDeckText(const std::string& text) override;
    void focusSend() override;
    void showHelp() override;
    void showPlayState(bool enabled, bool playing) override;
    void setClockText(const std::string& text) override;
    void setPlaybackBoxes(const std::string& startAt, const std::string& offset) override;

    void buildControls();
    QLayout* buildPlaybackControls();
    void buildMenus();

    Shell& m_shell;
    TdsInput m_input;
    FileChooser m_chooser;
};

}  // namespace zelvan
