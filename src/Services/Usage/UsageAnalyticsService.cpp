#include "Services/Usage/UsageAnalyticsService.h"

#include "Models/Usage/UsageEventsJson.h"
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

UsageAnalyticsService::UsageAnalyticsService(UserDefaults &userDefaults, const QString &storageKey,
                                             int retentionMonths, const Calendar &calendar,
                                             NowProvider nowProvider)
    : m_document(userDefaults, storageKey), m_retentionMonths(retentionMonths),
      m_calendar(calendar), m_nowProvider(std::move(nowProvider))
{
    if (auto log = m_document.load(&UsageLog::fromJson))
        m_log = std::move(*log);
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
    const qsizetype before = m_log.events().size();
    if (!cutoff || !m_log.dropBefore(*cutoff))
        return false;
    if (m_log.events().size() < before - m_log.events().size())
        m_hasLostMost = true;
    return true;
}

// Another program of the user, on another machine with the same home, may have stored events too;
// or the file could not be read at the start.
void UsageAnalyticsService::takeInWhatOthersStored()
{
    if (m_document.isAsKnown())
        return;
    auto stored = m_document.load(&UsageLog::fromJson);
    if (!stored)
        return;
    stored->addMissing(m_log);
    m_log = std::move(*stored);
    prune();
}

void UsageAnalyticsService::persist()
{
    takeInWhatOthersStored();
    if (m_hasLostMost && !m_document.setAside())
        return;
    m_hasLostMost = false;
    m_document.store(m_log.json());
}

} // namespace kestrova
