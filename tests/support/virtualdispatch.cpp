#include "support/virtualdispatch.h"

#include <algorithm>
#include <limits>

namespace zelvan {

class VirtualDispatch::VTimer : public Timer {
  public:
    VTimer(VirtualDispatch& owner, std::function<void()> fn) : m_owner(owner), m_fn(std::move(fn)) {
        m_owner.m_timers.push_back(this);
    }
    ~VTimer() override { std::erase(m_owner.m_timers, this); }

    void setInterval(int ms) override {
        m_interval = ms;
        rearm();
    }
    int interval() const override { return m_interval; }
    void setEnabled(bool on) override {
        m_enabled = on;
        rearm();
    }
    bool enabled() const override { return m_enabled; }

    bool armed() const { return m_enabled && m_interval > 0; }
    long long due() const { return m_due; }
    void fire() {
        m_due = m_owner.m_now + m_interval;  // periodic, like a window-system timer
        m_fn();
    }

  private:
    void rearm() {
        m_due = m_owner.m_now + m_interval;
        if (armed()) m_owner.m_timersFrom = std::min(m_owner.m_timersFrom, m_due);
    }

    VirtualDispatch& m_owner;
    std::function<void()> m_fn;
    int m_interval = 0;
    bool m_enabled = false;
    long long m_due = 0;
};

VirtualDispatch::VirtualDispatch() = default;
VirtualDispatch::~VirtualDispatch() = default;

void VirtualDispatch::post(std::function<void()> fn) {
    m_posted.push_back(std::move(fn));
}

void VirtualDispatch::postAt(long long atMs, std::function<void()> fn) {
    m_scheduled.emplace(atMs, std::move(fn));
}

std::unique_ptr<Timer> VirtualDispatch::makeTimer(std::function<void()> onFire) {
    return std::make_unique<VTimer>(*this, std::move(onFire));
}

// Copy: a handler may create or destroy timers. True if any was due.
bool VirtualDispatch::fireTimersDue() {
    if (m_now < m_timersFrom) return false;  // the common case, without a scan
    std::vector<VTimer*> due;
    for (VTimer* t : m_timers)
        if (t->armed() && t->due() <= m_now) due.push_back(t);
    for (VTimer* t : due)
        if (std::find(m_timers.begin(), m_timers.end(), t) != m_timers.end() && t->armed() &&
            t->due() <= m_now)
            t->fire();
    m_timersFrom = nextDeadline();
    return !due.empty();
}

// Runs what is pending at the current time. Events posted while these run wait
// for the next yield, as in a real event loop.
bool VirtualDispatch::runDue() {
    // Most yields find nothing to run; they cost no allocation then.
    if (m_posted.empty() && (m_scheduled.empty() || m_scheduled.begin()->first > m_now))
        return fireTimersDue();
    std::deque<std::function<void()>> batch;
    batch.swap(m_posted);
    while (!m_scheduled.empty() && m_scheduled.begin()->first <= m_now) {
        batch.push_back(std::move(m_scheduled.begin()->second));
        m_scheduled.erase(m_scheduled.begin());
    }
    for (auto& fn : batch) fn();
    const bool timers = fireTimersDue();
    return timers || !batch.empty();
}

long long VirtualDispatch::nextDeadline() const {
    long long next = std::numeric_limits<long long>::max();
    if (!m_scheduled.empty()) next = m_scheduled.begin()->first;
    for (const VTimer* t : m_timers)
        if (t->armed()) next = std::min(next, t->due());
    return next;
}

void VirtualDispatch::yield() {
    ++m_yields;
    runDue();
}

void VirtualDispatch::yieldOrWait() {
    ++m_yields;
    if (runDue() || nextDeadline() == std::numeric_limits<long long>::max()) return;
    m_now = std::max(m_now, nextDeadline());
    runDue();
}

void VirtualDispatch::yieldOrWaitFor(int maxMs) {
    ++m_yields;
    if (runDue()) return;
    m_now = std::max(m_now, std::min(nextDeadline(), m_now + maxMs));
    runDue();
}

void VirtualDispatch::advance(long long ms) {
    const long long end = m_now + ms;
    runDue();
    for (long long next = nextDeadline(); next <= end; next = nextDeadline()) {
        m_now = std::max(m_now, next);
        runDue();
    }
    m_now = end;
}

}  // namespace zelvan
