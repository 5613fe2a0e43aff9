#pragma once

#include "Models/Date.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace kestrova {

/// One finished dictation in the usage log.
struct UsageEvent
{
    QUuid id;
    Date timestamp; ///< when the dictation was recorded in the log
    std::optional<qint64> slotIndex;
    std::optional<QString> targetBundleIdentifier;
    std::optional<QString> targetAppName;
    qint64 wordCount = 0;
    double durationMinutes = 0;

    bool operator==(const UsageEvent &) const = default;
};

/// A document may hold any counts: their sum stays at the limit of its type rather than overflow.
qint64 cappedSum(qint64 a, qint64 b);

/// Totals over a time range.
struct UsageSummary
{
    qint64 recordings = 0;
    qint64 words = 0;
    double minutes = 0;

    bool operator==(const UsageSummary &) const = default;
};

/// One bar of the trend chart.
struct UsageBucket
{
    QString id; ///< unique within one list of buckets
    QString label;
    Date startDate;
    qint64 recordings = 0;
    qint64 words = 0;
    double minutes = 0;

    bool operator==(const UsageBucket &) const = default;
};

/// Totals of one destination application; appName identifies it.
struct TopApplicationUsage
{
    QString appName;
    qint64 recordings = 0;
    qint64 words = 0;
    double minutes = 0;

    bool operator==(const TopApplicationUsage &) const = default;
};

struct SlotUsageStat
{
    qint64 slotIndex = 0; ///< 1 to 9
    qint64 recordings = 0;

    bool operator==(const SlotUsageStat &) const = default;
};

/// Everything that the dashboard shows at once.
struct UsageDashboardSnapshot
{
    UsageSummary thisHour;
    UsageSummary today;
    UsageSummary thisWeek;
    UsageSummary thisMonth;
    double averageWordsPerRecording = 0;
    QList<TopApplicationUsage> topApplications;
    QList<SlotUsageStat> slotUsage;

    /// What an empty log yields: zeros, no application, and each hotbar slot unused.
    static UsageDashboardSnapshot empty();

    bool operator==(const UsageDashboardSnapshot &) const = default;
};

} // namespace kestrova
