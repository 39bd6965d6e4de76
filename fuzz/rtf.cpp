// Feeds any bytes to the rich text reader and renders what it made of them:
// it must never crash, hang or read out of bounds, whatever the file holds.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "support/rtfreader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view in(reinterpret_cast<const char*>(data), size);
    const zelvan::rtf::Document doc = zelvan::rtf::parse(in);
    (void)zelvan::rtf::toHtml(doc);
    (void)zelvan::rtf::toPlainText(doc);
    return 0;
}
