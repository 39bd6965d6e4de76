#include "platform/deferredrefresh.h"

#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <set>

namespace zelvan {

// One timer for all the windows, so their updates land in one repaint.
class RefreshSchedule {
  public:
    RefreshSchedule() {
        m_timer.setSingleShot(true);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { run(); });
    }

    void add(DeferredRefresh* r) {
        m_pending.insert(r);
        if (m_timer.isActive()) return;
        qint64 wait = DeferredRefresh::kDelayMs;
        if (m_sinceRun.isValid())
            wait = std::max(wait, DeferredRefresh::kIntervalMs - m_sinceRun.elapsed());
        m_timer.start(static_cast<int>(wait));
    }

    // True if it was pending.
    bool remove(DeferredRefresh* r) { return m_pending.erase(r) > 0; }

  private:
    void run() {
        m_sinceRun.start();
        const std::set<DeferredRefresh*> due = std::move(m_pending);
        m_pending.clear();
        for (DeferredRefresh* r : due) r->m_apply();
    }

    QTimer m_timer;
    QElapsedTimer m_sinceRun;  // invalid until the first run
    std::set<DeferredRefresh*> m_pending;
};

namespace {

RefreshSchedule* g_schedule = nullptr;

// Made on first use, inside the application, and never destroyed: its timer
// must not outlive the application's event loop.
RefreshSchedule& schedule() {
    if (!g_schedule) g_schedule = new RefreshSchedule;
    return *g_schedule;
}

}  // namespace

DeferredRefresh::DeferredRefresh(std::function<void()> apply) : m_apply(std::move(apply)) {}

DeferredRefresh::~DeferredRefresh() {
    if (g_schedule) g_schedule->remove(this);
}

void DeferredRefresh::request() {
    schedule().add(this);
}

void DeferredRefresh::flush() {
    if (g_schedule && g_schedule->remove(this)) m_apply();
}

}  // namespace zelvan
