#pragma once
// A program state on Qt's event loop with the main window faked, and waits that
// run the loop under a deadline, so a fault fails a test instead of hanging it.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <functional>

#include "platform/qtdispatch.h"
#include "support/fakes.h"

namespace zelvan::testing {

// Runs the event loop until the condition holds or the deadline passes.
inline bool waitFor(const std::function<bool()>& done, int ms = 3000) {
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > ms) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::usleep(500);
    }
    return true;
}

// Runs the event loop for ms, as long as something takes to settle.
inline void settle(int ms) {
    waitFor([] { return false; }, ms);
}

template <typename Store = MemorySettingsStore>
using QtRigOf = RigOf<QtDispatch, Store>;
using QtRig = QtRigOf<>;

}  // namespace zelvan::testing
