#pragma once
// A settings store in memory, for tests, benchmarks and fuzz targets that must
// not touch the disk.

#include <map>
#include <string>
#include <utility>

#include "platform/settingsstore.h"

namespace zelvan {

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
