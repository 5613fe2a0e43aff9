#include "Views/Dashboard/Charts/UsageHeatmap.h"

#include <algorithm>
#include <map>

namespace kestrova {

namespace {

/// Days are counted from one anchor, as each step could move away from midnight where a clock
/// change skips it.
std::optional<Date> dayAfter(Date anchor, qint64 days, const Calendar &calendar)
{
    const std::optional<Date> moved = calendar.adding(days, Calendar::Unit::day, anchor);
    return moved ? std::optional(calendar.startOf(Calendar::Unit::day, *moved)) : std::nullopt;
}

const UsageHeatmapCell *firstTracked(const UsageHeatmapWeek &week)
{
    const auto cell =
        std::find_if(week.begin(), week.end(), [](const auto &c) { return c.isTracked; });
    return cell == week.end() ? nullptr : &*cell;
}

} // namespace

QList<UsageHeatmapWeek> usageHeatmapWeeks(const QList<UsageBucket> &dailyBuckets,
                                          const Calendar &calendar)
{
    std::map<Date, qint64> words;
    for (const UsageBucket &bucket : dailyBuckets)
        words[calendar.startOf(Calendar::Unit::day, bucket.startDate)] = bucket.words;
    if (words.empty())
        return {};

    const Date firstDay = words.begin()->first;
    const Date lastDay = words.rbegin()->first;
    const Date firstWeek = calendar.startOf(Calendar::Unit::week, firstDay);
    QList<UsageHeatmapWeek> weeks;
    std::optional<Date> day = firstWeek;
    for (qint64 count = 0; day && *day <= lastDay; day = dayAfter(firstWeek, ++count, calendar)) {
        if (count % daysPerHeatmapWeek == 0)
            weeks.append(UsageHeatmapWeek());
        const auto found = words.find(*day);
        weeks.last().append({*day, found == words.end() ? 0 : found->second, *day >= firstDay});
    }
    return weeks;
}

QStringList heatmapMonthLabels(const QList<UsageHeatmapWeek> &weeks, const Calendar &calendar)
{
    QStringList labels;
    std::optional<Date> labelledMonth;
    for (const UsageHeatmapWeek &week : weeks) {
        labels.append(QString());
        const UsageHeatmapCell *const cell = firstTracked(week);
        if (!cell)
            continue;
        const Date month = calendar.startOf(Calendar::Unit::month, cell->date);
        if (month == labelledMonth)
            continue;
        labelledMonth = month;
        labels.last() = calendar.label(month, u"MMM");
    }
    return labels;
}

QStringList heatmapWeekdayLabels(const Calendar &calendar)
{
    const Date week = calendar.startOf(Calendar::Unit::week, Date());
    QStringList labels;
    for (int day = 0; day < daysPerHeatmapWeek; ++day)
        labels.append(day % 2 == 1 ? calendar.label(*dayAfter(week, day, calendar), u"ddd")
                                   : QString());
    return labels;
}

int heatmapLevel(qint64 words, qint64 mostWords)
{
    if (words <= 0)
        return 0;
    const double ratio = double(words) / double(mostWords);
    return ratio < 0.2 ? 1 : ratio < 0.45 ? 2 : ratio < 0.75 ? 3 : 4;
}

} // namespace kestrova
