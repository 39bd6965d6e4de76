// Plays a captioned video through the real program and measures it: writes the
// first SECONDS of a recording into a video of the given kind and size, starts
// zelvan21 on it (Line-21 (Digital Video)), and reads the program's processor
// time from /proc while the video plays in real time. Then holds what the sign
// got against the frames the logic sends for the same pairs from a decoder box.
//
//   videoplay PROGRAM RECORDING.scc ts|mp4|mov WIDTH HEIGHT SECONDS
//
// Prints one line: kind, size, seconds, processor use in % of one core, the
// caption pairs, and whether the sign got them byte for byte.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "demo/videomaker.h"
#include "support/logicframes.h"
#include "support/programrig.h"

namespace {

using namespace zelvan;
using testing::signShows;

double cpuSeconds(pid_t pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string field;
    unsigned long long utime = 0, stime = 0;
    for (int i = 1; i <= 15 && stat >> field; ++i) {
        if (i == 14) utime = std::stoull(field);
        if (i == 15) stime = std::stoull(field);
    }
    return static_cast<double>(utime + stime) / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 7) {
        std::fprintf(stderr, "usage: videoplay PROGRAM RECORDING.scc ts|mp4|mov W H SECONDS\n");
        return 2;
    }
    const std::string kindName = argv[3];
    const int seconds = std::atoi(argv[6]);
    SccRecording rec = readSccFile(argv[2]);
    std::vector<std::uint16_t> words = wordsPerFrame(rec);
    words.resize(std::min<std::size_t>(words.size(),
                                       static_cast<std::size_t>(seconds * kSccFramesPerSecond)));
    const VideoShape shape{.kind = kindName == "mp4"   ? VideoKind::H264Mp4
                                   : kindName == "mov" ? VideoKind::C608Mov
                                                       : VideoKind::Mpeg2Ts,
                           .width = std::atoi(argv[4]),
                           .height = std::atoi(argv[5]),
                           .moving = true};
    const std::string path = "/tmp/zelvan-videoplay-" + std::to_string(::getpid()) + "." + kindName;
    if (const std::string e = makeVideo(path, shape, words); !e.empty()) {
        std::fprintf(stderr, "videoplay: %s\n", e.c_str());
        return 1;
    }
    const std::string expected = testing::logicFrames(boxStream(words));

    ProgramRig rig(argv[1], "[General]\nInputFilterType=6\n[DigitalVideo]\nSource=" + path + "\n");
    if (!rig.waitUntil([&] { return signShows(rig.signBytes, "Welcome"); }, 20000)) return 1;
    const double cpu0 = cpuSeconds(rig.pid());
    const auto t0 = ProgramRig::Clock::now();
    rig.waitUntil([] { return false; }, seconds * 1000);
    const double cpu = cpuSeconds(rig.pid()) - cpu0;
    const double wall = std::chrono::duration<double>(ProgramRig::Clock::now() - t0).count();
    rig.waitUntil([] { return false; }, 2000);  // the tail of the video and the last frames
    std::remove(path.c_str());
    const bool exact = rig.signBytes.size() >= expected.size() &&
                       rig.signBytes.compare(rig.signBytes.size() - expected.size(),
                                             expected.size(), expected) == 0;
    std::printf("%-4s %5dx%-5d %4d s  %6.2f%% of one core  %5zu pairs  sign %s\n", kindName.c_str(),
                shape.width, shape.height, seconds, 100 * cpu / wall, boxStream(words).size() / 2,
                exact ? "byte-exact" : "DIFFERS");
    return exact ? 0 : 1;
}
