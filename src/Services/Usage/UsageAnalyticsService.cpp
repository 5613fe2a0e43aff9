#include "Services/Usage/UsageAnalyticsService.h"

#include "Services/Usage/UsageAggregation.h"

#include <chrono>
#include <cmath>

namespace kestrova {

using namespace Qt::StringLiterals;

QString UsageAnalyticsService::standardKey()
{
    return u"kestrova.usage.v1"_s;
}

Date UsageAnalyticsService::wallClockNow()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return Date::fromUnixTime(std::chrono::duration<double>(sinceEpoch).count());
}

UsageAnalyticsService::UsageAnalyticsService(UserDefaults &userDefaults, Executor &storage,
                                             const QString &storageKey, int retentionMonths,
                                             const Calendar &calendar, NowProvider nowProvider)
    : m_log(userDefaults, storageKey, storage), m_retentionMonths(retentionMonths),
      m_calendar(calendar), m_nowProvider(std::move(nowProvider))
{
    refreshRetention();
}

void UsageAnalyticsService::refreshRetention()
{
    if (prune())
        m_log.store();
}

void UsageAnalyticsService::record(const UsageEvent &event)
{
    if (!std::isfinite(event.timestamp.secondsSinceReferenceDate) ||
        !std::isfinite(event.durationMinutes))
        return;
    m_log.append(event);
    prune();
    m_log.store();
}

UsageDashboardSnapshot UsageAnalyticsService::dashboardSnapshot(Date now)
{
    return usageSnapshot(m_log.log(), m_calendar, now);
}

QList<UsageBucket> UsageAnalyticsService::trendBuckets(UsageTrendPeriod period, Date now)
{
    return usageTrendBuckets(m_log.log(), m_calendar, period, now);
}

bool UsageAnalyticsService::prune()
{
    const auto cutoff =
        m_calendar.adding(-qint64(m_retentionMonths), Calendar::Unit::month, m_nowProvider());
    return cutoff && m_log.dropBefore(*cutoff);
}

} // namespace kestrova
