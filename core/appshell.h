#pragma once
// The window system as start-up, shutdown and the selections see it: it makes
// the windows, shows the splash and ends the process.

#include <QPointer>
#include <memory>

#include "core/mainview.h"
#include "line21/inl21.h"
#include "platform/boardlibrary.h"

namespace zelvan {

class EndSignals;
class SettingsStore;
class frmOutDW;
class frmSignPreview;
class frmMirror;
class WebMirror;
class frmHelp;
class frmTavo;

class AppShell : public Shell {
  public:
    AppShell();
    ~AppShell() override;
    void setBusyPointer(bool busy) override;
    void showSplash() override;
    MainConsole& showMainWindow(Tavo& tavo) override;
    std::unique_ptr<InputFilter> makeFilter(FilterKind kind, Tavo& tavo) override;
    std::unique_ptr<DisplayOutput> makeDisplay(Tavo& tavo) override;
    void showAbout() override;
    void showHelp() override;
    void showSignPreview() override;
    void showPhoneCaptions() override;
    void endProcess() override;

    frmTavo* mainWindow() const { return m_main; }
    InL21& decoder() { return m_inL21; }
    // The help window opened last; earlier ones stay open on their own.
    frmHelp* lastHelp() const;
    // "--no-splash" on the command line: start at once, for a restart during a
    // showing and for the end-to-end tests.
    void skipSplash(bool skip) { m_skipSplash = skip; }
    // "--sign-preview": the preview opens with the display window, so it
    // shows the startup caption too.
    void previewAtStart(bool open) { m_previewAtStart = open; }

  private:
    BoardLibrary& board(Tavo& tavo);

    frmTavo* m_main = nullptr;
    QPointer<frmHelp> m_help;
    // The one caption memory, shared by the two line-21 filters.
    InL21 m_inL21;
    // The timecode board outlives the windows that read it: made at the first
    // selection of its filter, it plays on while other filters are in use.
    std::unique_ptr<BoardLibrary> m_board;
    bool m_busy = false;
    bool m_skipSplash = false;
    bool m_previewAtStart = false;
    frmOutDW* m_display = nullptr;
    SettingsStore* m_store = nullptr;
    std::unique_ptr<frmSignPreview> m_preview;
    std::unique_ptr<WebMirror> m_mirror;
    std::unique_ptr<frmMirror> m_mirrorWindow;
    std::unique_ptr<EndSignals> m_endSignals;
};

}  // namespace zelvan
