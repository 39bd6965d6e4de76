#pragma once
// The event dispatch of the running program, over Qt's event loop.

#include <QElapsedTimer>

#include "platform/eventdispatch.h"

namespace zelvan {

class QtDispatch : public EventDispatch {
  public:
    QtDispatch();
    void yield() override;
    void yieldOrWait() override;
    void post(std::function<void()> fn) override;
    std::unique_ptr<Timer> makeTimer(std::function<void()> onFire) override;
    long long nowMs() const override { return m_clock.elapsed(); }

  private:
    QElapsedTimer m_clock;
};

}  // namespace zelvan
