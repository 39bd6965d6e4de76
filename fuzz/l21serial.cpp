// Drives the line-21 serial window's logic through showForm with any sequence
// of line bytes, button presses, channel changes, port failures and losses,
// each landing inside whatever capture loop or wait is running at its time.
// The window must never crash or hang; once hideForm has run, its port is
// closed, no loop is left, its caption says "Open" and nothing more is
// queued on the ring.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "line21/l21serialinput.h"
#include "support/quietprogram.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

struct Harness : testing::QuietProgram {
    InL21 memory;
    testing::RecordingL21SerialView view;
    L21SerialInput input{tavo, memory, port, view};

    void pressTestButton(std::uint8_t which) {
        switch (which % 9) {
            case 0:
                return input.cmdEDM_Click();
            case 1:
                return input.cmdENM_Click();
            case 2:
                return input.cmdFillDM_Click();
            case 3:
                return input.cmdFillNM_Click();
            case 4:
                return input.cmdShowDM_Click();
            case 5:
                return input.cmdShowNM_Click();
            case 6:
                return input.cmdFlip_Click();
            case 7:
                return input.cmdInit_Click();
            default:
                return input.Command1_Click();
        }
    }

    void act(std::uint8_t op, std::uint8_t arg) {
        switch (op % 12) {
            case 0:
                return port.deliver(std::string(1, static_cast<char>(arg)));
            case 1:
                return port.deliver(std::string{'\x14', static_cast<char>(arg)});
            case 2:
                return input.cmdPortOpen_Click();
            case 3:
                return pressTestButton(arg);
            case 4:
                return input.lbChannel_Click(static_cast<std::int16_t>(arg % 9));
            case 5:
                return port.vanish();
            case 6:
                return port.failNextOpen();
            case 7:
                return input.cmdPortHangup_Click();
            case 8:
                return input.cmdPortDial_Click(std::string(arg % 4, '7'));
            case 9:
                return input.hideForm();
            case 10:
                return input.TimerFlushTimer_Timer();
            default:
                return port.deliver(std::string(arg % 40 + 1, 'A'));
        }
    }
};

}  // namespace
}  // namespace zelvan

// Each open and each close of the port lets a thousand events run, so an input
// reads at most 16 steps: longer ones slowed every run and found nothing new.
constexpr std::size_t kMaxSteps = 16;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zelvan;
    Harness h;
    bool done = false;
    long long at = 1;
    for (std::size_t i = 0; i + 1 < size && i < 2 * kMaxSteps; i += 2) {
        const std::uint8_t op = data[i], arg = data[i + 1];
        at += (op >> 4) * 700;  // long enough apart for the flush timer to fire between
        h.dispatch.postAt(at, [&h, &done, op, arg] {
            // A call taken up with the last one may run after hideForm; the
            // operator has no window to act on by then.
            if (!done) h.act(op, arg);
        });
    }
    h.dispatch.postAt(at + 1, [&] {
        h.input.hideForm();
        done = true;
    });
    h.tavo.frmL21Serial = &h.input;
    h.tavo.bInL21Serial = true;
    h.input.showForm();
    while (!done) h.dispatch.yieldOrWait();
    h.dispatch.yield();  // the close's state event
    if (h.tavo.captureDepth != 0 || h.port.openState() != 0) std::abort();
    if (h.view.openCaption != kCaptionOpen || h.memory.view != nullptr) std::abort();
    const std::int32_t counted = h.tavo.totalChars;
    h.dispatch.advance(60000);
    if (h.tavo.totalChars != counted || h.input.TimerFlushTimer().enabled()) std::abort();
    return 0;
}
