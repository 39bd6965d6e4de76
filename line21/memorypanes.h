#pragma once
// The parts the line-21 windows are built of: the two memory panes with their
// rulers, the test buttons, the channel list, and the main window that owns
// them on screen.

#include <cstdint>
#include <string>

#include "platform/deferredrefresh.h"

class QGridLayout;
class QHBoxLayout;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QWidget;

namespace zelvan {

class L21Window;

// The caption memory as each line-21 window shows it: the two banks side by
// side, each with its test buttons below, FLIP and INIT for the window's top
// row, and the hidden channel list. The controls are children of the window.
class MemoryPanes {
  public:
    explicit MemoryPanes(QWidget* window);
    // The two banks with their test rows.
    QHBoxLayout* banksLayout();
    // Binds the controls to the window's logic.
    void bind(L21Window& input);

    // The decoder sets both memories at every byte of the active channel; each
    // pane takes the latest text once the burst is decoded and its frames are out.
    void setDMText(const std::string& text);
    void setNMText(const std::string& text);
    void showChannel(std::int16_t index);

    QListWidget* lbChannel;
    QPlainTextEdit* rtbDM;
    QPlainTextEdit* rtbNM;
    QPushButton* cmdEDM;
    QPushButton* cmdFillDM;
    QPushButton* cmdShowDM;
    QPushButton* cmdENM;
    QPushButton* cmdFillNM;
    QPushButton* cmdShowNM;
    QPushButton* cmdFlip;
    QPushButton* cmdInit;

  private:
    QWidget* m_window;
    std::string m_dmText, m_nmText;
    DeferredRefresh m_dmRefresh;
    DeferredRefresh m_nmRefresh;
};

// A memory pane: 15 lines of 32 characters in a fixed-pitch font.
QPlainTextEdit* makePane(QWidget* parent, const char* name);
// The label above, the column ruler, the row ruler beside and the pane.
QGridLayout* memoryBlock(QWidget* parent, const char* label, QPlainTextEdit* pane);
QPushButton* makeButton(QWidget* parent, const char* name, const char* caption);
// "Disp:" or "NonDisp:" and its three test buttons.
QHBoxLayout* testRow(QWidget* parent, const char* label, QPushButton* erase, QPushButton* fill,
                     QPushButton* show);
// The main window, or null before it is made.
QWidget* mainWindow();
// Shows w modeless, kept above the main window by the window manager.
void showOwnedByMainWindow(QWidget* w);

}  // namespace zelvan
