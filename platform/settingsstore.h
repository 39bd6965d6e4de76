#pragma once
// The per-user settings store: text values addressed by section and key under
// the application "Zelvan21". A missing key reads as the caller's default.

#include <string>

namespace zelvan {

class SettingsStore {
  public:
    virtual ~SettingsStore() = default;
    virtual std::string get(const std::string& section, const std::string& key,
                            const std::string& fallback) const = 0;
    virtual void set(const std::string& section, const std::string& key,
                     const std::string& value) = 0;
    // Makes what was set durable; called before the process ends.
    virtual void sync() {}
};

// A boolean is stored as the word True or False, read in any case; numeric
// text counts too, by its value, 0 being False. Any other text keeps the
// fallback: nothing sound can be made of it.
bool readBoolSetting(const SettingsStore& store, const std::string& section, const std::string& key,
                     bool fallback);
inline const char* boolSettingText(bool b) {
    return b ? "True" : "False";
}

// A whole number; text that isn't one keeps the fallback.
long readNumberSetting(const SettingsStore& store, const std::string& section,
                       const std::string& key, long fallback);

}  // namespace zelvan
