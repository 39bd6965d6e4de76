#pragma once
// "Input: Line-21 USB": the window of the timecode board filter. It lists the
// boards found, shows the two banks of the caption memory with rulers and the
// test buttons, and binds them to L21BoardInput, which holds the rules. The
// filter contract is forwarded to it.
//
// The window has a fixed size and refuses to be closed: it goes only through
// hideForm. F1 opens the help. Its first activation starts capture.

#include <QWidget>
#include <memory>

#include "core/mainview.h"
#include "line21/l21boardinput.h"
#include "line21/memorypanes.h"

class QComboBox;
class QPushButton;

namespace zelvan {

class frmL21USB : public QWidget, public L21FilterWindow, public L21BoardView {
  public:
    frmL21USB(Tavo& tavo, InL21& memory, BoardLibrary& library, Shell& shell);
    ~frmL21USB() override;

    L21BoardInput& input() { return *m_input; }

    // --- L21BoardView ---
    void placeWindow() override;
    void showWindow() override;
    void hideWindow() override;
    void addBoardEntry(const std::string& text) override;
    void showBoardSelection(int index) override;
    void setDMText(const std::string& text) override { panes.setDMText(text); }
    void setNMText(const std::string& text) override { panes.setNMText(text); }
    void showChannel(std::int16_t index) override { panes.showChannel(index); }

    // The controls, for the tests and the screenshots.
    QComboBox* cboBrdLst;
    QPushButton* cmdStart;
    MemoryPanes panes;

  protected:
    L21Window& rules() override { return *m_input; }
    bool event(QEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

  private:
    void buildControls();
    void layOutControls();
    void bindControls();

    Tavo& m_tavo;
    Shell& m_shell;
    std::unique_ptr<L21BoardInput> m_input;
};

}  // namespace zelvan
