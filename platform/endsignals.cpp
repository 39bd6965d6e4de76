#include "platform/endsignals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <cerrno>

namespace zelvan {

namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

// The write end of the latest watcher's pipe: one set of handlers serves the process.
volatile sig_atomic_t g_wake = -1;

void setHandler(void (*handler)(int)) {
    struct sigaction sa {};
    sa.sa_handler = handler;
    // While the handler runs the others wait, and then meet the default action.
    sigemptyset(&sa.sa_mask);
    for (int s : kSignals) sigaddset(&sa.sa_mask, s);
    sa.sa_flags = SA_RESTART;
    for (int s : kSignals) ::sigaction(s, &sa, nullptr);
}

// Async-signal-safe calls only.
void onSignal(int) {
    const int saved = errno;
    setHandler(SIG_DFL);
    const char byte = 1;
    [[maybe_unused]] const ssize_t n = ::write(g_wake, &byte, 1);
    errno = saved;
}

}  // namespace

EndSignals::EndSignals(std::function<void()> onEnd) : m_onEnd(std::move(onEnd)) {
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC | O_NONBLOCK) != 0) return;  // signals keep their default
    m_wake = fds[1];
    g_wake = m_wake;
    m_notifier = std::make_unique<QSocketNotifier>(fds[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this] { arrived(); });
    setHandler(onSignal);
}

// A later watcher has taken the signals over; this one only lets go of its pipe.
EndSignals::~EndSignals() {
    if (!m_notifier) return;
    if (g_wake == m_wake) {
        setHandler(SIG_DFL);
        g_wake = -1;
    }
    ::close(static_cast<int>(m_notifier->socket()));
    ::close(m_wake);
}

// The orderly end doesn't return: it ends the process.
void EndSignals::arrived() {
    m_notifier->setEnabled(false);
    m_onEnd();
}

}  // namespace zelvan
