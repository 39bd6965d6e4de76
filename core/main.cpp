// The entry routine: start-up runs here, possibly staying in the first capture
// loop, and then the program lives on in the event loop until exitProgram.

#include <QApplication>

#include "core/appshell.h"
#include "core/tavo.h"
#include "platform/alsatone.h"
#include "platform/qtdispatch.h"
#include "platform/qtsettingsstore.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Zelvan21"));
    zelvan::QtDispatch dispatch;
    zelvan::QtSettingsStore store;
    zelvan::AlsaTone tone;
    zelvan::Tavo tavo(dispatch, store, tone);
    zelvan::AppShell shell;
    const QStringList args = QApplication::arguments();
    shell.skipSplash(args.contains(QStringLiteral("--no-splash")));
    shell.previewAtStart(args.contains(QStringLiteral("--sign-preview")));
    tavo.startup(shell);
    return QApplication::exec();
}
