#include "platform/settingsstore.h"

#include <charconv>

namespace zelvan {

bool readBoolSetting(const SettingsStore& store, const std::string& section, const std::string& key,
                     bool fallback) {
    const std::string text = store.get(section, key, boolSettingText(fallback));
    if (text == "True" || text == "true" || text == "TRUE") return true;
    if (text == "False" || text == "false" || text == "FALSE") return false;
    long n = 0;
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, n);
    if (text.empty() || ec != std::errc() || ptr != end) return fallback;
    return n != 0;
}

}  // namespace zelvan
