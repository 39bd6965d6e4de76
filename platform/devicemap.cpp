#include "platform/devicemap.h"

namespace zelvan {

std::string deviceKey(std::int32_t port) {
    return "COM" + std::to_string(port);
}

std::string defaultDevicePath(std::int32_t port) {
    if (port < 1) return {};
    return "/dev/ttyS" + std::to_string(port - 1);
}

std::string devicePath(const SettingsStore& store, std::int32_t port) {
    if (port < 1) return {};
    return store.get(kDevicesSection, deviceKey(port), defaultDevicePath(port));
}

void setDevicePath(SettingsStore& store, std::int32_t port, const std::string& path) {
    if (port < 1) return;
    store.set(kDevicesSection, deviceKey(port), path);
}

}  // namespace zelvan
