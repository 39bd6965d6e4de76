// Drives a serial link over the fake port with any sequence of operator
// actions and line events, some of them landing inside the link's own waits
// (hang-up pauses, the display's drain, the decoder's settling yields). The
// link must never crash or hang, and its Open/Close caption must end up
// matching the port.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/seriallink.h"
#include "support/quietprogram.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

struct Harness : testing::QuietProgram {
    testing::RecordingLinkView view;
    SerialLink link;

    explicit Harness(const LinkProfile& profile) : link(profile, port, tavo.linkContext(), view) {}

    void act(std::uint8_t op, std::uint8_t arg) {
        switch (op % 16) {
            case 0:
                link.openPort();
                break;
            case 1:
                link.closePort();
                break;
            case 2:
                link.hangUpPort();
                break;
            case 3:
                link.dial(std::string(arg % 4, '5'));
                break;
            case 4:
                link.write(std::string(arg % 64 + 1, 'F'));
                break;
            case 5:
                port.deliver(std::string(arg % 32 + 1, static_cast<char>(arg)));
                break;
            case 6:
                port.failNextOpen();
                break;
            case 7:
                port.failNextClose();
                break;
            case 8:
                port.vanish();
                break;
            case 9:
                port.setDrainMsPerByte(static_cast<int>(arg % 8) - 1);
                break;
            case 10:
                link.showNotice(arg & 1, "notice");
                break;
            case 11:
                link.saveSettings();
                break;
            case 12:
                store.set(link.profile().section, (arg & 1) ? "baud" : "port",
                          (arg & 2) ? "x" : std::to_string(arg));
                link.loadSettings();
                break;
            case 13:
                port.setCarrier(arg & 1);
                break;
            case 14:
                tavo.pollInput();
                break;
            default:
                dispatch.advance(arg * 10);
                break;
        }
    }
};

}  // namespace
}  // namespace zelvan

// Each open and each close of a port lets up to a thousand events run, so an
// input reads at most 32 steps: longer ones slowed every run.
constexpr std::size_t kMaxSteps = 32;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zelvan;
    if (size < 1) return 0;
    const LinkProfile* profiles[] = {&kL21Link, &kAsciiLink, &kDisplayLink};
    Harness h(*profiles[data[0] % 3]);
    for (std::size_t i = 1; i + 1 < size && i < 2 * kMaxSteps; i += 2) {
        const std::uint8_t op = data[i], arg = data[i + 1];
        if (op & 0x80) {
            // Later, inside whatever wait is running then.
            h.dispatch.postAt(h.dispatch.nowMs() + (op >> 4 & 7) * 250,
                              [&h, op, arg] { h.act(op, arg); });
        } else {
            h.act(op, arg);
        }
    }
    h.dispatch.advance(60000);
    h.dispatch.yield();  // events posted by the last scheduled call
    const bool open = h.link.isPortOpen();
    if (h.view.openCaption != (open ? kCaptionClose : kCaptionOpen)) std::abort();
    return 0;
}
