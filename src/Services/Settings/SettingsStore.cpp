#include "Services/Settings/SettingsStore.h"

#include <mutex>

namespace kestrova {

using namespace Qt::StringLiterals;

struct SettingsStore::Shared
{
    explicit Shared(UserDefaults &userDefaults) : document(userDefaults, key()) {}

    std::optional<AppSettings> savedLast()
    {
        const std::lock_guard lock(mutex);
        return unstored;
    }
    void storeNewest();

    std::mutex documentMutex; // taken before the other one
    StoredDocument document;
    std::mutex mutex;
    std::optional<AppSettings> unstored; // guarded by mutex, as the number of saves
    quint64 saves = 0;
};

void SettingsStore::Shared::storeNewest()
{
    std::unique_lock lock(mutex);
    if (!unstored)
        return;
    const AppSettings newest = *unstored;
    const quint64 number = saves;
    lock.unlock();
    {
        const std::lock_guard documentLock(documentMutex);
        document.store(newest.toJson());
    }
    lock.lock();
    if (saves == number)
        unstored.reset();
}

SettingsStore::SettingsStore(UserDefaults &userDefaults, Executor &storage)
    : m_shared(std::make_shared<Shared>(userDefaults)),
      m_storing(storage, [shared = m_shared] { shared->storeNewest(); })
{
}

QString SettingsStore::key()
{
    return u"kestrova.settings.v1"_s;
}

AppSettings SettingsStore::load() const
{
    if (const auto saved = m_shared->savedLast())
        return *saved;
    return m_shared->document.read(&AppSettings::fromJson).value_or(AppSettings::defaults());
}

AppSettings SettingsStore::loadToEdit()
{
    // Nobody waits for the disk while a record of ours is on its way there.
    if (const auto saved = m_shared->savedLast())
        return *saved;
    const std::lock_guard documentLock(m_shared->documentMutex);
    return m_shared->document.load(&AppSettings::fromJson).value_or(AppSettings::defaults());
}

void SettingsStore::save(const AppSettings &settings)
{
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->unstored = settings;
        ++m_shared->saves;
    }
    m_storing.request();
}

} // namespace kestrova
