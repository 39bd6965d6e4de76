#include "core/appshell.h"

#include <unistd.h>
#include <QApplication>
#include <QScreen>
#include <cstdio>

#include "core/frmtavo.h"
#include "core/placeholders.h"
#include "display/frmoutdw.h"
#include "line21/frml21serial.h"
#include "support/datafiles.h"
#include "support/frmhelp.h"
#include "support/frmsplash.h"

namespace zelvan {

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

MainConsole& AppShell::showMainWindow(Tavo& tavo) {
    m_main = new frmTavo(tavo, *this);
    m_main->move(0, 0);
    m_main->show();
    return m_main->console();
}

std::unique_ptr<InputFilter> AppShell::makeFilter(FilterKind kind, Tavo& tavo) {
    if (kind == FilterKind::L21Serial) return std::make_unique<frmL21Serial>(tavo, m_inL21, *this);
    return std::make_unique<PlaceholderFilter>(kind, tavo);
}

std::unique_ptr<DisplayOutput> AppShell::makeDisplay(Tavo& tavo) {
    return std::make_unique<frmOutDW>(tavo, *this);
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
