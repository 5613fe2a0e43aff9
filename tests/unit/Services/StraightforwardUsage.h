#pragma once

#include "Models/Json/JsonObjectReader.h"
#include "Models/Usage/UsageEventsJson.h"
#include "Models/UtcDateTime.h"
#include "Services/Usage/UsageAggregation.h"

#include <QHash>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>

namespace kestrova {

/// The usage figures by the plainest means, one scan per figure, and QtCore's JSON: what tests
/// compare results with, and benchmarks speeds.
class StraightforwardUsage
{
public:
    StraightforwardUsage(const QList<UsageEvent> &events, const Calendar &calendar)
        : m_events(events), m_calendar(calendar)
    {
    }

    static QList<UsageEvent> fromJson(const QByteArray &document)
    {
        using namespace Qt::StringLiterals;
        const QJsonDocument parsed = QJsonDocument::fromJson(document);
        if (!parsed.isArray())
            throw JsonDecodingError(u"The document is not an array."_s);
        QList<UsageEvent> events;
        for (const QJsonValue &value : parsed.array()) {
            const QJsonObject object = value.toObject();
            const JsonObjectReader reader(object);
            UsageEvent event;
            event.id = QUuid::fromString(reader.string("id"_L1));
            event.timestamp = {object.value("timestamp"_L1).toDouble()};
            if (object.contains("slotIndex"_L1))
                event.slotIndex = int(reader.int64("slotIndex"_L1));
            event.targetBundleIdentifier = reader.optionalString("targetBundleIdentifier"_L1);
            event.targetAppName = reader.optionalString("targetAppName"_L1);
            event.wordCount = reader.int64("wordCount"_L1);
            event.durationMinutes = object.value("durationMinutes"_L1).toDouble();
            events.append(event);
        }
        return events;
    }

    static QByteArray toJson(const QList<UsageEvent> &events)
    {
        using namespace Qt::StringLiterals;
        QJsonArray array;
        for (const UsageEvent &event : events) {
            QJsonObject object{
                {"id"_L1, event.id.toString(QUuid::WithoutBraces).toUpper()},
                {"timestamp"_L1, event.timestamp.secondsSinceReferenceDate},
                {"wordCount"_L1, event.wordCount},
                {"durationMinutes"_L1, event.durationMinutes},
            };
            if (event.slotIndex)
                object.insert("slotIndex"_L1, *event.slotIndex);
            if (event.targetBundleIdentifier)
                object.insert("targetBundleIdentifier"_L1, *event.targetBundleIdentifier);
            if (event.targetAppName)
                object.insert("targetAppName"_L1, *event.targetAppName);
            array.append(object);
        }
        return QJsonDocument(array).toJson(QJsonDocument::Compact);
    }

    QList<UsageEvent> keptSince(Date cutoff) const
    {
        QList<UsageEvent> kept;
        std::copy_if(m_events.begin(), m_events.end(), std::back_inserter(kept),
                     [cutoff](const UsageEvent &event) { return event.timestamp >= cutoff; });
        return kept;
    }

    UsageSummary summary(Date start, Date end) const
    {
        UsageSummary summary;
        for (const UsageEvent &event : m_events) {
            if (start <= event.timestamp && event.timestamp < end)
                add(event, summary);
        }
        return summary;
    }

    UsageDashboardSnapshot snapshot(Date now) const
    {
        using Unit = Calendar::Unit;
        UsageDashboardSnapshot snapshot;
        snapshot.thisHour = summary(m_calendar.startOf(Unit::hour, now), now);
        snapshot.today = summary(m_calendar.startOf(Unit::day, now), now);
        snapshot.thisWeek = summary(m_calendar.startOf(Unit::week, now), now);
        snapshot.thisMonth = summary(m_calendar.startOf(Unit::month, now), now);
        qint64 words = 0;
        for (const UsageEvent &event : m_events)
            words += event.wordCount;
        if (!m_events.isEmpty())
            snapshot.averageWordsPerRecording = double(words) / double(m_events.size());
        snapshot.topApplications = topApplications();
        for (int slot = 1; slot <= 9; ++slot) {
            snapshot.slotUsage.append(
                {slot, std::count_if(m_events.begin(), m_events.end(), [slot](const auto &event) {
                     return event.slotIndex == slot;
                 })});
        }
        return snapshot;
    }

    QList<UsageBucket> buckets(UsageTrendPeriod period, Date now) const
    {
        switch (period) {
        case UsageTrendPeriod::hourly:
            return buckets(Calendar::Unit::hour, 24, u"HH:mm", now);
        case UsageTrendPeriod::daily:
            return buckets(Calendar::Unit::day, 365, u"MMM d", now);
        case UsageTrendPeriod::weekly:
            return buckets(Calendar::Unit::week, 12, u"MMM d", now);
        case UsageTrendPeriod::monthly:
            return buckets(Calendar::Unit::month, 12, u"MMM yy", now);
        }
        Q_UNREACHABLE();
    }

private:
    template <typename Totals>
    static void add(const UsageEvent &event, Totals &totals)
    {
        ++totals.recordings;
        totals.words += event.wordCount;
        totals.minutes += event.durationMinutes;
    }

    QList<TopApplicationUsage> topApplications() const
    {
        QHash<QString, TopApplicationUsage> byName;
        QStringList names;
        for (const UsageEvent &event : m_events) {
            QString name = event.targetAppName.value_or(QString());
            if (name.isEmpty())
                name = event.targetBundleIdentifier.value_or(QString());
            if (name.isEmpty())
                name = QStringLiteral("Unknown");
            if (!byName.contains(name))
                names.append(name);
            byName[name].appName = name;
            add(event, byName[name]);
        }
        QList<TopApplicationUsage> sorted;
        for (const QString &name : names)
            sorted.append(byName.value(name));
        std::stable_sort(sorted.begin(), sorted.end(), [](const auto &a, const auto &b) {
            return a.recordings != b.recordings ? a.recordings > b.recordings : a.words > b.words;
        });
        return sorted.first(std::min(qsizetype(5), sorted.size()));
    }

    QList<UsageBucket> buckets(Calendar::Unit unit, int count, QStringView format, Date now) const
    {
        const Date anchor = m_calendar.startOf(unit, now);
        QList<UsageBucket> buckets;
        for (int i = 0; i < count; ++i) {
            const Date start = m_calendar.adding(-(count - 1 - i), unit, anchor).value();
            const UsageSummary totals = summary(start, m_calendar.adding(1, unit, start).value());
            const auto utc = utcDateTime(qint64(start.unixTime()));
            buckets.append({utc.toString(Qt::ISODate), m_calendar.label(start, format), start,
                            totals.recordings, totals.words, totals.minutes});
        }
        return buckets;
    }

    QList<UsageEvent> m_events;
    Calendar m_calendar;
};

} // namespace kestrova
