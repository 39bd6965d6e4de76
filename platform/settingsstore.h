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

}  // namespace zelvan
