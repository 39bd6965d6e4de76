#include "platform/qtdispatch.h"

#include <QCoreApplication>
#include <QTimer>

namespace zelvan {

namespace {

class QtTimer : public Timer {
  public:
    // The times the program waits are named times (a 1500 ms modem guard, 5 s
    // notices): a coarse timer may be 5% off, so each one is precise.
    explicit QtTimer(std::function<void()> fn) {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, [fn = std::move(fn)] { fn(); });
    }
    void setInterval(int ms) override {
        m_interval = ms;
        apply();
    }
    int interval() const override { return m_interval; }
    void setEnabled(bool on) override {
        m_enabled = on;
        apply();
    }
    bool enabled() const override { return m_enabled; }

  private:
    // A window-system timer with interval 0 doesn't fire; QTimer with 0 would
    // fire on every pass of the loop, so it is held stopped instead.
    void apply() {
        if (m_enabled && m_interval > 0)
            m_timer.start(m_interval);
        else
            m_timer.stop();
    }

    QTimer m_timer;
    int m_interval = 0;
    bool m_enabled = false;
};

}  // namespace

QtDispatch::QtDispatch() {
    m_clock.start();
}

void QtDispatch::yield() {
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void QtDispatch::yieldOrWait() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void QtDispatch::yieldOrWaitFor(int maxMs) {
    if (!m_wake) {
        m_wake = std::make_unique<QTimer>();
        m_wake->setSingleShot(true);
        m_wake->setTimerType(Qt::PreciseTimer);
    }
    m_wake->start(maxMs);
    yieldOrWait();
    m_wake->stop();
}

void QtDispatch::post(std::function<void()> fn) {
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(fn), Qt::QueuedConnection);
}

std::unique_ptr<Timer> QtDispatch::makeTimer(std::function<void()> onFire) {
    return std::make_unique<QtTimer>(std::move(onFire));
}

}  // namespace zelvan
