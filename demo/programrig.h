#pragma once
// The real program started as an operator would, with a decoder box and a sign
// on two pseudo-terminals: a private settings folder (a temporary
// XDG_CONFIG_HOME, never the operator's own) maps COM1 to the box's pty and
// COM2 to the sign's. The rig holds the master ends: it writes captions into
// the box and reads frames off the sign. On loopback links the box and the
// sign are network peers instead. The demo runs on it, and so do the
// end-to-end tests and the latency benchmark.

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "demo/loopbackends.h"
#include "demo/ptyend.h"

namespace zelvan {

// How the decoder box and the sign reach the program.
enum class Links {
    Pty,       // COM1 and COM2 are the pseudo-terminals' slaves
    Loopback,  // COM1 listens on loopback and the box connects to it, as a caption
               // encoder would; COM2 connects to the rig as to a sign's serial server
};

struct ProgramOptions {
    std::string extraIni = {};  // more lines for the settings file, after the device map
    bool offscreen = true;      // Qt's offscreen platform instead of the display that is set
    std::vector<std::string> args{"--no-splash"};
    bool quiet = true;            // the program's own diagnostics go to /dev/null
    std::string signDevice = {};  // COM2's device instead of the sign's pty, e.g. tcp://HOST:PORT
    Links links = Links::Pty;
};

class ProgramRig {
  public:
    using Clock = std::chrono::steady_clock;

    explicit ProgramRig(const std::string& binary, ProgramOptions options = {});
    // The tests' form: extraIni and offscreen as above.
    ProgramRig(const std::string& binary, const std::string& extraIni, bool offscreen = true);
    ~ProgramRig();
    ProgramRig(const ProgramRig&) = delete;
    ProgramRig& operator=(const ProgramRig&) = delete;

    bool running();
    pid_t pid() const { return m_pid; }
    // How the program ended, as waitpid gives it; meaningful once it has.
    int waitStatus() const { return m_status; }
    const std::string& configHome() const { return m_config; }

    // True once the program holds the device open.
    bool holds(const std::string& device) const;
    // True once the box's bytes reach the program: it holds the box's pty, or
    // the box got through to its listener.
    bool boxReady();
    // The share of one core the program uses over the next ms, the rig
    // reading the sign meanwhile.
    double cpuShare(int ms);

    // pollMs 0 spins instead of sleeping between reads: a measurement that
    // sleeps adds the machine's own wake-up time to the program's.
    bool waitUntil(const std::function<bool()>& done, int ms, int pollMs = 20);

    void sendToBox(const std::string& bytes);

    // Reads what the sign got within ms; returns the new bytes.
    std::string readSign(int ms);

    // Asks the program to end, and ends it if it doesn't within ms.
    void stop(int ms = 2000);

    PtyEnd box;
    PtyEnd sign;
    std::string signBytes;  // everything the sign has received

  private:
    void writeSettings(const ProgramOptions& options);
    void start(const std::string& binary, const ProgramOptions& options);

    std::unique_ptr<LoopbackEnds> m_loopback;  // only on loopback links
    std::string m_config;
    pid_t m_pid = -1;
    bool m_ended = false;
    int m_status = 0;
};

}  // namespace zelvan
