#include "Services/Settings/SettingsStore.h"

namespace kestrova {

using namespace Qt::StringLiterals;

QString SettingsStore::key()
{
    return u"kestrova.settings.v1"_s;
}

AppSettings SettingsStore::load() const
{
    return m_document.read(&AppSettings::fromJson).value_or(AppSettings::defaults());
}

AppSettings SettingsStore::loadToEdit()
{
    return m_document.load(&AppSettings::fromJson).value_or(AppSettings::defaults());
}

void SettingsStore::save(const AppSettings &settings)
{
    m_document.store(settings.toJson());
}

} // namespace kestrova
