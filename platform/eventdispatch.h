#pragma once
// The event dispatch that the capture loop yields to, and its timers.
// Everything runs on one thread: "concurrency" in this program is re-entrancy,
// since a handler run inside a yield may itself yield or enter a capture loop.

#include <functional>
#include <memory>

namespace zelvan {

class Timer {
  public:
    virtual ~Timer() = default;
    virtual void setInterval(int ms) = 0;
    virtual int interval() const = 0;
    // A timer fires only while it is enabled and its interval is above 0.
    virtual void setEnabled(bool on) = 0;
    virtual bool enabled() const = 0;
};

class EventDispatch {
  public:
    virtual ~EventDispatch() = default;
    // Runs the events that are pending now to their end and returns; never waits.
    virtual void yield() = 0;
    // Like yield, but when nothing is pending it may sleep until the next event
    // (a timer, a port, a window event) instead of returning empty-handed.
    virtual void yieldOrWait() = 0;
    // Like yieldOrWait, but sleeps no longer than maxMs: for a loop that must
    // also look at something that raises no event, such as a board.
    virtual void yieldOrWaitFor(int maxMs) = 0;
    // Queues a call to run in a later yield, on this thread.
    virtual void post(std::function<void()> fn) = 0;
    // A timer whose handler runs inside a yield. Starts disabled with interval 0.
    virtual std::unique_ptr<Timer> makeTimer(std::function<void()> onFire) = 0;
    // Milliseconds since an arbitrary start: virtual in tests, monotonic in the program.
    virtual long long nowMs() const = 0;
};

}  // namespace zelvan
