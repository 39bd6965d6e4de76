// zelvan-demo: a simulated decoder box and sign around the real program. It
// starts zelvan21 on two pseudo-terminals with a private settings file and the
// sign preview open, plays an SCC recording into the box at the pace of its
// timecodes and prints each caption the sign shows, as the reflector shows it.
// With --video the program reads a video file's captions instead of the box;
// --make-video writes the recording into such a file. It ends when zelvan21
// ends, and takes its ptys and files with it.

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>

#include "demo/captionwatch.h"
#include "demo/programrig.h"
#include "demo/sccplayer.h"
#include "demo/videomaker.h"
#include "platform/mediasource.h"

namespace {

using zelvan::CaptionWatch;
using zelvan::ProgramRig;
using zelvan::SccPlayer;
using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

constexpr const char* kRecording = "news-2018-12-17-popon.scc";
constexpr int kStartMs = 30000;  // for the program to open the decoder's port
constexpr int kSettleMs = 500;   // then for the open's purge to pass
constexpr int kMaxWaitMs = 10;   // the longest the sign goes unread

volatile sig_atomic_t g_stop = 0;

struct Options {
    std::string recording;
    std::string program;
    std::string video;      // play this file's captions instead of the box
    std::string makeVideo;  // write the recording into this file and end
    double speed = 1.0;
    bool loop = false;
    bool signOnly = false;
    bool classicEdm = false;
};

// Broadcasters send EDM while the next pop-on caption is still loading; with
// the classic rule its words come out scrambled, so the demo keeps the
// position unless asked for the classic rule.
constexpr const char* kBroadcastEdmIni = "[L21Decoder]\nEdmKeepsPosition=True\n";
// A pseudo-terminal refuses the box's 7 data bits with odd parity, which the
// decoder window would rightly report at every start; the simulated box's
// bytes pass the same either way.
constexpr const char* kPtyBoxIni = "[L21Port]\ndatabits=8\nparity=0\n";

void usage(FILE* to) {
    std::fprintf(to,
                 "usage: zelvan-demo [--speed FACTOR] [--loop] [--sign-only] [--classic-edm] "
                 "[--program PATH] [RECORDING.scc]\n"
                 "       zelvan-demo --video FILE [--loop] [--classic-edm] [--program PATH]\n"
                 "       zelvan-demo --make-video FILE.ts|.mp4|.mov [RECORDING.scc]\n"
                 "  Starts zelvan21 with a simulated decoder box on COM1 and sign on COM2,\n"
                 "  plays the recording into the box (default: the bundled news recording)\n"
                 "  and prints each caption the sign shows.\n"
                 "  --speed FACTOR  play FACTOR times faster (default 1)\n"
                 "  --loop          play the recording again and again\n"
                 "  --sign-only     play nothing; only show what the sign gets\n"
                 "  --classic-edm   an erase of displayed memory (EDM) moves the write position\n"
                 "                  to row 1 (default: Broadcast EDM, the position stays)\n"
                 "  --program PATH  the zelvan21 to start (default: beside this program)\n"
                 "  --video FILE    zelvan21 reads the captions of a video file or stream\n"
                 "                  (Line-21 (Digital Video)) instead of the decoder box\n"
                 "  --make-video FILE  writes the recording as captions in a video: MPEG-2\n"
                 "                  in a transport stream (.ts), H.264 in MP4 (.mp4), or a\n"
                 "                  608 caption track in QuickTime (.mov)\n");
}

fs::path selfDir() {
    std::error_code ec;
    return fs::read_symlink("/proc/self/exe", ec).parent_path();
}

// Beside the program in a build tree, or under share/ in an installed one.
std::string defaultRecording() {
    const fs::path dir = selfDir();
    for (const fs::path& p : {dir / "recordings" / kRecording,
                              dir.parent_path() / "share" / "zelvan21" / "recordings" / kRecording})
        if (fs::exists(p)) return p.string();
    return (dir / "recordings" / kRecording).string();
}

bool parse(int argc, char** argv, Options& o) {
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        const bool hasValue = i + 1 < argc;
        if (a == "--speed" && hasValue) {
            o.speed = std::atof(argv[++i]);
            if (o.speed <= 0) return false;
        } else if (a == "--program" && hasValue) {
            o.program = argv[++i];
        } else if (a == "--video" && hasValue) {
            o.video = argv[++i];
            if (!zelvan::isNetworkSource(o.video)) o.video = fs::absolute(o.video).string();
        } else if (a == "--make-video" && hasValue) {
            o.makeVideo = argv[++i];
        } else if (a == "--loop") {
            o.loop = true;
        } else if (a == "--sign-only") {
            o.signOnly = true;
        } else if (a == "--classic-edm") {
            o.classicEdm = true;
        } else if (a.rfind("--", 0) == 0 || !o.recording.empty()) {
            return false;
        } else {
            o.recording = a;
        }
    }
    if (o.recording.empty()) o.recording = defaultRecording();
    if (o.program.empty()) o.program = (selfDir() / "zelvan21").string();
    return true;
}

// The container by the file's extension; MPEG-2 in a transport stream
// otherwise, as broadcast carries it.
int writeVideo(const Options& o, const zelvan::SccRecording& recording) {
    const std::string ext = fs::path(o.makeVideo).extension().string();
    const zelvan::VideoShape shape{.kind = ext == ".mp4"   ? zelvan::VideoKind::H264Mp4
                                           : ext == ".mov" ? zelvan::VideoKind::C608Mov
                                                           : zelvan::VideoKind::Mpeg2Ts};
    std::printf("writing %s into %s...\n", o.recording.c_str(), o.makeVideo.c_str());
    std::fflush(stdout);
    const std::string failure =
        zelvan::makeVideo(o.makeVideo, shape, zelvan::wordsPerFrame(recording));
    if (failure.empty()) return 0;
    std::fprintf(stderr, "zelvan-demo: %s: %s\n", o.makeVideo.c_str(), failure.c_str());
    return 1;
}

void onSignal(int) {
    g_stop = 1;
}

void printCaption(double seconds, const std::string& caption) {
    std::printf("%8.1f s  %s\n", seconds, caption.c_str());
    std::fflush(stdout);
}

// Reads the sign, plays the box, prints captions; until zelvan21 ends.
void run(ProgramRig& rig, SccPlayer* player) {
    CaptionWatch watch;
    const auto began = Clock::now();
    watch.take(rig.signBytes, began);  // the startup caption
    if (player) player->start(began);
    while (!g_stop && rig.running()) {
        auto now = Clock::now();
        if (player) rig.sendToBox(player->due(now));
        const auto wake =
            player ? std::min(player->nextAt(), now + std::chrono::milliseconds(kMaxWaitMs))
                   : now + std::chrono::milliseconds(kMaxWaitMs);
        const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(wake - now).count();
        const std::string got = rig.readSign(static_cast<int>(std::clamp<long>(ms, 0, kMaxWaitMs)));
        now = Clock::now();
        watch.take(got, now);
        if (auto caption = watch.settled(now))
            printCaption(
                player ? player->position(now) : std::chrono::duration<double>(now - began).count(),
                *caption);
    }
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            usage(stdout);
            return 0;
        }
    Options o;
    if (!parse(argc, argv, o)) {
        usage(stderr);
        return 2;
    }
    zelvan::SccRecording recording;
    if (!o.signOnly && o.video.empty()) {
        recording = zelvan::readSccFile(o.recording);
        if (!recording.header || recording.lines.empty()) {
            std::fprintf(
                stderr, "zelvan-demo: %s: %s\n", o.recording.c_str(),
                recording.errors.empty() ? "no captions" : recording.errors.front().c_str());
            return 1;
        }
    }
    if (!o.makeVideo.empty()) return writeVideo(o, recording);
    if (::access(o.program.c_str(), X_OK) != 0) {
        std::fprintf(stderr, "zelvan-demo: can't run %s\n", o.program.c_str());
        return 1;
    }
    struct sigaction sa {};
    sa.sa_handler = onSignal;
    sigaction(SIGINT, &sa, nullptr);
    sigaction(SIGTERM, &sa, nullptr);
    sigaction(SIGHUP, &sa, nullptr);

    const bool noDisplay = !std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY");
    const std::string videoIni =
        o.video.empty() ? ""
                        : "[General]\nInputFilterType=6\n[DigitalVideo]\nSource=" + o.video +
                              "\nLoop=" + (o.loop ? "True" : "False") + "\n";
    ProgramRig rig(o.program,
                   zelvan::ProgramOptions{.extraIni = std::string(kPtyBoxIni) + videoIni +
                                                      (o.classicEdm ? "" : kBroadcastEdmIni),
                                          .offscreen = noDisplay && !std::getenv("QT_QPA_PLATFORM"),
                                          .args = {"--no-splash", "--sign-preview"}});
    std::printf("zelvan21 started: decoder box on COM1 (%s), sign on COM2 (%s)\n",
                rig.box.slave.c_str(), rig.sign.slave.c_str());
    std::printf(o.classicEdm ? "classic EDM rule: an erase of displayed memory moves the write "
                               "position to row 1\n"
                             : "Broadcast EDM (keep position) is on, as broadcast recordings need; "
                               "--classic-edm for the classic rule\n");
    std::fflush(stdout);
    if (!o.video.empty()) {
        std::printf("zelvan21 reads the captions of %s%s\n", o.video.c_str(),
                    o.loop ? ", looping" : "");
        std::fflush(stdout);
        run(rig, nullptr);
        rig.stop();
        std::printf("%s\n", g_stop ? "stopped" : "zelvan21 has ended");
        return 0;
    }
    if (!rig.waitUntil([&] { return g_stop || !rig.running() || rig.holds(rig.box.slave); },
                       kStartMs)) {
        std::fprintf(stderr, "zelvan-demo: zelvan21 never opened the decoder's port\n");
        return 1;
    }
    rig.waitUntil([] { return g_stop != 0; }, kSettleMs);
    std::optional<SccPlayer> player;
    if (!o.signOnly) {
        player.emplace(zelvan::sccSchedule(recording), o.speed, o.loop);
        std::printf("playing %s at %gx%s\n", o.recording.c_str(), o.speed,
                    o.loop ? ", looping" : "");
    } else {
        std::printf("playing nothing; showing what the sign gets\n");
    }
    std::fflush(stdout);
    run(rig, player ? &*player : nullptr);
    rig.stop();
    std::printf("%s\n", g_stop ? "stopped" : "zelvan21 has ended");
    return 0;
}
