#include "demo/captionwatch.h"

#include "platform/codepage.h"

namespace zelvan {

namespace {

std::string trimmed(const std::string& s) {
    const auto first = s.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

std::string toUtf8(const std::string& signBytes) {
    std::string out;
    for (unsigned char b : signBytes)
        codepage::appendUtf8(out, b == kSignMusicNote ? U'\u266A' : codepage::toUnicode(b));
    return out;
}

}  // namespace

std::string reflectorCaption(const SignModel& sign) {
    std::string caption;
    for (int r = 1; r <= kSignRows; ++r) {
        const std::string row = trimmed(sign.rowThroughReflector(r));
        if (row.empty()) continue;
        if (!caption.empty()) caption += " / ";
        caption += toUtf8(row);
    }
    return caption;
}

void CaptionWatch::take(const std::string& bytes, Clock::time_point now) {
    if (bytes.empty()) return;
    m_sign.feed(bytes);
    m_lastBytes = now;
    m_changed = true;
}

std::optional<std::string> CaptionWatch::settled(Clock::time_point now) {
    if (!m_changed || now - m_lastBytes < kSettle) return std::nullopt;
    m_changed = false;
    std::string caption = reflectorCaption(m_sign);
    if (caption == m_shown) return std::nullopt;
    m_shown = caption;
    if (caption.empty()) return std::nullopt;
    return caption;
}

}  // namespace zelvan
