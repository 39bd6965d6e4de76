// Drives the line output engine with arbitrary rows, styles and modes, and the
// readable notation with arbitrary text. Whatever comes in, a frame never
// carries a column byte below 0x20 or more than 32 characters of text, the
// engine's counters stay inside its slots, the sign model reads every byte,
// and the notation gives every byte back.

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "core/inputfilter.h"
#include "core/readable.h"
#include "core/tavo.h"
#include "display/lineoutput.h"
#include "display/signmodel.h"
#include "platform/settingsstore.h"
#include "support/memorysettingsstore.h"
#include "support/rowsfilter.h"
#include "support/virtualdispatch.h"

namespace {

using namespace zelvan;

struct Reader {
    const std::uint8_t* data;
    std::size_t size;
    std::size_t pos = 0;
    bool more() const { return pos < size; }
    std::uint8_t next() { return pos < size ? data[pos++] : 0; }
};

void checkFrames(const RecordingDisplayLink& link) {
    for (const std::string& frame : link.writes) {
        if (frame.size() < 4 || frame[2] == 0x7F) continue;
        if (static_cast<unsigned char>(frame[3]) < 0x20) std::abort();
        if (frame.size() > 4 + 32 + 1) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string raw(reinterpret_cast<const char*>(data), size);
    if (fromReadable(toReadable(raw)) != raw) std::abort();
    (void)toReadable(fromReadable(raw));

    VirtualDispatch dispatch;
    MemorySettingsStore store;
    SilentTone tone;
    Tavo tavo(dispatch, store, tone);
    testing::RowsFilter filter;
    tavo.bInTDS = true;
    tavo.frmInTDS = &filter;
    RecordingDisplayLink link;
    LineOutput out(tavo, link);
    SignModel sign;

    Reader in{data, size};
    const std::uint8_t modes = in.next();
    out.bReverse = modes & 1;
    out.bSunrise = modes & 2;
    out.setBufferRollup(modes & 4);
    tavo.Obfuscate = modes & 8;
    tavo.ObfuscateType = (modes >> 4) & 1;
    out.iLines = static_cast<std::int16_t>(1 + (modes >> 5) % 3);
    out.bFilterOn = true;

    while (in.more()) {
        const std::uint8_t op = in.next();
        if (op < 0x40) {
            // Set a row to the next bytes, up to 40 of them.
            const std::size_t len = in.next() % 41;
            std::string text;
            for (std::size_t i = 0; i < len && in.more(); ++i) text += static_cast<char>(in.next());
            filter.rows[1 + op % 15] = text;
        } else if (op < 0x48) {
            out.iLines = static_cast<std::int16_t>(1 + op % 3);
        } else {
            out.doInput(static_cast<std::int16_t>(op % 5), std::string());
        }
        if (out.iLineCount < 0 || out.iLineCount > 3 || out.iNextRow < 0 || out.iNextRow > 4)
            std::abort();
        checkFrames(link);
        sign.feed(link.bytes());
        link.clear();
    }
    return 0;
}
