// Drives the display console with any sequence of operator actions, typed
// texts and line events over the fake port. It must never crash or hang; the
// rows in use stay 1 to 3, the engine's filter follows the box, and the box
// never stays ticked on a port that is closed.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "display/console.h"
#include "display/signmodel.h"
#include "support/quietprogram.h"
#include "support/recordinglinkview.h"

namespace zelvan {
namespace {

struct NullConsoleView : ConsoleView {
    void showBox(ConsoleBox, bool) override {}
    void showFilterCaption(const std::string&, int) override {}
    void showScrollLines(int) override {}
    void showLinesText(const std::string&) override {}
    void showPending(const std::string&) override {}
    void placeWindow() override {}
    void showWindow() override {}
    void hideWindow() override {}
};

struct Harness : testing::QuietProgram {
    testing::RecordingLinkView linkView;
    NullConsoleView view;
    DisplayConsole console{tavo, port, linkView, view};
    SignModel sign;

    Harness() {
        tavo.splitStartupBarker();
        console.formLoad();
    }

    void act(std::uint8_t op, std::uint8_t arg, const std::string& text) {
        switch (op % 16) {
            case 0:
                console.cmdPortOutOpen_Click();
                break;
            case 1:
                console.setBox(static_cast<ConsoleBox>(arg % kConsoleBoxes), arg & 0x80);
                break;
            case 2:
                console.setLinesText(text);
                break;
            case 3:
                console.setScrollLines(arg % 5);
                break;
            case 4:
                console.setPendingText(text);
                break;
            case 5:
                console.cmdSendIt_Click();
                break;
            case 6:
                console.cmdSendAt_Click();
                break;
            case 7:
                console.cmdFromReadable_Click(text);
                break;
            case 8:
                console.cmdLuckyCharm_Click(arg % 40, arg / 40);
                break;
            case 9:
                port.setCarrier(!port.carrier);
                break;
            case 10:
                port.vanish();
                break;
            case 11:
                port.failNextOpen();
                break;
            case 12:
                console.showForm();
                break;
            case 13:
                console.doInput(static_cast<std::int16_t>(arg % 4), text);
                break;
            case 14:
                console.setDefaults();
                break;
            default:
                dispatch.advance(arg * 10);
                break;
        }
        dispatch.yield();
    }

    void check() {
        const LineOutput& e = console.engine();
        if (e.iLines < 1 || e.iLines > 3) std::abort();
        if (e.bFilterOn != console.box(ConsoleBox::Filter)) std::abort();
        if (console.box(ConsoleBox::Filter) && !console.isPortOpen()) std::abort();
        for (const std::string& w : port.writes) sign.feed(w);
        port.writes.clear();
    }
};

}  // namespace
}  // namespace zelvan

// Each step takes an op, an argument and a text of up to 7 bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zelvan::Harness h;
    for (std::size_t i = 0; i + 2 < size && i < 4000;) {
        const std::uint8_t op = data[i], arg = data[i + 1];
        const std::size_t len = std::min<std::size_t>(data[i + 2] % 8, size - i - 3);
        const std::string text(reinterpret_cast<const char*>(data + i + 3), len);
        h.act(op, arg, text);
        h.check();
        i += 3 + len;
    }
    return 0;
}
