#pragma once

#include "Models/Usage/Calendar.h"
#include "Services/Protocols.h"
#include "Services/Settings/StoredDocument.h"
#include "Services/Usage/UsageLog.h"

#include <functional>

namespace kestrova {

/// The log of finished dictations, held in memory and stored whole under one key, and what the
/// dashboard shows of it. Main thread. Failures are not reported: a log that cannot be stored keeps
/// its events in memory and is stored with the next one. Storing replaces no events that it has not
/// seen: those that somebody else stored meanwhile are taken in, and what cannot be read is set
/// aside. So is a log before it loses more than half of its events to its retention, because the
/// clock may be wrong.
class UsageAnalyticsService final : public UsageAnalyticsManaging
{
public:
    using NowProvider = std::function<Date()>;

    /// What the application passes.
    static QString standardKey();
    static constexpr int standardRetentionMonths = 12;

    static Date wallClockNow();

    /// Loads the stored log; one that cannot be read or does not decode counts as empty. Drops what
    /// is past its retention, and stores the log if there was any. The user defaults outlive the
    /// service; the calendar serves all date arithmetic.
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
    void takeInWhatOthersStored();
    void persist();

    StoredDocument m_document;
    const int m_retentionMonths;
    const Calendar m_calendar;
    const NowProvider m_nowProvider;
    UsageLog m_log;
    bool m_hasLostMost = false; // of its events, which are still stored
};

} // namespace kestrova
