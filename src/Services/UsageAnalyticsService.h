#pragma once

#include "Models/Calendar.h"
#include "Platform/UserDefaults.h"
#include "Services/Protocols.h"
#include "Services/UsageLog.h"

#include <functional>

namespace kestrova {

/// The log of finished dictations, held in memory and stored whole under one key, and what the
/// dashboard shows of it. Main thread. Failures are not reported: a log that cannot be stored keeps
/// its events in memory and is stored with the next one.
class UsageAnalyticsService final : public UsageAnalyticsManaging
{
public:
    using NowProvider = std::function<Date()>;

    /// What the application passes.
    static QString standardKey();
    static constexpr int standardRetentionMonths = 12;

    static Date wallClockNow();

    /// Loads the stored log; one that does not decode counts as empty, and is set aside before it
    /// is replaced. Drops what is past its retention, and stores the log if there was any. The user
    /// defaults outlive the service; the calendar serves all date arithmetic.
    UsageAnalyticsService(UserDefaults &userDefaults, const QString &storageKey,
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
    void persist();

    UserDefaults &m_userDefaults;
    const QString m_storageKey;
    const int m_retentionMonths;
    const Calendar m_calendar;
    const NowProvider m_nowProvider;
    UsageLog m_log;
    // What is stored is a log: it may be replaced unseen.
    bool m_isStoredLogSound = false;
};

} // namespace kestrova
