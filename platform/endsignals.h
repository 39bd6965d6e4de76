#pragma once
// SIGTERM, SIGINT and SIGHUP, as a session manager, Ctrl-C or a closed
// terminal send them, turned into an event of the event loop: the handler only
// writes to a pipe, and a socket notifier runs the program's orderly end. From
// the first signal on the three take their default action again, so a second
// one ends the process at once, whatever the orderly end is doing.

#include <functional>
#include <memory>

class QSocketNotifier;

namespace zelvan {

class EndSignals {
  public:
    explicit EndSignals(std::function<void()> onEnd);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

  private:
    void arrived();

    std::function<void()> m_onEnd;
    std::unique_ptr<QSocketNotifier> m_notifier;
    int m_wake = -1;
};

}  // namespace zelvan
