#pragma once
// Which device stands behind a port number. The operator maps numbers to
// devices in the settings section "Devices" (key COM1, COM2, ...; the value a
// device path, such as /dev/ttyUSB0 or a stable /dev/serial/by-id/ name).
// An unmapped number n is the n-th built-in port, /dev/ttyS<n-1>.

#include <cstdint>
#include <string>

#include "platform/settingsstore.h"

namespace zelvan {

inline constexpr const char* kDevicesSection = "Devices";
// The port numbers the setup dialogs offer.
inline constexpr std::int32_t kDialogPorts = 8;

std::string deviceKey(std::int32_t port);
// The mapped path, or the built-in default; empty for a number below 1,
// which names no device.
std::string devicePath(const SettingsStore& store, std::int32_t port);
// The path the number has when nothing is mapped.
std::string defaultDevicePath(std::int32_t port);
// Maps a number to a path; numbers below 1 are ignored.
void setDevicePath(SettingsStore& store, std::int32_t port, const std::string& path);

}  // namespace zelvan
