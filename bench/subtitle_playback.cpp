// Subtitle playback at real speed: a generated SubRip file of MINUTES minutes
// (default 10) played from the caption file window through the real display
// window to a sign on a pseudo-terminal. Prints the worst timing error of a
// change on the sign, from Play to the arrival of its first byte, against the
// time the same file gives on virtual time; and the processor time of the
// program's thread over the showing. Targets: at most 20 ms, under 1%. Run it
// under xvfb-run to have the windows up (see subtitle_playback.sh).
//
// usage: bench_subtitle_playback [MINUTES]
//
// A thread of its own waits on the sign's line, so the reading costs the
// program's thread nothing and sleeps until bytes come.

#include <poll.h>
#include <sys/resource.h>

#include <QApplication>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

#include "display/frmoutdw.h"
#include "platform/devicemap.h"
#include "support/pty.h"
#include "support/qtrig.h"
#include "textinput/frmintds.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace zelvan;

// Two changes of the sign are never closer than this in the file, so the
// frames of one change come in one burst.
constexpr long long kApartMs = 300;

std::string srtTime(long long ms) {
    char text[32];
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld,%03lld", ms / 3600000, ms / 60000 % 60,
                  ms / 1000 % 60, ms % 1000);
    return text;
}

// Cues of 1.5 to 4 s, each of 30 to 80 characters (one to three rows on the
// sign). Every fifth overlaps the next by 0.7 s; the one after the next
// overlapping pair has a second line, so that it shows as two pages; the
// others have gaps of 0.3 to 1.5 s between them.
std::string makeFilm(long long lengthMs) {
    std::mt19937 random(21);
    auto between = [&](int lo, int hi) {
        return std::uniform_int_distribution<int>(lo, hi)(random);
    };
    auto line = [&] {
        std::string text;
        while (text.size() < static_cast<std::size_t>(between(30, 80)))
            text += "word" + std::to_string(between(1, 999)) + " ";
        return text;
    };
    std::string film;
    long long start = 1000;
    for (int n = 1; start + 4000 < lengthMs; ++n) {
        const long long length = between(15, 40) * 100;
        const std::string text = n % 5 == 2 ? line() + "\r\n" + line() : line();
        film += std::to_string(n) + "\r\n" + srtTime(start) + " --> " + srtTime(start + length) +
                "\r\n" + text + "\r\n\r\n";
        start += n % 5 == 0 ? length - 700 : length + between(3, 15) * 100;
    }
    return film;
}

// Where each change of the sign falls on the file's clock, from Play at 0:
// the player on virtual time, with the rows the display window uses.
std::vector<long long> changeTimes(const std::string& film) {
    VirtualDispatch dispatch;
    std::vector<long long> times;
    SubtitlePlayer player(
        dispatch, [] { return 3; }, [&](const Rows&) { times.push_back(dispatch.nowMs()); });
    player.load(script::readScript(film).captions);
    player.play();
    while (player.playing()) dispatch.advance(1000);
    return times;
}

// The arrival of the first byte of each burst on the sign.
struct SignWatch {
    explicit SignWatch(int fd) : m_fd(fd), m_thread([this] { run(); }) {}
    ~SignWatch() {
        m_stop = true;
        m_thread.join();
    }
    std::vector<Clock::time_point> bursts() {
        std::lock_guard lock(m_mutex);
        return m_bursts;
    }

  private:
    void run() {
        Clock::time_point last{};
        char buf[4096];
        while (!m_stop) {
            pollfd p{m_fd, POLLIN, 0};
            if (::poll(&p, 1, 100) <= 0) continue;
            const auto now = Clock::now();
            while (::read(m_fd, buf, sizeof buf) > 0) {
            }
            std::lock_guard lock(m_mutex);
            if (now - last > std::chrono::milliseconds(kApartMs / 2)) m_bursts.push_back(now);
            last = now;
        }
    }
    int m_fd;
    std::atomic<bool> m_stop{false};
    std::mutex m_mutex;
    std::vector<Clock::time_point> m_bursts;
    std::thread m_thread;
};

double threadCpuMs() {
    rusage usage{};
    ::getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_utime.tv_sec * 1e3 + usage.ru_utime.tv_usec / 1e3 +
           usage.ru_stime.tv_sec * 1e3 + usage.ru_stime.tv_usec / 1e3;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const double minutes = argc > 1 ? std::atof(argv[1]) : 10.0;
    const std::string film = makeFilm(static_cast<long long>(minutes * 60000));
    const std::vector<long long> expected = changeTimes(film);
    const std::string path = "/tmp/subtitle-playback-" + std::to_string(::getpid()) + ".srt";
    std::ofstream(path, std::ios::binary) << film;

    testing::QtRig rig;
    PtyEnd sign;
    setDevicePath(rig.store, 2, sign.slave);
    rig.tavo.view = &rig.shell.view;
    rig.tavo.DoStartupBarker = false;
    frmOutDW display(rig.tavo, rig.shell);
    rig.tavo.frmOutDW = &display;
    rig.tavo.bOutDW = true;
    display.showForm();
    frmInTDS window(rig.tavo, rig.shell);
    window.setFileChooser([&](QWidget*, const QString&, const QString&, const QStringList&) {
        return std::optional<QString>(QString::fromStdString(path));
    });
    rig.tavo.frmInTDS = &window;
    rig.tavo.bInTDS = true;
    window.showForm();
    window.mnuFileOpen->trigger();
    testing::settle(500);
    sign.take();

    SignWatch watch(sign.master);
    const double cpuBefore = threadCpuMs();
    const auto played = Clock::now();
    window.mnuPlayPause->trigger();
    while (window.input().player().playing()) rig.dispatch.yieldOrWait();
    const double wallMs = std::chrono::duration<double, std::milli>(Clock::now() - played).count();
    const double cpuMs = threadCpuMs() - cpuBefore;
    testing::settle(300);
    std::remove(path.c_str());

    const std::vector<Clock::time_point> bursts = watch.bursts();
    if (bursts.size() != expected.size()) {
        std::printf("changes on the sign: %zu, in the file: %zu\n", bursts.size(), expected.size());
        return 1;
    }
    double worst = 0, sum = 0;
    for (std::size_t i = 0; i < bursts.size(); ++i) {
        const double at = std::chrono::duration<double, std::milli>(bursts[i] - played).count();
        const double error = std::abs(at - static_cast<double>(expected[i]));
        if (error > 20) std::printf("change %zu at %lld ms: %.1f ms off\n", i, expected[i], error);
        worst = std::max(worst, error);
        sum += error;
    }
    std::printf(
        "played: %.1f min  changes: %zu  timing error: mean %.2f ms, worst %.2f ms  "
        "processor: %.3f%% (%.0f ms of %.0f s)\n",
        wallMs / 60000, bursts.size(), sum / static_cast<double>(bursts.size()), worst,
        100 * cpuMs / wallMs, cpuMs, wallMs / 1000);
    return worst <= 20 && cpuMs < wallMs / 100 ? 0 : 1;
}
