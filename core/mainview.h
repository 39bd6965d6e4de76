#pragma once
// What the logic writes into the main window, and what start-up and shutdown
// ask of the window system. The window implements these; tests fake them.

#include <memory>
#include <string>

#include "core/displayoutput.h"
#include "core/historypane.h"
#include "core/inputfilter.h"

namespace zelvan {

class MainView {
  public:
    virtual ~MainView() = default;
    virtual HistoryPane& rtbRawHistory() = 0;
    virtual HistoryPane& rtbReadHistory() = 0;
    virtual void setTotChars(const std::string& text) = 0;  // txtTotChars
    virtual void doStatus(const std::string& text) = 0;     // first panel of sbStatus
    // Sets an option button or chkOutDW on screen without running its handler;
    // the caller runs the handler itself.
    virtual void showFilterOption(FilterKind kind) = 0;
    virtual void showOutDWValue(int value) = 0;
    // Draws what waits for the next refresh at once.
    virtual void showNow() {}
};

class MainConsole;
class Tavo;

class Shell {
  public:
    virtual ~Shell() = default;
    virtual void setBusyPointer(bool busy) = 0;
    // The splash, modal: returns when it has gone (5 seconds or a key).
    virtual void showSplash() = 0;
    // Creates the main window at the screen's top left and shows it.
    virtual MainConsole& showMainWindow(Tavo& tavo) = 0;
    virtual std::unique_ptr<InputFilter> makeFilter(FilterKind kind, Tavo& tavo) = 0;
    virtual std::unique_ptr<DisplayOutput> makeDisplay(Tavo& tavo) = 0;
    virtual void showAbout() = 0;
    virtual void showHelp() = 0;
    // Opens the sign preview, or brings it to the front.
    virtual void showSignPreview() {}
    // Opens the window of the captions on phones, or brings it to the front.
    virtual void showPhoneCaptions() {}
    // Ends the process; in the program this doesn't return.
    virtual void endProcess() = 0;
};

}  // namespace zelvan
