#include "core/appshell.h"

#include <unistd.h>
#include <QApplication>
#include <QScreen>
#include <cstdio>

#include "core/frmtavo.h"
#include "display/frmoutdw.h"
#include "display/frmsignpreview.h"
#include "display/mirror/frmmirror.h"
#include "line21/frml21serial.h"
#include "line21/frml21usb.h"
#include "line21/frml21video.h"
#include "platform/accessiblewindows.h"
#include "platform/endsignals.h"
#include "platform/simulatedboard.h"
#include "support/datafiles.h"
#include "support/frmhelp.h"
#include "support/frmsplash.h"
#include "textinput/frminascii.h"
#include "textinput/frminkey.h"
#include "textinput/frmintds.h"

namespace zelvan {

AppShell::AppShell() {
    presentWindowsToScreenReaders();
}
AppShell::~AppShell() = default;

void AppShell::setBusyPointer(bool busy) {
    if (busy && !m_busy) QApplication::setOverrideCursor(Qt::WaitCursor);
    if (!busy && m_busy) QApplication::restoreOverrideCursor();
    m_busy = busy;
}

void AppShell::showSplash() {
    if (m_skipSplash) return;
    frmSplash splash;
    splash.timerSplashGoAway.setInterval(5000);
    splash.timerSplashGoAway.start();
    splash.exec();
}

// Start-up makes the main window right after loadSettings: the decoder reads
// its own section here, and its Input menu entry saves the setting at once.
// From here on a signal to end the program takes the Exit button's road;
// before, nothing has been loaded that could be saved, nor sent to the sign.
MainConsole& AppShell::showMainWindow(Tavo& tavo) {
    m_endSignals = std::make_unique<EndSignals>([&tavo] { tavo.exitProgram(); });
    m_inL21.loadDecoderSettings(tavo.store());
    m_main = new frmTavo(tavo, *this);
    m_main->addInputSetting(QStringLiteral("Broadcast EDM (keep position)"),
                            m_inL21.EdmKeepsPosition, [this, &tavo](bool on) {
                                m_inL21.EdmKeepsPosition = on;
                                m_inL21.saveDecoderSettings(tavo.store());
                                tavo.store().sync();
                            });
    m_main->move(0, 0);
    m_main->show();
    return m_main->console();
}

std::unique_ptr<InputFilter> AppShell::makeFilter(FilterKind kind, Tavo& tavo) {
    if (kind == FilterKind::L21Serial) return std::make_unique<frmL21Serial>(tavo, m_inL21, *this);
    if (kind == FilterKind::L21USB)
        return std::make_unique<frmL21USB>(tavo, m_inL21, board(tavo), *this);
    if (kind == FilterKind::L21Video) return std::make_unique<frmL21Video>(tavo, m_inL21, *this);
    if (kind == FilterKind::Ascii) return std::make_unique<frmInAscii>(tavo, *this);
    if (kind == FilterKind::Key) return std::make_unique<frmInKey>(tavo, *this);
    return std::make_unique<frmInTDS>(tavo, *this);
}

// This machine has no board library: the board is the simulated one, set up
// by the settings section "Board".
BoardLibrary& AppShell::board(Tavo& tavo) {
    if (!m_board)
        m_board = std::make_unique<SimulatedBoard>(readBoardSettings(tavo.store()),
                                                   [&tavo] { return tavo.dispatch().nowMs(); });
    return *m_board;
}

std::unique_ptr<DisplayOutput> AppShell::makeDisplay(Tavo& tavo) {
    auto display = std::make_unique<frmOutDW>(tavo, *this);
    m_display = display.get();
    m_store = &tavo.store();
    m_mirror = std::make_unique<WebMirror>(m_display->console().link(), tavo.dispatch(), *m_store);
    if (m_previewAtStart) showSignPreview();
    return display;
}

void AppShell::showSignPreview() {
    if (!m_display) return;
    if (!m_preview)
        m_preview = std::make_unique<frmSignPreview>(m_display->console().link(), *m_store);
    m_preview->show();
    m_preview->raise();
}

void AppShell::showPhoneCaptions() {
    if (!m_mirror) return;
    if (!m_mirrorWindow) m_mirrorWindow = std::make_unique<frmMirror>(*m_mirror);
    m_mirrorWindow->show();
    m_mirrorWindow->raise();
}

void AppShell::showAbout() {
    auto* about = new frmSplash(m_main);
    about->setAttribute(Qt::WA_DeleteOnClose);
    about->show();
}

// A new window each time, on the right half of the screen, 100 twips (7
// pixels) left of the middle, at the main window's height.
void AppShell::showHelp() {
    auto* help = new frmHelp;
    help->setAttribute(Qt::WA_DeleteOnClose);
    help->StartingAddress =
        QString::fromStdString(findHelpIndex(QCoreApplication::applicationDirPath().toStdString()));
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    help->move(screen.width() / 2 - 100 / 15, m_main ? m_main->y() : 0);
    help->resize(screen.width() / 2, screen.height());
    help->show();
    m_help = help;
}

frmHelp* AppShell::lastHelp() const {
    return m_help;
}

// The process ends here, from inside whatever event asked for it: no capture
// loop below gets control back, and no window is torn down first.
void AppShell::endProcess() {
    std::fflush(nullptr);
    ::_exit(0);
}

}  // namespace zelvan
