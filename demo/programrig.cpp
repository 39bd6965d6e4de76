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
#include <sstream>
#include <thread>

extern char** environ;

namespace zelvan {

ProgramRig::ProgramRig(const std::string& binary, ProgramOptions options) {
    char tmpl[] = "/tmp/zelvan-rig-XXXXXX";
    if (::mkdtemp(tmpl) == nullptr) return;
    m_config = tmpl;
    if (options.links == Links::Loopback) m_loopback = std::make_unique<LoopbackEnds>();
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
    const std::string boxDevice = m_loopback ? m_loopback->boxDevice() : box.slave;
    std::string signDevice = m_loopback ? m_loopback->signDevice() : sign.slave;
    if (!options.signDevice.empty()) signDevice = options.signDevice;
    std::ofstream(m_config + "/Zelvan21/Zelvan21.ini")
        << "[Devices]\nCOM1=" << boxDevice << "\nCOM2=" << signDevice << "\n"
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

bool ProgramRig::boxReady() {
    return m_loopback ? m_loopback->connectBox() : holds(box.slave);
}

namespace {

// Fields 14 and 15 of /proc/PID/stat, in clock ticks; the name before them is
// in parentheses and may hold spaces.
double cpuSeconds(pid_t pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    std::getline(stat, line);
    std::istringstream rest(line.substr(line.rfind(')') + 1));
    std::string field;
    for (int i = 3; i < 14; ++i) rest >> field;
    double user = 0, system = 0;
    rest >> user >> system;
    return (user + system) / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

}  // namespace

double ProgramRig::cpuShare(int ms) {
    const double before = cpuSeconds(m_pid);
    const auto start = Clock::now();
    waitUntil([] { return false; }, ms);
    const std::chrono::duration<double> wall = Clock::now() - start;
    return (cpuSeconds(m_pid) - before) / wall.count();
}

void ProgramRig::sendToBox(const std::string& bytes) {
    if (m_loopback)
        m_loopback->sendToBox(bytes);
    else
        box.send(bytes);
}

bool ProgramRig::waitUntil(const std::function<bool()>& done, int ms, int pollMs) {
    const auto deadline = Clock::now() + std::chrono::milliseconds(ms);
    while (!done()) {
        if (Clock::now() > deadline) return false;
        readSign(pollMs);
    }
    return true;
}

// Before the program has connected to the sign's server this only waits.
std::string ProgramRig::readSign(int ms) {
    const int fd = m_loopback ? m_loopback->signConnection() : sign.master;
    pollfd p{fd, POLLIN, 0};
    const std::string got = ::poll(&p, fd >= 0 ? 1 : 0, ms) > 0 ? takeAvailable(fd) : std::string();
    signBytes += got;
    return got;
}

}  // namespace zelvan
