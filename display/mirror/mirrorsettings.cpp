#include "display/mirror/mirrorsettings.h"

namespace zelvan {

namespace {

// Each reader holds a socket, and the system gives a process a few thousand.
constexpr long kMostClients = 20000;

}  // namespace

MirrorSettings readMirrorSettings(const SettingsStore& store) {
    const MirrorSettings defaults;
    MirrorSettings s;
    s.enabled = readBoolSetting(store, kWebMirrorSection, "Enabled", defaults.enabled);
    s.address = store.get(kWebMirrorSection, "Address", defaults.address);
    if (s.address.empty()) s.address = defaults.address;
    const long port = readNumberSetting(store, kWebMirrorSection, "Port", defaults.port);
    if (port >= 1 && port <= 65535) s.port = static_cast<std::uint16_t>(port);
    const long most =
        readNumberSetting(store, kWebMirrorSection, "MaxClients", defaults.maxClients);
    if (most >= 1 && most <= kMostClients) s.maxClients = static_cast<int>(most);
    return s;
}

void writeMirrorSettings(SettingsStore& store, const MirrorSettings& settings) {
    store.set(kWebMirrorSection, "Enabled", boolSettingText(settings.enabled));
    store.set(kWebMirrorSection, "Address", settings.address);
    store.set(kWebMirrorSection, "Port", std::to_string(settings.port));
    store.set(kWebMirrorSection, "MaxClients", std::to_string(settings.maxClients));
}

}  // namespace zelvan
