#pragma once
// "Line-21 Decoder": the window of the line-21 serial filter. It shows the two
// banks of the caption memory with rulers, the port buttons and the test
// buttons, and binds them to L21SerialInput, which holds the rules. The
// filter contract is forwarded to it.
//
// The window has a fixed size and refuses to be closed: it goes only through
// hideForm. F1 opens the help.

#include <QWidget>
#include <memory>

#include "core/mainview.h"
#include "line21/l21serialinput.h"
#include "line21/memorypanes.h"
#include "platform/qtport.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace zelvan {

class frmSerialConfig;

class frmL21Serial : public QWidget, public L21FilterWindow, public L21SerialView {
  public:
    frmL21Serial(Tavo& tavo, InL21& memory, Shell& shell);
    ~frmL21Serial() override;

    L21SerialInput& input() { return *m_input; }
    // The setup window of the last click on cmdPortSetup, or null.
    frmSerialConfig* setupWindow() const { return m_setup.get(); }

    // --- L21SerialView ---
    void messageBox(const std::string& text, const std::string& detail) override;
    void alert(const std::string& text, const std::string& detail) override;
    void setOpenCaption(const std::string& caption) override;
    void setSetupCaption(const std::string& text, const std::string& refusal) override;
    void showReminder(bool visible) override;
    void setNotice(const std::string& text) override;
    void placeWindow() override;
    void showWindow() override;
    void hideWindow() override;
    void setDMText(const std::string& text) override { panes.setDMText(text); }
    void setNMText(const std::string& text) override { panes.setNMText(text); }
    void showChannel(std::int16_t index) override { panes.showChannel(index); }

    // The controls, for the tests and the screenshots.
    QPushButton* cmdPortSetup;
    QPushButton* cmdPortOpen;
    QLineEdit* tbDial;
    QPushButton* cmdPortDial;
    QPushButton* cmdPortHangup;
    QLabel* lblOpenPortDummy;
    QLabel* lblNotice;
    QPushButton* Command1;
    MemoryPanes panes;

  protected:
    L21Window& rules() override { return *m_input; }
    void closeEvent(QCloseEvent* e) override;

  private:
    void buildControls();
    void layOutControls();
    void bindControls();
    void cmdPortSetup_Click();

    Shell& m_shell;
    // The port outlives the link inside the logic, which unhooks its events.
    QtPort SerialPort;
    std::unique_ptr<L21SerialInput> m_input;
    // Writes into the link of m_input, so it goes first.
    std::unique_ptr<frmSerialConfig> m_setup;
};

}  // namespace zelvan
