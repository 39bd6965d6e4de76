// Drives the line output engine with arbitrary rows, styles and modes, and the
// readable notation with arbitrary text. Whatever comes in, every text frame
// is laid out as the sign expects: a plain text starts in column 1, a reversed
// one ends in column 32 at the latest and never starts left of column 1, and
// in sunrise mode each frame goes out four times from column 1. The engine's
// counters stay inside its slots, the sign model reads every byte, and the
// notation gives every byte back.

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

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

constexpr int kColumns = 32;
constexpr int kSunriseRepeats = 4;
// A sunrise repaint sends some twenty frames. Past a few dozen steps an input
// only repeats what its first steps did, and slows every run.
constexpr int kMaxSteps = 24;

int columnOf(const std::string& frame) {
    return static_cast<unsigned char>(frame[3]) - 0x1F;
}

// The body is what stands between the column byte and the closing byte. The
// notation may fold three characters of a row into one byte, never the other
// way, so a body is at most as long as the text it came from.
int bodyLength(const std::string& frame) {
    return static_cast<int>(frame.size()) - 5;
}

void checkTextFrame(const std::string& frame, const LineOutput& out) {
    const unsigned char row = static_cast<unsigned char>(frame[2]);
    if (row < 0x20 || row > 0x22) std::abort();
    const int column = columnOf(frame);
    if (column < 1) std::abort();
    const bool placedByLength = out.bReverse && !out.bSunrise;
    if (!placedByLength && column != 1) std::abort();
    if (out.bReverse && column - 1 + bodyLength(frame) > kColumns) std::abort();
}

void checkFrames(const RecordingDisplayLink& link, const LineOutput& out) {
    const std::vector<std::string>& frames = link.writes;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const std::string& frame = frames[i];
        if (frame.size() < 5 || frame[2] == 0x7F) continue;
        checkTextFrame(frame, out);
        if (!out.bSunrise) continue;
        for (int k = 1; k < kSunriseRepeats; ++k)
            if (i + 1 >= frames.size() || frames[++i] != frame) std::abort();
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

    for (int step = 0; in.more() && step < kMaxSteps; ++step) {
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
        checkFrames(link, out);
        sign.feed(link.bytes());
        link.clear();
    }
    return 0;
}
