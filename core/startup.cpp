// The program's start and its orderly end.

#include "core/mainconsole.h"
#include "core/tavo.h"

namespace zelvan {

void Tavo::doubleBeep() {
    zelvan::doubleBeep(m_tone);
}

void Tavo::resetState() {
    ObfuscateType = 0;
    Obfuscate = false;
    vbCrLf = "\r\n";
    bStopCapture = false;
    emptyQueue();
}

// Selecting the line-21 serial filter at the end opens its port and enters the
// capture loop, so this may not return until that first capture stops.
void Tavo::startup(Shell& theShell) {
    shell = &theShell;
    theShell.setBusyPointer(true);
    theShell.showSplash();
    theShell.setBusyPointer(false);
    resetState();
    loadSettings();
    MainConsole& main = theShell.showMainWindow(*this);
    view->showOutDWValue(1);
    main.chkOutDW_Click(1);
    if (InputFilterType == 1) {
        bInL21Serial = true;
        view->showFilterOption(FilterKind::L21Serial);
        main.obIFL21Serial_Click();
    } else if (InputFilterType == 2) {
        bInL21USB = true;
        view->showFilterOption(FilterKind::L21USB);
        main.obIFL21USB_Click();
    } else if (InputFilterType == 6) {
        bInL21Video = true;
        view->showFilterOption(FilterKind::L21Video);
        main.obIFL21Video_Click();
    }
}

// Runs inside an event, perhaps inside a capture loop, and ends the process
// without going back to it. A second exit during the yields runs all of this
// again inside the first, and the process ends there.
void Tavo::exitProgram() {
    if (frmOutDW) {
        if (ExitDisplayTask == 1)
            frmOutDW->showStartupBarker(true);
        else if (ExitDisplayTask == 2)
            frmOutDW->DWErase();
    }
    for (int i = 0; i < 10000; ++i) m_dispatch.yield();
    doStatus("Closing input filter. Stand by...");
    if (view) view->showNow();  // the process may end before the next refresh
    if (shell) shell->setBusyPointer(true);
    if (bOutDW && frmOutDW) frmOutDW->hideForm();
    if (bInL21Serial && frmL21Serial) frmL21Serial->hideForm();
    if (bInL21USB && frmL21USB) frmL21USB->hideForm();
    if (bInL21Video && frmL21Video) frmL21Video->hideForm();
    saveSettings();
    m_store.sync();
    if (shell) {
        shell->setBusyPointer(false);
        shell->endProcess();
    }
}

}  // namespace zelvan
