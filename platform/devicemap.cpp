#include "platform/devicemap.h"

#include <charconv>

namespace zelvan {

namespace {

inline constexpr std::string_view kClientScheme = "tcp://";
inline constexpr std::string_view kListenerScheme = "tcp-listen://";
inline constexpr const char* kForms =
    " A device is a path such as /dev/ttyUSB0, tcp://HOST:PORT, tcp-listen://ADDRESS:PORT or "
    "null.";

struct HostPort {
    std::string host;
    std::uint16_t port = 0;
    std::string error;
};

HostPort refused(std::string why) {
    HostPort hp;
    hp.error = std::move(why);
    return hp;
}

// "HOST:PORT", where an IPv6 host stands in brackets: [::1]:4001.
HostPort splitHostPort(std::string_view rest) {
    const std::size_t colon = rest.rfind(':');
    if (colon == std::string_view::npos) return refused("no port number after the host");
    std::string_view host = rest.substr(0, colon);
    if (host.size() >= 2 && host.front() == '[' && host.back() == ']')
        host = host.substr(1, host.size() - 2);
    if (host.empty()) return refused("no host before the port number");
    const std::string_view digits = rest.substr(colon + 1);
    unsigned value = 0;
    const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty() || ec != std::errc() || end != digits.data() + digits.size() || value < 1 ||
        value > 65535)
        return refused("the port number must be 1 to 65535");
    return {std::string(host), static_cast<std::uint16_t>(value), {}};
}

}  // namespace

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

bool isNetworkDevice(const std::string& text) {
    return text.starts_with(kClientScheme) || text.starts_with(kListenerScheme);
}

ParsedDevice parseDevice(std::int32_t port, const std::string& text) {
    const auto refuse = [&](const std::string& why) {
        return ParsedDevice{SerialDevice{text}, "The device " + deviceKey(port) + "=" + text +
                                                    " can't be used: " + why + "." + kForms};
    };
    const std::string_view entry = text;
    if (entry == kNullDeviceEntry) return {NullDevice{}, {}};
    const bool client = entry.starts_with(kClientScheme);
    if (!client && !entry.starts_with(kListenerScheme)) {
        if (entry.find("://") != std::string_view::npos) return refuse("unknown kind of device");
        return {SerialDevice{text}, {}};
    }
    HostPort hp = splitHostPort(entry.substr((client ? kClientScheme : kListenerScheme).size()));
    if (!hp.error.empty()) return refuse(hp.error);
    if (client) return {TcpClient{std::move(hp.host), hp.port}, {}};
    return {TcpListener{std::move(hp.host), hp.port}, {}};
}

ParsedDevice portDevice(const SettingsStore& store, std::int32_t port) {
    return parseDevice(port, devicePath(store, port));
}

}  // namespace zelvan
