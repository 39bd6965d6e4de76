#include "demo/programrig.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <thread>

extern char** environ;

namespace zelvan {

ProgramRig::ProgramRig(const std::string& binary, ProgramOptions options) {
    char tmpl[] = "/tmp/zelvan-rig-XXXXXX";
    if (::mkdtemp(tmpl) == nullptr) return;
    m_config = tmpl;
    writeSettings(options);
    start(binary, options);
}

ProgramRig::ProgramRig(const std::string& binary, const std::string& extraIni, bool offscreen)
    : ProgramRig(binary, ProgramOptions{.extraIni = extraIni, .offscreen = offscreen}) {}

ProgramRig::~ProgramRig() {
    stop(0);
    if (!m_config.empty()) {
        std::error_code ec;
        std::filesystem::remove_all(m_config, ec);
    }
}

void ProgramRig::writeSettings(const ProgramOptions& options) {
    std::filesystem::create_directories(m_config + "/Zelvan21");
    std::ofstream(m_config + "/Zelvan21/Zelvan21.ini")
        << "[Devices]\nCOM1=" << box.slave
        << "\nCOM2=" << (options.signDevice.empty() ? sign.slave : options.signDevice) << "\n"
        << options.extraIni;
}

void ProgramRig::start(const std::string& binary, const ProgramOptions& options) {
    std::vector<std::string> env;
    for (char** e = environ; *e; ++e) {
        const std::string var = *e;
        if (var.rfind("XDG_CONFIG_HOME=", 0) == 0) continue;
        if (options.offscreen && var.rfind("QT_QPA_PLATFORM=", 0) == 0) continue;
        env.push_back(var);
    }
    env.push_back("XDG_CONFIG_HOME=" + m_config);
    if (options.offscreen) env.push_back("QT_QPA_PLATFORM=offscreen");
    std::vector<char*> envp;
    for (auto& v : env) envp.push_back(v.data());
    envp.push_back(nullptr);
    std::vector<std::string> args{binary};
    args.insert(args.end(), options.args.begin(), options.args.end());
    std::vector<char*> argv;
    for (auto& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (options.quiet) posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    if (::posix_spawn(&m_pid, binary.c_str(), &actions, nullptr, argv.data(), envp.data()) != 0)
        m_pid = -1;
    posix_spawn_file_actions_destroy(&actions);
}

// The child is reaped here once it has ended, so its number is never used again.
bool ProgramRig::running() {
    if (m_pid <= 0 || m_ended) return false;
    if (::waitpid(m_pid, &m_status, WNOHANG) == 0) return true;
    m_ended = true;
    return false;
}

void ProgramRig::stop(int ms) {
    if (!running()) return;
    if (ms > 0) {
        ::kill(m_pid, SIGTERM);
        const auto deadline = Clock::now() + std::chrono::milliseconds(ms);
        while (running() && Clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        if (!running()) return;
    }
    ::kill(m_pid, SIGKILL);
    ::waitpid(m_pid, &m_status, 0);
    m_ended = true;
}

bool ProgramRig::holds(const std::string& device) const {
    std::error_code ec;
    for (const auto& fd :
         std::filesystem::directory_iterator("/proc/" + std::to_string(m_pid) + "/fd", ec)) {
        std::error_code linkEc;
        if (std::filesystem::read_symlink(fd.path(), linkEc).string() == device) return true;
    }
    return false;
}

bool ProgramRig::waitUntil(const std::function<bool()>& done, int ms, int pollMs) {
    const auto deadline = Clock::now() + std::chrono::milliseconds(ms);
    while (!done()) {
        if (Clock::now() > deadline) return false;
        readSign(pollMs);
    }
    return true;
}

std::string ProgramRig::readSign(int ms) {
    pollfd p{sign.master, POLLIN, 0};
    const std::string got = ::poll(&p, 1, ms) > 0 ? sign.take() : std::string();
    signBytes += got;
    return got;
}

}  // namespace zelvan
