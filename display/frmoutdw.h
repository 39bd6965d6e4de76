#pragma once
// "Halvane Display": the operator's window on the caption sign. It binds its
// controls to the display console and shows what the console and the serial
// link tell it. It refuses to close; it goes away only through hideForm.

#include <QMainWindow>
#include <array>
#include <functional>

#include "core/displayoutput.h"
#include "core/mainview.h"
#include "display/console.h"
#include "platform/deferredrefresh.h"
#include "platform/qtport.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QScrollBar;

namespace zelvan {

class frmOutDW : public QMainWindow,
                 public DisplayOutput,
                 public SerialLinkView,
                 private ConsoleView {
  public:
    frmOutDW(Tavo& tavo, Shell& shell);
    ~frmOutDW() override;

    // --- DisplayOutput ---
    void showForm() override { m_console.showForm(); }
    void hideForm() override { m_console.hideForm(); }
    void doInput(std::int16_t theStyle, const std::string& theLine) override {
        m_console.doInput(theStyle, theLine);
    }
    void showStartupBarker(bool bDoIt) override { m_console.showStartupBarker(bDoIt); }
    void DWErase() override { m_console.DWErase(); }
    std::int16_t rowsInUse() const override { return m_console.rowsInUse(); }

    // --- SerialLinkView ---
    void messageBox(const std::string& text, const std::string& detail) override;
    void alert(const std::string& text, const std::string& detail) override;
    void setOpenCaption(const std::string& caption) override;
    void setSetupCaption(const std::string& text, const std::string& refusal) override;
    void showReminder(bool) override {}  // the display reminds by notice
    void setNotice(const std::string& text) override;
    std::optional<PortSetup> askPortSetup(const PortSetup& current) override;

    DisplayConsole& console() { return m_console; }
    // For tests and screenshots: what the operator reads in the status bar.
    QString noticeText() const;

  protected:
    void closeEvent(QCloseEvent* e) override;

  private:
    // --- ConsoleView ---
    void showBox(ConsoleBox box, bool ticked) override;
    void showFilterCaption(const std::string& caption, int colour) override;
    void showScrollLines(int value) override;
    void showLinesText(const std::string& text) override;
    void showPending(const std::string& text) override;
    void placeWindow() override;
    void showWindow() override;
    void hideWindow() override;

    void buildControls();
    QWidget* buildPortFrame();
    QWidget* buildBoardFrame();
    QWidget* buildCommandButtons();
    QWidget* buildModeBoxes();
    QWidget* buildPendingBox();
    void bindBox(QCheckBox* box, const char* name, ConsoleBox which);
    QPushButton* button(const char* name, const char* caption, const std::function<void()>& action);
    void pendingEdited();
    void showPendingNow();
    void luckyCharm();
    std::string clipboardText() const;

    Tavo& m_tavo;
    Shell& m_shell;
    // The port is declared before the console, so it outlives the link.
    QtPort SerialPortOut;
    DisplayConsole m_console;

    QGroupBox* Frame1 = nullptr;
    QLabel* Label2 = nullptr;
    QPushButton* cmdPortOutSetup = nullptr;
    QPushButton* cmdPortOutOpen = nullptr;
    QLineEdit* tbOutDial = nullptr;
    QPushButton* cmdPortOutDial = nullptr;
    QPushButton* cmdPortOutHangup = nullptr;
    QGroupBox* Frame2 = nullptr;
    QCheckBox* chkRevOnCD = nullptr;
    QPlainTextEdit* tbPending = nullptr;
    std::string m_boxBytes;  // the pending text as the box shows it
    QCheckBox* chkFilter = nullptr;
    QCheckBox* chkInput = nullptr;
    QCheckBox* chkReverse = nullptr;
    QCheckBox* chkRollup = nullptr;
    QCheckBox* chkSunrise = nullptr;
    QLabel* Label1 = nullptr;
    QLineEdit* tbScrollLines = nullptr;
    QScrollBar* VScrollLines = nullptr;
    QLabel* m_statusPanel = nullptr;
    std::array<QCheckBox*, kConsoleBoxes> m_boxes{};
    // The engine sets the pending text at every byte; the box takes the latest
    // once the caption's frames are out.
    DeferredRefresh m_pendingRefresh{[this] { showPendingNow(); }};
};

}  // namespace zelvan
