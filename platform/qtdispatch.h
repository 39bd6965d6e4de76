#pragma once
// The event dispatch of the running program, over Qt's event loop.

#include <QElapsedTimer>
#include <QTimer>
#include <memory>

#include "platform/eventdispatch.h"

namespace zelvan {

class QtDispatch : public EventDispatch {
  public:
    QtDispatch();
    void yield() override;
    void yieldOrWait() override;
    void yieldOrWaitFor(int maxMs) override;
    void post(std::function<void()> fn) override;
    std::unique_ptr<Timer> makeTimer(std::function<void()> onFire) override;
    long long nowMs() const override { return m_clock.elapsed(); }

  private:
    QElapsedTimer m_clock;
    // Wakes a wait that has nothing else to wake it; made at first use, when
    // the application's event loop exists.
    std::unique_ptr<QTimer> m_wake;
};

}  // namespace zelvan
