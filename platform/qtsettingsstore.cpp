#include "platform/qtsettingsstore.h"

#include "platform/qtext.h"

namespace zelvan {

namespace {

// QSettings keeps the keys of its own "General" group at the top of the file,
// written as [General]; a group literally named "General" would come out as
// [%General]. So the section "General" maps to no group at all.
QString keyPath(const std::string& section, const std::string& key) {
    const QString k = QString::fromLatin1(key.c_str());
    if (section == "General") return k;
    return QString::fromLatin1(section.c_str()) + QLatin1Char('/') + k;
}

}  // namespace

QtSettingsStore::QtSettingsStore()
    : m_settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Zelvan21"),
                 QStringLiteral("Zelvan21")) {}

std::string QtSettingsStore::get(const std::string& section, const std::string& key,
                                 const std::string& fallback) const {
    const QVariant v = m_settings.value(keyPath(section, key));
    if (!v.isValid()) return fallback;
    // A value with a comma comes back from the INI file as a list.
    if (v.typeId() == QMetaType::QStringList) return fromQString(v.toStringList().join(','));
    return fromQString(v.toString());
}

void QtSettingsStore::set(const std::string& section, const std::string& key,
                          const std::string& value) {
    m_settings.setValue(keyPath(section, key), toQString(value));
}

void QtSettingsStore::sync() {
    m_settings.sync();
}

}  // namespace zelvan
