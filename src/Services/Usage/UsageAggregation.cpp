#include "Services/Usage/UsageAggregation.h"

#include "Models/UtcDateTime.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype topApplicationLimit = 5;

struct Trend
{
    Calendar::Unit unit;
    int bucketCount;
    QStringView labelFormat; // as QLocale::toString() takes it
};

Trend trendOf(UsageTrendPeriod period)
{
    switch (period) {
    case UsageTrendPeriod::hourly:
        return {Calendar::Unit::hour, 24, u"HH:mm"};
    case UsageTrendPeriod::daily:
        return {Calendar::Unit::day, 365, u"MMM d"};
    case UsageTrendPeriod::weekly:
        return {Calendar::Unit::week, 12, u"MMM d"};
    case UsageTrendPeriod::monthly:
        return {Calendar::Unit::month, 12, u"MMM yy"};
    }
    Q_UNREACHABLE();
}

template <typename Totals>
void count(const CompactUsageLog::Entry &event, Totals &totals)
{
    ++totals.recordings;
    totals.words = cappedSum(totals.words, event.wordCount);
    totals.minutes += event.durationMinutes;
}

QString applicationName(const CompactUsageLog::Target &target)
{
    if (target.appName && !target.appName->isEmpty())
        return *target.appName;
    if (target.bundleIdentifier && !target.bundleIdentifier->isEmpty())
        return *target.bundleIdentifier;
    return u"Unknown"_s;
}

/// Totals per application, in the order of the first event of each.
class ApplicationTotals
{
public:
    /// The targets of the events outlive this.
    explicit ApplicationTotals(const QList<CompactUsageLog::Target> &targets)
        : m_targets(targets), m_placesByTarget(std::size_t(targets.size()))
    {
    }

    void add(const CompactUsageLog::Entry &event)
    {
        auto &place = m_placesByTarget[event.target];
        if (!place)
            place = placeOf(applicationName(m_targets[event.target]));
        count(event, m_totals[*place]);
    }

    QList<TopApplicationUsage> top(qsizetype limit) const
    {
        QList<TopApplicationUsage> sorted = m_totals;
        std::stable_sort(sorted.begin(), sorted.end(), [](const auto &a, const auto &b) {
            return std::pair(a.recordings, a.words) > std::pair(b.recordings, b.words);
        });
        return sorted.first(std::min(limit, sorted.size()));
    }

private:
    qsizetype placeOf(const QString &name)
    {
        const auto known = m_places.constFind(name);
        if (known != m_places.constEnd())
            return *known;
        m_places.insert(name, m_totals.size());
        m_totals.append({name});
        return m_totals.size() - 1;
    }

    const QList<CompactUsageLog::Target> &m_targets;
    std::vector<std::optional<qsizetype>> m_placesByTarget;
    QHash<QString, qsizetype> m_places;
    QList<TopApplicationUsage> m_totals;
};

QString utcIdentifier(Date date)
{
    return utcDateTime(qint64(std::floor(date.unixTime()))).toString(Qt::ISODate);
}

/// The buckets' ranges. Where the calendar skips local times, two may overlap; both bounds still
/// only grow from bucket to bucket.
struct Ranges
{
    std::vector<Date> starts;
    std::vector<Date> ends;
};

Ranges rangesOf(const Trend &trend, const Calendar &calendar, Date now)
{
    const Date anchor = calendar.startOf(trend.unit, now);
    Ranges ranges;
    for (int age = trend.bucketCount - 1; age >= 0; --age) {
        const Date start = calendar.adding(-age, trend.unit, anchor).value_or(anchor);
        ranges.starts.push_back(start);
        ranges.ends.push_back(calendar.adding(1, trend.unit, start).value_or(start));
    }
    return ranges;
}

void count(const CompactUsageLog::Entry &event, const Ranges &ranges, QList<UsageBucket> &buckets)
{
    const auto firstLater =
        std::upper_bound(ranges.starts.begin(), ranges.starts.end(), event.timestamp);
    for (auto i = firstLater - ranges.starts.begin() - 1; i >= 0; --i) {
        if (ranges.ends[std::size_t(i)] <= event.timestamp)
            return;
        count(event, buckets[i]);
    }
}

} // namespace

UsageDashboardSnapshot usageSnapshot(const CompactUsageLog &log, const Calendar &calendar, Date now)
{
    const Date hour = calendar.startOf(Calendar::Unit::hour, now);
    const Date day = calendar.startOf(Calendar::Unit::day, now);
    const Date week = calendar.startOf(Calendar::Unit::week, now);
    const Date month = calendar.startOf(Calendar::Unit::month, now);

    UsageDashboardSnapshot snapshot = UsageDashboardSnapshot::empty();
    ApplicationTotals applications(log.targets());
    UsageSummary all;
    const auto countSince = [now](Date start, const CompactUsageLog::Entry &event,
                                  UsageSummary &summary) {
        if (start <= event.timestamp && event.timestamp < now)
            count(event, summary);
    };
    for (const CompactUsageLog::Entry &event : log.entries()) {
        countSince(hour, event, snapshot.thisHour);
        countSince(day, event, snapshot.today);
        countSince(week, event, snapshot.thisWeek);
        countSince(month, event, snapshot.thisMonth);
        count(event, all);
        applications.add(event);
        const auto slot = log.targets()[event.target].slotIndex;
        if (slot && *slot >= 1 && *slot <= snapshot.slotUsage.size())
            ++snapshot.slotUsage[*slot - 1].recordings;
    }
    if (all.recordings > 0)
        snapshot.averageWordsPerRecording = double(all.words) / double(all.recordings);
    snapshot.topApplications = applications.top(topApplicationLimit);
    return snapshot;
}

QList<UsageBucket> usageTrendBuckets(const CompactUsageLog &log, const Calendar &calendar,
                                     UsageTrendPeriod period, Date now)
{
    const Trend trend = trendOf(period);
    const Ranges ranges = rangesOf(trend, calendar, now);
    QList<UsageBucket> buckets;
    for (const Date start : ranges.starts)
        buckets.append({utcIdentifier(start), calendar.label(start, trend.labelFormat), start});
    for (const CompactUsageLog::Entry &event : log.entries())
        count(event, ranges, buckets);
    return buckets;
}

} // namespace kestrova
