#include "Services/Usage/CompactUsageLog.h"

#include "Models/Usage/UsageEventsJson.h"

#include <algorithm>

namespace kestrova {

size_t qHash(const CompactUsageLog::Target &target, size_t seed)
{
    return qHashMulti(seed, target.slotIndex.value_or(0),
                      target.bundleIdentifier.value_or(QString()),
                      target.appName.value_or(QString()));
}

CompactUsageLog::CompactUsageLog(const QList<UsageEvent> &events)
{
    // With room to grow, because the next event is appended on the main thread.
    for (const UsageEvent &event : events)
        append(event);
}

CompactUsageLog CompactUsageLog::fromJson(const QByteArray &document)
{
    CompactUsageLog log;
    readUsageEvents(document,
                    [&log](const UsageEvent &event, QByteArrayView) { log.append(event); });
    return log;
}

UsageEvent CompactUsageLog::event(const Entry &entry) const
{
    const Target &target = m_targets[entry.target];
    return {.id = entry.id,
            .timestamp = entry.timestamp,
            .slotIndex = target.slotIndex,
            .targetBundleIdentifier = target.bundleIdentifier,
            .targetAppName = target.appName,
            .wordCount = entry.wordCount,
            .durationMinutes = entry.durationMinutes};
}

QList<UsageEvent> CompactUsageLog::events() const
{
    QList<UsageEvent> events;
    events.reserve(m_entries.size());
    for (const Entry &entry : m_entries)
        events.append(event(entry));
    return events;
}

void CompactUsageLog::append(const UsageEvent &event)
{
    if (!m_entries.isEmpty() && event.timestamp < m_entries.last().timestamp)
        m_isChronological = false;
    m_entries.append(
        {.id = event.id,
         .timestamp = event.timestamp,
         .durationMinutes = event.durationMinutes,
         .wordCount = event.wordCount,
         .target = placeOf({event.slotIndex, event.targetBundleIdentifier, event.targetAppName})});
}

bool CompactUsageLog::dropBefore(Date cutoff)
{
    const auto isOld = [cutoff](const Entry &entry) { return entry.timestamp < cutoff; };
    if (!m_isChronological)
        return m_entries.removeIf(isOld) > 0;
    const auto firstKept = std::find_if_not(m_entries.cbegin(), m_entries.cend(), isOld);
    if (firstKept == m_entries.cbegin())
        return false;
    m_entries.erase(m_entries.cbegin(), firstKept);
    return true;
}

quint32 CompactUsageLog::placeOf(const Target &target)
{
    const auto known = m_places.constFind(target);
    if (known != m_places.constEnd())
        return *known;
    const auto place = quint32(m_targets.size());
    m_places.insert(target, place);
    m_targets.append(target);
    return place;
}

} // namespace kestrova
