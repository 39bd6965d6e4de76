#pragma once
// The window system as start-up, shutdown and the selections see it: it makes
// the windows, shows the splash and ends the process.

#include <QPointer>

#include "core/mainview.h"
#include "line21/inl21.h"

namespace zelvan {

class frmHelp;
class frmTavo;

class AppShell : public Shell {
  public:
    void setBusyPointer(bool busy) override;
    void showSplash() override;
    MainConsole& showMainWindow(Tavo& tavo) override;
    std::unique_ptr<InputFilter> makeFilter(FilterKind kind, Tavo& tavo) override;
    std::unique_ptr<DisplayOutput> makeDisplay(Tavo& tavo) override;
    void showAbout() override;
    void showHelp() override;
    void endProcess() override;

    frmTavo* mainWindow() const { return m_main; }
    // The help window opened last; earlier ones stay open on their own.
    frmHelp* lastHelp() const;
    // "--no-splash" on the command line: start at once, for a restart during a
    // showing and for the end-to-end tests.
    void skipSplash(bool skip) { m_skipSplash = skip; }

  private:
    frmTavo* m_main = nullptr;
    QPointer<frmHelp> m_help;
    // The one caption memory, shared by the two line-21 filters.
    InL21 m_inL21;
    bool m_busy = false;
    bool m_skipSplash = false;
};

}  // namespace zelvan
