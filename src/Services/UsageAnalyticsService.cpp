#include "Services/UsageAnalyticsService.h"

#include "Models/UsageEventsJson.h"
#include "Services/StoredDocument.h"
#include "Services/UsageAggregation.h"

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

UsageAnalyticsService::UsageAnalyticsService(UserDefaults &userDefaults, const QString &storageKey,
                                             int retentionMonths, const Calendar &calendar,
                                             NowProvider nowProvider)
    : m_userDefaults(userDefaults), m_storageKey(storageKey), m_retentionMonths(retentionMonths),
      m_calendar(calendar), m_nowProvider(std::move(nowProvider))
{
    if (auto log = loadDocument(m_userDefaults, m_storageKey, &UsageLog::fromJson)) {
        m_log = std::move(*log);
        m_isStoredLogSound = true;
    }
    refreshRetention();
}

void UsageAnalyticsService::refreshRetention()
{
    if (prune())
        persist();
}

void UsageAnalyticsService::record(const UsageEvent &event)
{
    if (!std::isfinite(event.timestamp.secondsSinceReferenceDate) ||
        !std::isfinite(event.durationMinutes))
        return;
    m_log.append(event);
    prune();
    persist();
}

UsageDashboardSnapshot UsageAnalyticsService::dashboardSnapshot(Date now)
{
    return usageSnapshot(m_log.events(), m_calendar, now);
}

QList<UsageBucket> UsageAnalyticsService::trendBuckets(UsageTrendPeriod period, Date now)
{
    return usageTrendBuckets(m_log.events(), m_calendar, period, now);
}

bool UsageAnalyticsService::prune()
{
    const auto cutoff =
        m_calendar.adding(-qint64(m_retentionMonths), Calendar::Unit::month, m_nowProvider());
    return cutoff && m_log.dropBefore(*cutoff);
}

void UsageAnalyticsService::persist()
{
    if (m_isStoredLogSound) {
        storeDocument(m_userDefaults, m_storageKey, m_log.json());
        return;
    }
    m_isStoredLogSound =
        replaceDocument(m_userDefaults, m_storageKey, m_log.json(), &usageEventsFromJson);
}

} // namespace kestrova
