#pragma once
// "Input: Ascii (Keyboard)": the window of the keyboard filter. One input
// line under a column ruler, the wrap width box, "Send It" and a red notice
// label, bound to KeyInput, which holds the rules. The filter contract is
// forwarded to it.
//
// Keys typed into the input line reach KeyInput first; what it doesn't
// consume goes on to the box and is typed or edited as usual. F1 opens the
// help. The window refuses to be closed: it goes only through hideForm.

#include <QWidget>
#include <memory>

#include "core/mainview.h"
#include "core/windowplace.h"
#include "textinput/keyinput.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace zelvan {

class frmInKey : public QWidget, public InputFilter, public KeyView {
  public:
    frmInKey(Tavo& tavo, Shell& shell);
    ~frmInKey() override;

    // --- the filter contract, forwarded to the logic ---
    void showForm() override { m_input->showForm(); }
    void hideForm() override { m_input->hideForm(); }
    // Its close box hides it; typing goes on once it is back.
    void bringBack() override { bringWindowBack(this); }
    std::int16_t filterEntry(const std::string& inString, std::string& outString) override {
        return m_input->filterEntry(inString, outString);
    }
    std::string getExternalText(std::int16_t i) override { return m_input->getExternalText(i); }
    std::string getExternalTextTrimmed(std::int16_t i) override {
        return m_input->getExternalTextTrimmed(i);
    }

    KeyInput& input() { return *m_input; }

    // --- KeyView ---
    void placeWindow() override;
    void showWindow() override;
    void hideWindow() override;
    std::string inputText() const override;
    void setInputText(const std::string& text) override;
    void setWrapWidthText(const std::string& text) override;
    void showNotify(bool visible, const std::string& text) override;

    // The controls, for the tests and the screenshots.
    QLabel* Label1;
    QLineEdit* tbInput;
    QLabel* Label2;
    QLineEdit* tbWrapWidth;
    QPushButton* cmdSend;
    QLabel* lblNotify;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void buildControls();
    void bindControls();

    Shell& m_shell;
    std::unique_ptr<KeyInput> m_input;
};

}  // namespace zelvan
