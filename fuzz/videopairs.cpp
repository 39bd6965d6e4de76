// Caption data as a corrupt video or stream would give it, through the digital
// video window's step from packet to pairs and on into the decoder. The input
// is a list of steps: a byte that picks the event, the field and whether the
// capture loop drains the ring, a length byte and that many bytes of data.
// Checked after each step: what reached the ring is whole pairs of seven-bit
// bytes, never padding, counted as the window counts them, and never more
// than the ring holds unread.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "line21/ccdata.h"
#include "support/quietprogram.h"
#include "support/scriptedmedia.h"

namespace {

using zelvan::MediaEvent;

void check(bool ok) {
    if (!ok) std::abort();
}

void checkPairs(const std::string& pairs, std::size_t from) {
    check(pairs.size() % 2 == 0 && pairs.size() / 2 <= from / 3);
    for (std::size_t i = 0; i < pairs.size(); i += 2) {
        check(!(pairs[i] & 0x80) && !(pairs[i + 1] & 0x80));
        check(pairs[i] != 0 || pairs[i + 1] != 0);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zelvan::testing::QuietProgram program;
    zelvan::Tavo& tavo = program.tavo;
    zelvan::InL21 memory;
    zelvan::testing::ScriptedMedia media;
    zelvan::testing::RecordingVideoView view;
    zelvan::L21VideoInput input(tavo, memory, media, view);
    tavo.frmL21Video = &input;
    tavo.bInL21Video = true;
    input.txtSource_Change("fuzz.ts");

    program.dispatch.post([&] {
        long expected = 0;
        long long position = 0;
        std::size_t at = 0;
        while (at + 2 <= size) {
            const std::uint8_t op = data[at];
            const std::size_t len = std::min<std::size_t>(data[at + 1], size - at - 2);
            const std::string bytes(reinterpret_cast<const char*>(data + at + 2), len);
            at += 2 + len;
            input.obField_Click(static_cast<std::int16_t>(op & 1) + 1);
            const auto kind = static_cast<MediaEvent::Kind>((op >> 1) % 7);
            const std::string pairs =
                zelvan::line21::fieldPairs(data + at - len, len, input.settings().Field);
            checkPairs(pairs, len);
            if (input.isOpen() && kind == MediaEvent::Kind::CaptionData)
                expected += static_cast<long>(pairs.size() / 2);
            position += (op >> 4) * 100;
            media.send({kind, "why", bytes, position});
            check(input.pairCount() == expected || !input.isOpen());
            check(tavo.queueRoom() >= 0);
            if (op & 0x80) tavo.drainQueue();
        }
        tavo.bStopCapture = true;
    });
    input.cmdOpen_Click();
    return 0;
}
