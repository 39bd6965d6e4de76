// A sender far faster than a decoder box: the whole news recording written
// into the decoder's pseudo-terminal as fast as the line takes it, through the
// real program, against what the logic alone makes of the same bytes. The
// sign must get every byte the logic sends, in order; the figure is the time
// from the first byte in to the last byte out.
//
// usage: bench_fast_sender PROGRAM [RECORDING]

#include <chrono>
#include <cstdio>
#include <string>

#include "core/sccreader.h"
#include "support/logicframes.h"
#include "support/programrig.h"

using namespace zelvan;

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s PROGRAM [RECORDING]\n", argv[0]);
        return 2;
    }
    const std::string path =
        argc > 2 ? argv[2] : std::string(ZELVAN_SAMPLES_DIR) + "/news-2018-12-17-popon.scc";
    const SccRecording rec = readSccFile(path);
    if (rec.lines.empty()) {
        std::fprintf(stderr, "can't read the recording %s\n", path.c_str());
        return 1;
    }
    const std::string stream = rec.stream();
    const std::string expected = testing::logicFrames(stream);

    testing::ProgramRig rig(argv[1], "", std::getenv("DISPLAY") == nullptr);
    if (!rig.waitUntil([&] { return rig.holds(rig.box.slave); }, 30000)) {
        std::fprintf(stderr, "the program never opened the decoder port\n");
        return 1;
    }
    rig.waitUntil([] { return false; }, 1000);  // start-up frames and the open's purge
    const std::size_t startup = rig.signBytes.size();

    using Clock = testing::ProgramRig::Clock;
    const auto start = Clock::now();
    std::size_t off = 0;
    while (off < stream.size()) {
        const ssize_t n = ::write(rig.box.master, stream.data() + off, stream.size() - off);
        if (n > 0) off += static_cast<std::size_t>(n);
        rig.readSign(0);
    }
    const auto written = Clock::now();
    const bool complete =
        rig.waitUntil([&] { return rig.signBytes.size() - startup >= expected.size(); }, 60000, 1);
    const auto done = Clock::now();
    rig.readSign(200);  // anything past the expected end is a fault too
    const std::string got = rig.signBytes.substr(startup);

    const auto ms = [](auto d) { return std::chrono::duration<double, std::milli>(d).count(); };
    std::printf("recording: %zu bytes in, %zu frame bytes expected, %zu received\n", stream.size(),
                expected.size(), got.size());
    std::printf("written in %.0f ms (%.0f KB/s); last frame byte out at %.0f ms\n",
                ms(written - start), stream.size() / 1.024 / ms(written - start), ms(done - start));
    if (!complete || got != expected) {
        std::size_t i = 0;
        while (i < got.size() && i < expected.size() && got[i] == expected[i]) ++i;
        std::printf("MISMATCH: first difference at frame byte %zu\n", i);
        return 1;
    }
    std::printf("byte-exact\n");
    return 0;
}
