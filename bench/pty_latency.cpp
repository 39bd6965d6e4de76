// Latency of the whole road: from the last byte of a pop-on caption written
// into the decoder's pseudo-terminal to the last byte of its frames read off
// the sign's. Starts the real program (on the display that is set, so run it
// under xvfb-run to have the windows up; see pty_latency.sh).
//
// usage: bench_pty_latency PROGRAM [CAPTIONS] [GAP_MS]
//
// GAP_MS is the pause between one caption's last frame and the next caption
// (default 100; a showing has seconds between captions). With 0 each caption
// also waits for the windows to show the one before it.

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/programrig.h"

using zelvan::testing::popOnCaption;
using zelvan::testing::ProgramRig;

namespace {

const std::string kBright("\x01\x20\x7F\x20\x01", 5);

bool endsWith(const std::string& s, const std::string& tail) {
    return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}

double percentile(std::vector<double> v, double p) {
    std::sort(v.begin(), v.end());
    return v[static_cast<std::size_t>(p * static_cast<double>(v.size() - 1) + 0.5)];
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s PROGRAM [CAPTIONS] [GAP_MS]\n", argv[0]);
        return 2;
    }
    const int captions = argc > 2 ? std::atoi(argv[2]) : 500;
    const int gapMs = argc > 3 ? std::atoi(argv[3]) : 100;
    ProgramRig rig(argv[1], "", std::getenv("DISPLAY") == nullptr);
    if (!rig.waitUntil([&] { return rig.holds(rig.box.slave); }, 30000)) {
        std::fprintf(stderr, "the program never opened the decoder port\n");
        return 1;
    }
    rig.waitUntil([] { return false; }, 1000);  // start-up frames and the open's purge

    std::vector<double> ms;
    for (int i = 0; i < captions; ++i) {
        char text[40];
        std::snprintf(text, sizeof text, "Caption number %04d", i);
        rig.waitUntil([] { return false; }, gapMs);
        const std::size_t before = rig.signBytes.size();
        rig.sendToBox(popOnCaption(text));
        const auto sent = ProgramRig::Clock::now();
        auto last = sent;
        const bool arrived = rig.waitUntil(
            [&] {
                if (rig.signBytes.size() > before) last = ProgramRig::Clock::now();
                return endsWith(rig.signBytes.substr(before), kBright);
            },
            5000);
        if (!arrived) {
            std::fprintf(stderr, "caption %d: no frames within 5 s\n", i);
            return 1;
        }
        ms.push_back(std::chrono::duration<double, std::milli>(last - sent).count());
    }
    const auto over5 = std::count_if(ms.begin(), ms.end(), [](double v) { return v > 5.0; });
    std::printf(
        "captions: %d  gap: %d ms  median: %.3f ms  p99: %.3f ms  max: %.3f ms  over 5 ms: %ld\n",
        captions, gapMs, percentile(ms, 0.5), percentile(ms, 0.99),
        *std::max_element(ms.begin(), ms.end()), static_cast<long>(over5));
    return 0;
}
