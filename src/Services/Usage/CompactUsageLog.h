#pragma once

#include "Models/Usage/UsageRecords.h"

#include <QHash>

namespace kestrova {

/// The usage events in recording order, in 48 bytes each, and what many of them have in common
/// once. Copies share their memory until one of them changes.
class CompactUsageLog
{
public:
    struct Target
    {
        std::optional<qint64> slotIndex;
        std::optional<QString> bundleIdentifier;
        std::optional<QString> appName;

        bool operator==(const Target &) const = default;
    };
    struct Entry
    {
        QUuid id;
        Date timestamp;
        double durationMinutes = 0;
        qint64 wordCount = 0;
        quint32 target = 0; ///< its place in targets()
    };

    CompactUsageLog() = default;
    explicit CompactUsageLog(const QList<UsageEvent> &events);
    /// Reads as usageEventsFromJson() does and throws what it throws.
    static CompactUsageLog fromJson(const QByteArray &document);

    const QList<Entry> &entries() const { return m_entries; }
    /// Those of all entries, each once; perhaps some of entries that have been dropped.
    const QList<Target> &targets() const { return m_targets; }
    UsageEvent event(const Entry &entry) const;
    QList<UsageEvent> events() const;

    void append(const UsageEvent &event);
    /// Drops every event stamped before the cutoff; returns whether there was one. One pass over
    /// the log if a clock that was set back has left it out of order, else it costs nothing.
    bool dropBefore(Date cutoff);

private:
    quint32 placeOf(const Target &target);

    QList<Entry> m_entries;
    QList<Target> m_targets;
    QHash<Target, quint32> m_places;
    bool m_isChronological = true;
};

size_t qHash(const CompactUsageLog::Target &target, size_t seed);

} // namespace kestrova
