#pragma once
// The per-user settings store: text values addressed by section and key under
// the application "Zelvan21". A missing key reads as the caller's default.

#include <map>
#include <string>
#include <utility>

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

// In memory, for tests and for a program that must not touch the disk.
class MemorySettingsStore : public SettingsStore {
  public:
    std::string get(const std::string& section, const std::string& key,
                    const std::string& fallback) const override {
        auto it = m_values.find({section, key});
        return it == m_values.end() ? fallback : it->second;
    }
    void set(const std::string& section, const std::string& key,
             const std::string& value) override {
        m_values[{section, key}] = value;
        ++m_writes;
    }
    bool has(const std::string& section, const std::string& key) const {
        return m_values.count({section, key}) > 0;
    }
    int writes() const { return m_writes; }

  private:
    std::map<std::pair<std::string, std::string>, std::string> m_values;
    int m_writes = 0;
};

}  // namespace zelvan
