#pragma once
// The web mirror as the program runs it: its settings, and while it is on,
// the server and its tap on the display link. While
// it is off it holds nothing, listens nowhere and costs a frame nothing.

#include <memory>
#include <string>

#include "display/mirror/mirrorsettings.h"
#include "platform/seriallink.h"

namespace zelvan {

class MirrorServer;

class WebMirror {
  public:
    // Starts at once when the stored settings have it on.
    WebMirror(SerialLink& link, EventDispatch& dispatch, SettingsStore& store);
    ~WebMirror();
    WebMirror(const WebMirror&) = delete;
    WebMirror& operator=(const WebMirror&) = delete;

    const MirrorSettings& settings() const { return m_settings; }
    // Stores the settings and starts, restarts or stops the server to match.
    void apply(const MirrorSettings& settings);

    bool running() const { return m_server != nullptr; }
    // Why it isn't running though it is on; empty otherwise.
    const std::string& error() const { return m_error; }
    std::size_t readers() const;
    // What phones open: http://ADDRESS:PORT/, with this computer's address on
    // its network when the mirror serves every network.
    std::string url() const;

  private:
    void start();
    void stop();

    SerialLink& m_link;
    EventDispatch& m_dispatch;
    SettingsStore& m_store;
    MirrorSettings m_settings;
    std::unique_ptr<MirrorServer> m_server;
    std::string m_error;
};

}  // namespace zelvan
