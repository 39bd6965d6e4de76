#pragma once
// "Input: Ascii (Serial)": the window of the ASCII serial filter. The port
// controls in the frame "Data Hardware:", the row memory in the pane
// "Displayed Memory:" and the wrap width box, bound to AsciiInput, which holds
// the rules. The filter contract is forwarded to it.
//
// The window has a fixed size and refuses to be closed: it goes only through
// hideForm. F1 opens the help.

#include <QWidget>
#include <memory>

#include "core/mainview.h"
#include "platform/deferredrefresh.h"
#include "platform/qtport.h"
#include "textinput/asciiinput.h"

class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace zelvan {

class frmInAscii : public QWidget, public InputFilter, public AsciiView {
  public:
    frmInAscii(Tavo& tavo, Shell& shell);
    ~frmInAscii() override;

    // --- the filter contract, forwarded to the logic ---
    void showForm() override { m_input->showForm(); }
    void hideForm() override { m_input->hideForm(); }
    std::int16_t filterEntry(const std::string& inString, std::string& outString) override {
        return m_input->filterEntry(inString, outString);
    }
    std::string getExternalText(std::int16_t i) override { return m_input->getExternalText(i); }
    std::string getExternalTextTrimmed(std::int16_t i) override {
        return m_input->getExternalTextTrimmed(i);
    }

    AsciiInput& input() { return *m_input; }
    // Brings rtbDM up to date now, for reading it back.
    void flushPane() { m_dmRefresh.flush(); }

    // --- AsciiView ---
    void messageBox(const std::string& text, const std::string& detail) override;
    void alert(const std::string& text, const std::string& detail) override;
    void setOpenCaption(const std::string& caption) override;
    void setSetupCaption(const std::string& text, const std::string& refusal) override;
    void showReminder(bool visible) override;
    void setNotice(const std::string& text) override;
    std::optional<PortSetup> askPortSetup(const PortSetup& current) override;
    void placeWindow() override;
    void showWindow() override;
    void hideWindow() override;
    void setDMText(const std::string& text) override;
    void setWrapWidthText(const std::string& text) override;

    // The controls, for the tests and the screenshots.
    QGroupBox* fraSerial;
    QPushButton* cmdPortSetup;
    QPushButton* cmdPortOpen;
    QLineEdit* tbDial;
    QPushButton* cmdPortDial;
    QPushButton* cmdPortHangup;
    QLabel* lblOpenPortDummy;
    QLabel* lblNotice;
    QPlainTextEdit* rtbDM;
    QLineEdit* tbWrapWidth;

  protected:
    void closeEvent(QCloseEvent* e) override;

  private:
    void buildControls();
    void bindControls();

    Shell& m_shell;
    // The port outlives the link inside the logic, which unhooks its events.
    QtPort SerialPort;
    std::unique_ptr<AsciiInput> m_input;
    // The pane follows the row memory at each byte; it takes the latest text
    // once a burst is filtered.
    std::string m_dmText;
    DeferredRefresh m_dmRefresh;
};

}  // namespace zelvan
