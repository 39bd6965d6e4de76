// The device entries of the port map, read once into a device.

#include "platform/devicemap.h"

#include <gtest/gtest.h>

namespace zelvan {
namespace {

// A bad entry is refused with a message naming it and what is wrong.
TEST(DeviceMapTest, EntriesNameASerialLineOrAConnectionOrAreRefused) {
    const struct {
        const char* entry;
        Device device;
        const char* why = "";
    } cases[] = {{"tcp://encoder.local:4001", TcpClient{"encoder.local", 4001}},
                 {"tcp://[::1]:65535", TcpClient{"::1", 65535}},
                 {"tcp-listen://0.0.0.0:6000", TcpListener{"0.0.0.0", 6000}},
                 {"null", NullDevice{}},
                 {"tcp://nohost", {}, "no port number"},
                 {"tcp://:4001", {}, "no host"},
                 {"tcp://box:0", {}, "1 to 65535"},
                 {"tcp://box:65536", {}, "1 to 65535"},
                 {"tcp://box:4x", {}, "1 to 65535"},
                 {"tcp-listen://[]:1", {}, "no host"},
                 {"udp://box:4001", {}, "unknown kind"}};
    for (const auto& c : cases) {
        const ParsedDevice parsed = parseDevice(3, c.entry);
        const std::string refusal = "The device COM3=" + std::string(c.entry) + " can't be used: ";
        if (*c.why == '\0')
            EXPECT_TRUE(parsed.error.empty() && parsed.device == c.device) << c.entry;
        else
            EXPECT_TRUE(parsed.error.starts_with(refusal) &&
                        parsed.error.find(c.why) != std::string::npos)
                << parsed.error;
    }
}

}  // namespace
}  // namespace zelvan
