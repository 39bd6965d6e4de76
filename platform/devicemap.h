#pragma once
// Which device stands behind a port number. The operator maps numbers to
// devices in the settings section "Devices" (key COM1, COM2, ...). A value is
// a serial device path, such as /dev/ttyUSB0 or a stable /dev/serial/by-id/
// name, or a TCP connection: tcp://HOST:PORT, which the program makes (a
// serial server, an encoder's data port), or tcp-listen://ADDRESS:PORT, on
// which it takes one peer at a time (a caption writer's program that connects
// out). The word null names a port that takes every byte and drops it: a
// venue that shows captions only on phones runs without a sign. An unmapped
// number n is the n-th built-in port, /dev/ttyS<n-1>.

#include <cstdint>
#include <string>
#include <variant>

#include "platform/settingsstore.h"

namespace zelvan {

inline constexpr const char* kDevicesSection = "Devices";
// The port numbers the setup dialogs offer.
inline constexpr std::int32_t kDialogPorts = 8;

struct SerialDevice {
    std::string path;
    bool operator==(const SerialDevice&) const = default;
};
struct TcpClient {
    std::string host;
    std::uint16_t port = 0;
    bool operator==(const TcpClient&) const = default;
};
struct TcpListener {
    std::string address;
    std::uint16_t port = 0;
    bool operator==(const TcpListener&) const = default;
};
struct NullDevice {
    bool operator==(const NullDevice&) const = default;
};
using Device = std::variant<SerialDevice, TcpClient, TcpListener, NullDevice>;

inline constexpr const char* kNullDeviceEntry = "null";

// A device entry read once: the device, or why the entry names none.
struct ParsedDevice {
    Device device;
    std::string error;  // names the entry; empty when the entry is good
};

std::string deviceKey(std::int32_t port);
// The mapped path, or the built-in default; empty for a number below 1,
// which names no device.
std::string devicePath(const SettingsStore& store, std::int32_t port);
// The path the number has when nothing is mapped.
std::string defaultDevicePath(std::int32_t port);
// Maps a number to a path; numbers below 1 are ignored.
void setDevicePath(SettingsStore& store, std::int32_t port, const std::string& path);

// Whether an entry names a TCP connection rather than a serial line.
bool isNetworkDevice(const std::string& text);
// What an entry `text` of port `port` names.
ParsedDevice parseDevice(std::int32_t port, const std::string& text);
// The device behind a port number, as the map has it.
ParsedDevice portDevice(const SettingsStore& store, std::int32_t port);

}  // namespace zelvan
