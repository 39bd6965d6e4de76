#pragma once
// "Input: Line-21 (Digital Video)": the window of the digital video filter.
// It takes a file or URL, the field and Loop, shows what the source carries
// and how far it has played, and the caption memory with the panes and test
// buttons of the other line-21 windows. The rules are L21VideoInput's; the
// filter contract is forwarded to it.
//
// The window has a fixed size and refuses to be closed: it goes only through
// hideForm. F1 opens the help.

#include <QWidget>
#include <memory>

#include "core/mainview.h"
#include "line21/l21videoinput.h"
#include "line21/memorypanes.h"
#include "platform/deferredrefresh.h"
#include "platform/mediareader.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace zelvan {

class frmL21Video : public QWidget, public L21FilterWindow, public L21VideoView {
  public:
    frmL21Video(Tavo& tavo, InL21& memory, Shell& shell);
    ~frmL21Video() override;

    L21VideoInput& input() { return *m_input; }

    // --- L21VideoView ---
    void placeWindow() override;
    void showWindow() override;
    void hideWindow() override { hide(); }
    void messageBox(const std::string& text, const std::string& detail) override;
    void setOpenCaption(const std::string& caption) override;
    void showSettings(const VideoSettings& settings) override;
    void showStream(const std::string& text) override;
    void showPosition(long long ms) override;
    void showPairCount(long count) override;
    void setNotice(const std::string& text) override;
    void setDMText(const std::string& text) override { panes.setDMText(text); }
    void setNMText(const std::string& text) override { panes.setNMText(text); }
    void showChannel(std::int16_t index) override { panes.showChannel(index); }

    // The controls, for the tests and the screenshots.
    QLineEdit* txtSource;
    QPushButton* cmdBrowse;
    QPushButton* cmdOpen;
    QRadioButton* obField1;
    QRadioButton* obField2;
    QCheckBox* chkLoop;
    QLabel* lblStream;
    QLabel* lblPosition;
    QLabel* lblPairs;
    QLabel* lblNotice;
    MemoryPanes panes;

  protected:
    L21Window& rules() override { return *m_input; }
    void closeEvent(QCloseEvent* e) override;

  private:
    void buildControls();
    void layOutControls();
    void bindControls();
    void cmdBrowse_Click();
    void showPlayState();

    Shell& m_shell;
    // The reader outlives the logic, which closes it as it goes.
    MediaReader m_reader;
    std::unique_ptr<L21VideoInput> m_input;
    // The position and count change at every picture; the labels take them
    // at most ten times a second.
    long long m_positionMs = 0;
    long m_pairCount = 0;
    DeferredRefresh m_playState{[this] { showPlayState(); }};
};

}  // namespace zelvan
