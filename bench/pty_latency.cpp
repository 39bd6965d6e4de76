// Latency of the whole road: from the last byte of a pop-on caption written
// into the decoder's pseudo-terminal to the last byte of its frames read off
// the sign's. Starts the real program (on the display that is set, so run it
// under xvfb-run to have the windows up; see pty_latency.sh).
//
// usage: bench_pty_latency PROGRAM [CAPTIONS] [GAP_MS] [PACE] [PROGRAM OPTIONS...]
//
// GAP_MS is the pause between one caption's last frame and the next caption
// (default 100; a showing has seconds between captions). With 0 the next
// caption goes in as soon as the frames are out, so captions meet the windows'
// repaints as often as they can.
// PACE "all" writes each caption at once; "1200" writes it a byte at a time at
// the pace of a decoder box at 1200 baud (ten bits a byte), so the windows
// follow every byte of it while the caption loads.
// PROGRAM OPTIONS go to the program after --no-splash: --sign-preview has the
// sign preview follow every frame as well. --tcp and --readers=N are the
// bench's own: with --tcp the decoder connects to the program's listener on
// loopback and the program connects to the sign's server there, as to an
// encoder and a serial server; with --readers=N the web mirror is on, and N
// readers (bench_mirror_load --hold, beside this program) follow every
// caption on it while the latency is measured.
//
// The reader spins rather than sleeps: on a virtual machine a sleeping reader
// adds milliseconds of its own wake-up to the figure.

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "support/programrig.h"

using zelvan::testing::popOnCaption;
using zelvan::testing::ProgramRig;

namespace {

const std::string kBright("\x01\x20\x7F\x20\x01", 5);
constexpr int kSpin = 0;
constexpr double kByteMsAt1200 = 10.0 * 1000.0 / 1200.0;

bool endsWith(const std::string& s, const std::string& tail) {
    return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}

double percentile(std::vector<double> v, double p) {
    std::sort(v.begin(), v.end());
    return v[static_cast<std::size_t>(p * static_cast<double>(v.size() - 1) + 0.5)];
}

// Watches the sign while time passes: notes when its bytes last grew.
struct Watch {
    ProgramRig& rig;
    std::size_t seen = 0;
    ProgramRig::Clock::time_point lastGrowth{};

    bool poll() {
        if (rig.signBytes.size() != seen) {
            seen = rig.signBytes.size();
            lastGrowth = ProgramRig::Clock::now();
        }
        return false;
    }
    void pause(double ms) {
        const auto until = ProgramRig::Clock::now() + std::chrono::duration<double, std::milli>(ms);
        rig.waitUntil([&] { return poll() || ProgramRig::Clock::now() >= until; }, 10000, kSpin);
    }
};

// Writes the caption; returns when the byte that completes it (the second of
// the first end-of-caption pair; the repeat behind it changes nothing) went in.
ProgramRig::Clock::time_point send(Watch& watch, const std::string& caption, bool paced) {
    const std::size_t completing = caption.size() - 3;
    if (!paced) {
        watch.rig.sendToBox(caption);
        return ProgramRig::Clock::now();
    }
    ProgramRig::Clock::time_point completed{};
    for (std::size_t i = 0; i < caption.size(); ++i) {
        if (i > 0) watch.pause(kByteMsAt1200);
        watch.rig.sendToBox(caption.substr(i, 1));
        if (i == completing) completed = ProgramRig::Clock::now();
    }
    return completed;
}

int freePort() {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in at{};
    at.sin_family = AF_INET;
    at.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof at;
    ::bind(fd, reinterpret_cast<sockaddr*>(&at), size);
    ::getsockname(fd, reinterpret_cast<sockaddr*>(&at), &size);
    ::close(fd);
    return ntohs(at.sin_port);
}

// The readers run in a process of their own until their input closes.
struct Readers {
    pid_t pid = -1;
    int input = -1;
    FILE* output = nullptr;

    bool start(const std::string& self, int port, int n) {
        int in[2], out[2];
        if (::pipe(in) != 0 || ::pipe(out) != 0) return false;
        pid = ::fork();
        if (pid == 0) {
            ::dup2(in[0], STDIN_FILENO);
            ::dup2(out[1], STDOUT_FILENO);
            for (int fd : {in[0], in[1], out[0], out[1]}) ::close(fd);
            const std::string holder = self.substr(0, self.rfind('/') + 1) + "bench_mirror_load";
            const std::string p = std::to_string(port), count = std::to_string(n);
            ::execl(holder.c_str(), holder.c_str(), "--hold", p.c_str(), count.c_str(), nullptr);
            ::_exit(127);
        }
        ::close(in[0]);
        ::close(out[1]);
        input = in[1];
        output = ::fdopen(out[0], "r");
        char line[200] = "";
        return std::fgets(line, sizeof line, output) && std::strncmp(line, "ready", 5) == 0;
    }
    void stop() {
        if (pid < 0) return;
        ::close(input);
        char line[200];
        while (std::fgets(line, sizeof line, output)) std::printf("%s", line);
        ::waitpid(pid, nullptr, 0);
    }
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s PROGRAM [CAPTIONS] [GAP_MS] [all|1200] [OPTIONS...]\n",
                     argv[0]);
        return 2;
    }
    const int captions = argc > 2 ? std::atoi(argv[2]) : 500;
    const int gapMs = argc > 3 ? std::atoi(argv[3]) : 100;
    const bool paced = argc > 4 && std::strcmp(argv[4], "1200") == 0;
    zelvan::ProgramOptions options{.extraIni = "", .offscreen = std::getenv("DISPLAY") == nullptr};
    int readerCount = 0;
    const int port = freePort();
    for (int i = 5; i < argc; ++i) {
        if (std::strncmp(argv[i], "--readers=", 10) == 0)
            readerCount = std::atoi(argv[i] + 10);
        else if (std::strcmp(argv[i], "--tcp") == 0)
            options.links = zelvan::Links::Loopback;
        else
            options.args.emplace_back(argv[i]);
    }
    if (readerCount > 0)
        options.extraIni = "[WebMirror]\nEnabled=true\nPort=" + std::to_string(port) + "\n";
    ProgramRig rig(argv[1], options);
    if (!rig.waitUntil([&] { return rig.boxReady(); }, 30000)) {
        std::fprintf(stderr, "the program never opened the decoder's link\n");
        return 1;
    }
    rig.waitUntil([] { return false; }, 1000);  // start-up frames and the open's purge
    Readers readers;
    if (readerCount > 0 && !readers.start(argv[0], port, readerCount)) {
        std::fprintf(stderr, "the readers never connected\n");
        return 1;
    }

    std::vector<double> ms;
    Watch watch{rig};
    for (int i = 0; i < captions; ++i) {
        char text[40];
        std::snprintf(text, sizeof text, "Caption number %04d", i);
        watch.pause(gapMs);
        const std::size_t before = rig.signBytes.size();
        const auto sent = send(watch, popOnCaption(text), paced);
        const bool arrived = rig.waitUntil(
            [&] {
                watch.poll();
                return endsWith(rig.signBytes.substr(before), kBright);
            },
            5000, kSpin);
        if (!arrived) {
            std::fprintf(stderr, "caption %d: no frames within 5 s\n", i);
            return 1;
        }
        ms.push_back(std::chrono::duration<double, std::milli>(watch.lastGrowth - sent).count());
    }
    readers.stop();
    const auto over5 = std::count_if(ms.begin(), ms.end(), [](double v) { return v > 5.0; });
    std::printf(
        "links: %s  captions: %d  gap: %d ms  pace: %s  median: %.3f ms  p99: %.3f ms  "
        "max: %.3f ms  over 5 ms: %ld\n",
        options.links == zelvan::Links::Pty ? "pty" : "tcp", captions, gapMs,
        paced ? "1200 baud" : "all at once", percentile(ms, 0.5), percentile(ms, 0.99),
        *std::max_element(ms.begin(), ms.end()), static_cast<long>(over5));
    return 0;
}
