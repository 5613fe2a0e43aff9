#include "Services/SettingsStore.h"

#include "Services/StoredDocument.h"

namespace kestrova {

using namespace Qt::StringLiterals;

QString SettingsStore::key()
{
    return u"kestrova.settings.v1"_s;
}

AppSettings SettingsStore::load() const
{
    return loadDocument(m_userDefaults, key(), &AppSettings::fromJson)
        .value_or(AppSettings::defaults());
}

void SettingsStore::save(const AppSettings &settings)
{
    replaceDocument(m_userDefaults, key(), settings.toJson(), &AppSettings::fromJson);
}

} // namespace kestrova
