// How close the program's timers keep to the times they are set for, on the
// real event dispatch: the 1 s carrier debounce, the 1500 ms modem guard, the
// 3 s hang-up and the 5 s notices, flush timer and splash. Each timer is armed
// again as it fires, so its firings fall at all phases of the clock, while
// the loop waits for events as the capture loop does. Prints the median, the
// 99th percentile and the worst error of each, and the worst over all; on a
// loaded machine the worst is the scheduler's as much as the timer's.
// Target: worst under 5 ms.
//
// usage: bench_timers [SECONDS]   (default 60)

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "platform/qtdispatch.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kIntervalsMs[] = {1000, 1500, 3000, 5000};

struct Watched {
    int intervalMs;
    std::unique_ptr<zelvan::Timer> timer;
    Clock::time_point armedAt;
    std::vector<double> errorsMs;

    void arm() {
        armedAt = Clock::now();
        timer->setEnabled(false);
        timer->setEnabled(true);
    }
    void fired() {
        const double ms = std::chrono::duration<double, std::milli>(Clock::now() - armedAt).count();
        errorsMs.push_back(std::fabs(ms - intervalMs));
        arm();
    }
};

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int seconds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 60;
    zelvan::QtDispatch dispatch;
    std::vector<std::unique_ptr<Watched>> watched;
    for (int ms : kIntervalsMs) {
        auto w = std::make_unique<Watched>();
        w->intervalMs = ms;
        w->timer = dispatch.makeTimer([raw = w.get()] { raw->fired(); });
        w->timer->setInterval(ms);
        w->arm();
        watched.push_back(std::move(w));
    }
    const auto end = Clock::now() + std::chrono::seconds(seconds);
    while (Clock::now() < end) dispatch.yieldOrWait();

    double worst = 0;
    for (const auto& w : watched) {
        std::vector<double> e = w->errorsMs;
        if (e.empty()) continue;
        std::sort(e.begin(), e.end());
        const auto at = [&e](double p) {
            return e[static_cast<std::size_t>(p * static_cast<double>(e.size() - 1) + 0.5)];
        };
        std::printf(
            "timer %5d ms: %3zu firings, error median %.2f ms, p99 %.2f ms, worst %.2f ms\n",
            w->intervalMs, e.size(), at(0.5), at(0.99), e.back());
        worst = std::max(worst, e.back());
    }
    std::printf("worst error over all timers: %.2f ms (target under 5 ms)\n", worst);
    return worst < 5.0 ? 0 : 1;
}
