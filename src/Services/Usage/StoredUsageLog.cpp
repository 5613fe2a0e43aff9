#include "Services/Usage/StoredUsageLog.h"

#include "Services/Settings/StoredDocument.h"
#include "Services/Usage/UsageLog.h"

#include <mutex>
#include <utility>

namespace kestrova {

struct StoredUsageLog::Shared
{
    Shared(UserDefaults &userDefaults, const QString &key) : document(userDefaults, key) {}

    void store();
    bool storeDocument();
    std::optional<QByteArray> extendedDocument();
    std::optional<QByteArray> rewrittenDocument();

    StoredDocument document; // only where the log is stored, once it is loaded

    std::mutex mutex; // guards the rest, and is never held for long
    CompactUsageLog log;
    QList<UsageEvent> added; // at the end of the log, and not stored so far
    std::optional<Date> cutoff;
    bool mustRewrite = false; // more has changed than what was added
    bool hasLostMost = false; // of its events, which are still stored
};

namespace {

bool isMostLost(qsizetype before, qsizetype after)
{
    return after < before - after;
}

} // namespace

void StoredUsageLog::Shared::store()
{
    {
        const std::lock_guard lock(mutex);
        if (added.isEmpty() && !mustRewrite)
            return;
    }
    if (storeDocument())
        return;
    const std::lock_guard lock(mutex);
    mustRewrite = true;
}

bool StoredUsageLog::Shared::storeDocument()
{
    auto json = extendedDocument();
    if (!json)
        json = rewrittenDocument();
    return json && document.store(*json);
}

std::optional<QByteArray> StoredUsageLog::Shared::extendedDocument()
{
    QList<UsageEvent> events;
    {
        const std::lock_guard lock(mutex);
        if (mustRewrite)
            return std::nullopt;
        events.swap(added);
    }
    auto json = document.knownBytes();
    if (json)
        UsageLog::appendTo(*json, events);
    return json;
}

// Another program of the user, on another machine with the same home, may have stored events too;
// or the document could not be read before.
std::optional<QByteArray> StoredUsageLog::Shared::rewrittenDocument()
{
    UsageLog merged = document.load(&UsageLog::fromJson).value_or(UsageLog());
    CompactUsageLog ours;
    std::optional<Date> oldest;
    {
        const std::lock_guard lock(mutex);
        ours = log;
        oldest = cutoff;
        added.clear();
        mustRewrite = false;
    }
    merged.addMissing(ours);
    ours = {};
    const qsizetype before = merged.events().size();
    if (oldest)
        merged.dropBefore(*oldest);

    CompactUsageLog taken(merged.events());
    bool mustSetAside = isMostLost(before, taken.entries().size());
    {
        const std::lock_guard lock(mutex);
        for (const UsageEvent &event : std::as_const(added))
            taken.append(event);
        std::swap(log, taken);
        hasLostMost = hasLostMost || mustSetAside;
        mustSetAside = hasLostMost;
    }
    if (mustSetAside) {
        if (!document.setAside())
            return std::nullopt;
        const std::lock_guard lock(mutex);
        hasLostMost = false;
    }
    return merged.json();
}

StoredUsageLog::StoredUsageLog(UserDefaults &userDefaults, const QString &key, Executor &storage)
    : m_shared(std::make_shared<Shared>(userDefaults, key)),
      m_storing(storage, [shared = m_shared] { shared->store(); })
{
    if (auto log = m_shared->document.load(&CompactUsageLog::fromJson))
        m_shared->log = std::move(*log);
}

CompactUsageLog StoredUsageLog::log() const
{
    const std::lock_guard lock(m_shared->mutex);
    return m_shared->log;
}

void StoredUsageLog::append(const UsageEvent &event)
{
    const std::lock_guard lock(m_shared->mutex);
    m_shared->log.append(event);
    m_shared->added.append(event);
}

bool StoredUsageLog::dropBefore(Date cutoff)
{
    const std::lock_guard lock(m_shared->mutex);
    const qsizetype before = m_shared->log.entries().size();
    m_shared->cutoff = cutoff;
    if (!m_shared->log.dropBefore(cutoff))
        return false;
    m_shared->mustRewrite = true;
    if (isMostLost(before, m_shared->log.entries().size()))
        m_shared->hasLostMost = true;
    return true;
}

void StoredUsageLog::store()
{
    m_storing.request();
}

} // namespace kestrova
