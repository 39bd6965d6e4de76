#pragma once
// Event dispatch on virtual time, for tests: a 5-second timer or a 1500 ms wait
// runs in microseconds, and the order of events is fully repeatable.

#include <deque>
#include <map>
#include <vector>

#include "platform/eventdispatch.h"

namespace zelvan {

class VirtualDispatch : public EventDispatch {
  public:
    VirtualDispatch();
    ~VirtualDispatch() override;

    void yield() override;
    // With nothing pending, moves the clock to the next timer or scheduled call
    // and runs it; with nothing at all ahead, returns at once.
    void yieldOrWait() override;
    // The same, but the clock moves no further than maxMs.
    void yieldOrWaitFor(int maxMs) override;
    void post(std::function<void()> fn) override;
    std::unique_ptr<Timer> makeTimer(std::function<void()> onFire) override;
    long long nowMs() const override { return m_now; }

    // Runs fn in the first yield at or after virtual time `atMs`.
    void postAt(long long atMs, std::function<void()> fn);
    // Moves the clock forward, running every timer and scheduled call on the way.
    void advance(long long ms);
    // How many times yield or yieldOrWait was called.
    long long yieldCount() const { return m_yields; }

  private:
    class VTimer;
    friend class VTimer;
    bool runDue();
    long long nextDeadline() const;
    bool fireTimersDue();

    long long m_now = 0;
    long long m_yields = 0;
    std::deque<std::function<void()>> m_posted;
    std::multimap<long long, std::function<void()>> m_scheduled;  // equal times keep their order
    std::vector<VTimer*> m_timers;
    long long m_timersFrom = 0;  // no armed timer is due before this time
};

}  // namespace zelvan
