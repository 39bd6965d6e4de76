// Reads any bytes as a caption script, as they come and behind a WebVTT header
// or a SubRip cue start so that all three readers see them. It must never
// crash or hang, and no caption may be empty or hold an empty line.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "textinput/captionscript.h"

namespace {

void check(const std::vector<std::string>& captions) {
    for (const std::string& c : captions) {
        if (c.empty() || c.find("\r\n\r\n") != std::string::npos) std::abort();
        const bool endsInBreak = c.size() >= 2 && c.compare(c.size() - 2, 2, "\r\n") == 0;
        if (c.rfind("\r\n", 0) == 0 || endsInBreak) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    for (const char* prefix : {"", "WEBVTT\n\n", "1\r\n00:00:01,000 --> 00:00:02,000\r\n"}) {
        std::vector<std::string> captions;
        zelvan::script::appendCaptions(prefix + bytes, captions);
        check(captions);
    }
    return 0;
}
