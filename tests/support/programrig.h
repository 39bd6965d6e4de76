#pragma once
// The real program started as an operator would (offscreen, or on whatever
// display is set), with a decoder box and a sign on two pseudo-terminals: the
// settings map COM1 to the box's pty and COM2 to the sign's. The rig holds the
// master ends: it writes captions into the box and reads frames off the sign.

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
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

extern char** environ;

namespace zelvan::testing {

struct PtyEnd {
    int master = -1;
    std::string slave;

    PtyEnd() {
        int slaveFd = -1;
        char name[128] = {};
        if (::openpty(&master, &slaveFd, name, nullptr, nullptr) != 0) return;
        ::close(slaveFd);
        slave = name;
    }
    ~PtyEnd() {
        if (master >= 0) ::close(master);
    }
    PtyEnd(const PtyEnd&) = delete;
    PtyEnd& operator=(const PtyEnd&) = delete;
};

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

    bool waitUntil(const std::function<bool()>& done, int ms) {
        const auto deadline = Clock::now() + std::chrono::milliseconds(ms);
        while (!done()) {
            if (Clock::now() > deadline) return false;
            readSign(20);
        }
        return true;
    }

    void sendToBox(const std::string& bytes) {
        for (std::size_t off = 0; off < bytes.size();) {
            const ssize_t n = ::write(box.master, bytes.data() + off, bytes.size() - off);
            if (n > 0) off += static_cast<std::size_t>(n);
        }
    }

    // Reads what the sign got within ms; returns the new bytes.
    std::string readSign(int ms) {
        pollfd p{sign.master, POLLIN, 0};
        std::string got;
        if (::poll(&p, 1, ms) > 0 && (p.revents & POLLIN)) {
            char buf[4096];
            const ssize_t n = ::read(sign.master, buf, sizeof buf);
            if (n > 0) got.assign(buf, static_cast<std::size_t>(n));
        }
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
        char* argv[] = {path.data(), nullptr};
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

// Line-21 byte pairs of channel 1, as a decoder box delivers them.
inline std::string l21Pair(int a, int b) {
    return {static_cast<char>(a), static_cast<char>(b)};
}

// A pop-on caption on row 15: load, place, text, and the flip; each control
// pair doubled as broadcast.
inline std::string popOnCaption(const std::string& text) {
    std::string s;
    for (auto [a, b] : {std::pair{0x14, 0x20},
                        {0x14, 0x20},
                        {0x14, 0x2E},
                        {0x14, 0x2E},
                        {0x14, 0x70},
                        {0x14, 0x70}})
        s += l21Pair(a, b);
    s += text;
    if (text.size() % 2) s += '\0';  // text goes in pairs; a null pads the last
    s += l21Pair(0x14, 0x2F) + l21Pair(0x14, 0x2F);
    return s;
}

}  // namespace zelvan::testing
