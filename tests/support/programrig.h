#pragma once
// The real program started as an operator would (offscreen, or on whatever
// display is set), with a decoder box and a sign on two pseudo-terminals: the
// settings map COM1 to the box's pty and COM2 to the sign's. The rig holds the
// master ends: it writes captions into the box and reads frames off the sign.

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "l21fakes.h"
#include "pty.h"

extern char** environ;

namespace zelvan::testing {

class ProgramRig {
  public:
    using Clock = std::chrono::steady_clock;

    // extraIni: more lines for the settings file, after the device map.
    explicit ProgramRig(const std::string& binary, const std::string& extraIni = "",
                        bool offscreen = true) {
        char tmpl[] = "/tmp/zelvan-rig-XXXXXX";
        m_config = ::mkdtemp(tmpl);
        std::filesystem::create_directories(m_config + "/Zelvan21");
        std::ofstream(m_config + "/Zelvan21/Zelvan21.ini")
            << "[Devices]\nCOM1=" << box.slave << "\nCOM2=" << sign.slave << "\n"
            << extraIni;
        start(binary, offscreen);
    }
    ~ProgramRig() {
        if (m_pid > 0) {
            ::kill(m_pid, SIGKILL);
            ::waitpid(m_pid, nullptr, 0);
        }
        std::filesystem::remove_all(m_config);
    }

    bool running() { return m_pid > 0 && ::waitpid(m_pid, nullptr, WNOHANG) == 0; }
    pid_t pid() const { return m_pid; }

    // True once the program holds the device open.
    bool holds(const std::string& device) const {
        std::error_code ec;
        for (const auto& fd :
             std::filesystem::directory_iterator("/proc/" + std::to_string(m_pid) + "/fd", ec)) {
            std::error_code linkEc;
            if (std::filesystem::read_symlink(fd.path(), linkEc).string() == device) return true;
        }
        return false;
    }

    // pollMs 0 spins instead of sleeping between reads: a measurement that
    // sleeps adds the machine's own wake-up time to the program's.
    bool waitUntil(const std::function<bool()>& done, int ms, int pollMs = 20) {
        const auto deadline = Clock::now() + std::chrono::milliseconds(ms);
        while (!done()) {
            if (Clock::now() > deadline) return false;
            readSign(pollMs);
        }
        return true;
    }

    void sendToBox(const std::string& bytes) { box.send(bytes); }

    // Reads what the sign got within ms; returns the new bytes.
    std::string readSign(int ms) {
        pollfd p{sign.master, POLLIN, 0};
        const std::string got = ::poll(&p, 1, ms) > 0 ? sign.take() : std::string();
        signBytes += got;
        return got;
    }

    PtyEnd box;
    PtyEnd sign;
    std::string signBytes;  // everything the sign has received

  private:
    void start(const std::string& binary, bool offscreen) {
        std::vector<std::string> env;
        for (char** e = environ; *e; ++e) {
            const std::string var = *e;
            if (var.rfind("XDG_CONFIG_HOME=", 0) == 0) continue;
            if (offscreen && var.rfind("QT_QPA_PLATFORM=", 0) == 0) continue;
            env.push_back(var);
        }
        env.push_back("XDG_CONFIG_HOME=" + m_config);
        if (offscreen) env.push_back("QT_QPA_PLATFORM=offscreen");
        std::vector<char*> envp;
        for (auto& v : env) envp.push_back(v.data());
        envp.push_back(nullptr);
        std::string path = binary;
        std::string noSplash = "--no-splash";
        char* argv[] = {path.data(), noSplash.data(), nullptr};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
        if (::posix_spawn(&m_pid, path.c_str(), &actions, nullptr, argv, envp.data()) != 0)
            m_pid = -1;
        posix_spawn_file_actions_destroy(&actions);
    }

    std::string m_config;
    pid_t m_pid = -1;
};

}  // namespace zelvan::testing
