#pragma once
// The settings store as an INI file, $XDG_CONFIG_HOME/Zelvan21/Zelvan21.ini,
// one INI section per settings section.

#include <QSettings>

#include "platform/settingsstore.h"

namespace zelvan {

class QtSettingsStore : public SettingsStore {
  public:
    QtSettingsStore();
    std::string get(const std::string& section, const std::string& key,
                    const std::string& fallback) const override;
    void set(const std::string& section, const std::string& key, const std::string& value) override;
    void sync() override;
    QString fileName() const { return m_settings.fileName(); }

  private:
    mutable QSettings m_settings;
};

}  // namespace zelvan
