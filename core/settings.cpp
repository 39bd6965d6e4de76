// The section "General" of the settings store, and the startup caption's lines.

#include <charconv>
#include <limits>
#include <optional>

#include "core/tavo.h"

namespace zelvan {

namespace {

constexpr const char* kGeneral = "General";

std::optional<long> parseInteger(const std::string& text) {
    long value = 0;
    const char* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (ec != std::errc() || ptr != end || text.empty()) return std::nullopt;
    return value;
}

bool readBool(const SettingsStore& store, const char* key, bool fallback) {
    return readBoolSetting(store, kGeneral, key, fallback);
}

// Text that isn't a 16-bit integer keeps the default.
std::int16_t readInt16(const SettingsStore& store, const char* key, std::int16_t fallback) {
    auto n = parseInteger(store.get(kGeneral, key, std::to_string(fallback)));
    if (!n || *n < std::numeric_limits<std::int16_t>::min() ||
        *n > std::numeric_limits<std::int16_t>::max())
        return fallback;
    return static_cast<std::int16_t>(*n);
}

std::string trimBlanks(const std::string& s) {
    const auto first = s.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

}  // namespace

void Tavo::loadSettings() {
    BeepOnMessage = readBool(m_store, "BeepOnMessage", false);
    DoStartupBarker = readBool(m_store, "DoStartupBarker", true);
    StartupBarker = m_store.get(kGeneral, "StartupBarker", kDefaultStartupBarker);
    ExitDisplayTask = readInt16(m_store, "ExitDisplayTask", 1);
    Obfuscate = readBool(m_store, "Obfuscate", false);
    ObfuscateType = readInt16(m_store, "ObfuscateType", 0);
    InputFilterType = readInt16(m_store, "InputFilterType", 1);
    splitStartupBarker();
}

void Tavo::saveSettings() {
    m_store.set(kGeneral, "BeepOnMessage", boolSettingText(BeepOnMessage));
    m_store.set(kGeneral, "DoStartupBarker", boolSettingText(DoStartupBarker));
    m_store.set(kGeneral, "StartupBarker", StartupBarker);
    m_store.set(kGeneral, "Obfuscate", boolSettingText(Obfuscate));
    m_store.set(kGeneral, "ObfuscateType", std::to_string(ObfuscateType));
    m_store.set(kGeneral, "InputFilterType", std::to_string(InputFilterType));
    m_store.set(kGeneral, "ExitDisplayTask", std::to_string(ExitDisplayTask));
    splitStartupBarker();
}

// The caption splits at each "<br>" (exact case); empty pieces take no slot.
// The sign has three rows, so a fourth piece and those after it are dropped.
void Tavo::splitStartupBarker() {
    static constexpr std::string_view kTag = "<br>";
    barkerLines.fill({});
    barkerLineCount = 0;
    std::size_t start = 0;
    while (true) {
        const std::size_t tag = StartupBarker.find(kTag, start);
        const std::string piece = trimBlanks(StartupBarker.substr(
            start, tag == std::string::npos ? std::string::npos : tag - start));
        if (!piece.empty() && barkerLineCount < kBarkerSlots)
            barkerLines[barkerLineCount++] = piece;
        if (tag == std::string::npos) break;
        start = tag + kTag.size();
    }
}

}  // namespace zelvan
