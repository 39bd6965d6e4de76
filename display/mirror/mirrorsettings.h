#pragma once
// The web mirror's settings, section "WebMirror". It is off until the operator
// turns it on, and then serves this computer only until an address on the
// venue's network is chosen.

#include <cstdint>
#include <string>

#include "platform/settingsstore.h"

namespace zelvan {

inline constexpr const char* kWebMirrorSection = "WebMirror";

struct MirrorSettings {
    bool enabled = false;
    std::string address = "127.0.0.1";
    std::uint16_t port = 8021;
    int maxClients = 1000;
    bool operator==(const MirrorSettings&) const = default;
};

// A value out of range or unreadable keeps its default.
MirrorSettings readMirrorSettings(const SettingsStore& store);
void writeMirrorSettings(SettingsStore& store, const MirrorSettings& settings);

}  // namespace zelvan
