#pragma once

#include "Models/Usage/Calendar.h"
#include "Models/Usage/UsageRecords.h"

#include <QStringList>

namespace kestrova {

/// One day of the heatmap.
struct UsageHeatmapCell
{
    Date date; ///< the start of the day
    qint64 words = 0;
    bool isTracked = false; ///< the day lies inside the range that has data

    bool operator==(const UsageHeatmapCell &) const = default;
};

/// Seven days in their order; the last week of a heatmap may have fewer.
using UsageHeatmapWeek = QList<UsageHeatmapCell>;

constexpr int daysPerHeatmapWeek = 7;

/// One column a week, from the week of the first daily bucket to the day of the last one. Buckets
/// may come in any order; days without one count as 0 words.
QList<UsageHeatmapWeek> usageHeatmapWeeks(const QList<UsageBucket> &dailyBuckets,
                                          const Calendar &calendar);

/// One text a column, empty where the month of its first tracked day is that of the last labelled
/// column, or where it has no tracked day.
QStringList heatmapMonthLabels(const QList<UsageHeatmapWeek> &weeks, const Calendar &calendar);

/// Seven texts, beginning with the calendar's first weekday: every second weekday has its name, the
/// others are empty.
QStringList heatmapWeekdayLabels(const Calendar &calendar);

/// 0 without words, else 1 to 4 by the share of the busiest day: below 20 %, below 45 %, below
/// 75 %, and the rest.
int heatmapLevel(qint64 words, qint64 mostWords);

} // namespace kestrova
