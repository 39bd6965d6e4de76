// The demo from end to end: zelvan-demo starts the real program between its
// decoder box and sign, plays a short recording fast, and prints what the sign
// shows, at the recording's times.

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <string>
#include <vector>

#include "support/testdata.h"

extern char** environ;

namespace zelvan {
namespace {

// The demo's printed captions, "  35.8 s  TEXT", read through a pipe.
struct DemoRun {
    pid_t pid = -1;
    int out = -1;
    std::string printed;

    explicit DemoRun(std::vector<std::string> args) {
        int fds[2];
        if (::pipe(fds) != 0) return;
        out = fds[0];
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, fds[1], 1);
        posix_spawn_file_actions_addclose(&actions, fds[0]);
        args.insert(args.begin(), ZELVAN_DEMO_BINARY);
        std::vector<char*> argv;
        for (auto& a : args) argv.push_back(a.data());
        argv.push_back(nullptr);
        if (::posix_spawn(&pid, ZELVAN_DEMO_BINARY, &actions, nullptr, argv.data(), environ) != 0)
            pid = -1;
        posix_spawn_file_actions_destroy(&actions);
        ::close(fds[1]);
    }
    ~DemoRun() {
        if (pid > 0) {
            ::kill(pid, SIGKILL);
            ::waitpid(pid, nullptr, 0);
        }
        if (out >= 0) ::close(out);
    }
    bool readUntil(const std::string& text, int ms) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
        while (printed.find(text) == std::string::npos) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            pollfd p{out, POLLIN, 0};
            if (::poll(&p, 1, 100) <= 0) continue;
            char buf[1024];
            const ssize_t n = ::read(out, buf, sizeof buf);
            if (n <= 0) return false;
            printed.append(buf, static_cast<std::size_t>(n));
        }
        return true;
    }
    // The time printed before a caption, or -1.
    double timeOf(const std::string& caption) const {
        std::istringstream lines(printed);
        for (std::string line; std::getline(lines, line);)
            if (line.find("s  " + caption) != std::string::npos) return std::stod(line);
        return -1;
    }
    // Ends it as Ctrl-C would; its exit status.
    int interrupt() {
        ::kill(pid, SIGINT);
        int status = 0;
        ::waitpid(pid, &status, 0);
        pid = -1;
        return status;
    }
};

TEST(Demo, PrintsEachCaptionOfARecordingAsTheReflectorShowsItAtItsTime) {
    DemoRun demo({"--speed", "50", testing::samplePath("popon-short.scc")});
    ASSERT_GT(demo.pid, 0);
    const std::string last = "Test \xC2\xBD Caption / Test  test  Captions";
    ASSERT_TRUE(demo.readUntil(last, 60000)) << demo.printed;
    // In order, and each shortly after its end-of-caption word went in. At
    // fifty times the pace a tenth of a second of a busy machine is five
    // seconds of the recording, so lateness gets twenty.
    const double horn = demo.timeOf("( horn ho)");
    const double hey = demo.timeOf(
        "HEY, THE\xC2\xAE"
        "E.");
    const double test = demo.timeOf(last);
    EXPECT_GT(horn, 0.5);
    EXPECT_LT(horn, 25.0);
    EXPECT_GT(hey, 35.0);
    EXPECT_LT(hey, 60.0);
    EXPECT_GT(test, 518.0);
    EXPECT_LT(test, 543.0);
    EXPECT_EQ(demo.interrupt(), 0);
}

}  // namespace
}  // namespace zelvan
