#pragma once

#include "Models/Usage/Calendar.h"
#include "Services/Protocols.h"
#include "Services/Usage/StoredUsageLog.h"

#include <functional>

namespace kestrova {

/// The log of finished dictations, held in memory and stored whole under one key, and what the
/// dashboard shows of it. Main thread. Failures are not reported; what StoredUsageLog says of them
/// holds. A retention that drops most of a log may be due to a wrong clock, so that the document is
/// set aside.
class UsageAnalyticsService final : public UsageAnalyticsManaging
{
public:
    using NowProvider = std::function<Date()>;

    /// What the application passes.
    static QString standardKey();
    static constexpr int standardRetentionMonths = 12;

    static Date wallClockNow();

    /// Loads the stored log; one that cannot be read or does not decode counts as empty. Drops what
    /// is past its retention, and stores the log if there was any. The user defaults and the
    /// executor, on which the log is stored, outlive the service; the calendar serves all date
    /// arithmetic.
    UsageAnalyticsService(UserDefaults &userDefaults, Executor &storage, const QString &storageKey,
                          int retentionMonths, const Calendar &calendar,
                          NowProvider nowProvider = &wallClockNow);

    /// Stores the log only if it drops an event: one stamped more than the retention's calendar
    /// months ago.
    void refreshRetention() override;
    /// Appends the event, applies the retention, and stores the log, even if the event itself was
    /// too old to stay. JSON knows no infinities: an event that has one is ignored.
    void record(const UsageEvent &event) override;

    UsageDashboardSnapshot dashboardSnapshot(Date now) override;
    QList<UsageBucket> trendBuckets(UsageTrendPeriod period, Date now) override;

private:
    bool prune();

    StoredUsageLog m_log;
    const int m_retentionMonths;
    const Calendar m_calendar;
    const NowProvider m_nowProvider;
};

} // namespace kestrova
