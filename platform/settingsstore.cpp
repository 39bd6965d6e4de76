#include "platform/settingsstore.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <strings.h>

namespace zelvan {

namespace {

// The words in any case; numeric text by its value, so "0.0" is False.
std::optional<bool> boolFromText(const std::string& text) {
    if (::strcasecmp(text.c_str(), "True") == 0) return true;
    if (::strcasecmp(text.c_str(), "False") == 0) return false;
    double n = 0;
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, n);
    if (text.empty() || ec != std::errc() || ptr != end || !std::isfinite(n)) return std::nullopt;
    return n != 0;
}

}  // namespace

bool readBoolSetting(const SettingsStore& store, const std::string& section, const std::string& key,
                     bool fallback) {
    return boolFromText(store.get(section, key, boolSettingText(fallback))).value_or(fallback);
}

long readNumberSetting(const SettingsStore& store, const std::string& section,
                       const std::string& key, long fallback) {
    const std::string text = store.get(section, key, std::to_string(fallback));
    long value = 0;
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, value);
    return text.empty() || ec != std::errc() || ptr != end ? fallback : value;
}

}  // namespace zelvan
