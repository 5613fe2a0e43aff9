#include "Views/Dashboard/Charts/HeatmapChart.h"

#include "Views/Dashboard/Charts/UsageHeatmap.h"
#include "Views/Dashboard/UsageText.h"

#include <algorithm>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

UsageHeatmapWeek daysOf(const QList<UsageHeatmapWeek> &weeks)
{
    UsageHeatmapWeek days;
    for (const UsageHeatmapWeek &week : weeks)
        days += week;
    return days;
}

QString readOut(const UsageHeatmapCell &day, const Calendar &calendar)
{
    return u"%1: %2"_s.arg(calendar.mediumDate(day.date), wordsText(day.words));
}

HeatmapMark markOf(const UsageHeatmapCell &day, qint64 mostWords, const Calendar &calendar)
{
    if (!day.isTracked)
        return {};
    return {heatmapLevel(day.words, mostWords), readOut(day, calendar)};
}

QString textAlternative(const UsageHeatmapWeek &days, const UsageHeatmapCell &busiest,
                        const Calendar &calendar)
{
    const auto first =
        std::find_if(days.begin(), days.end(), [](const auto &day) { return day.isTracked; });
    const QString range = u"Words per day, %1 to %2."_s.arg(calendar.mediumDate(first->date),
                                                            calendar.mediumDate(days.last().date));
    return busiest.words == 0 ? range + u" No words."_s
                              : range + u" Busiest day: %1."_s.arg(readOut(busiest, calendar));
}

bool isTracked(const HeatmapChart &chart, qsizetype index)
{
    return index >= 0 && index < chart.marks.size() &&
           chart.marks[index].level != HeatmapMark::untracked;
}

} // namespace

HeatmapChart heatmapChart(const QList<UsageBucket> &dailyBuckets, const Calendar &calendar)
{
    const QList<UsageHeatmapWeek> weeks = usageHeatmapWeeks(dailyBuckets, calendar);
    const UsageHeatmapWeek days = daysOf(weeks);
    HeatmapChart chart;
    if (days.isEmpty())
        return chart;
    const UsageHeatmapCell busiest = *std::max_element(
        days.begin(), days.end(), [](const auto &a, const auto &b) { return a.words < b.words; });
    for (const UsageHeatmapCell &day : days)
        chart.marks.append(markOf(day, busiest.words, calendar));
    chart.monthLabels = heatmapMonthLabels(weeks, calendar);
    chart.weekdayLabels = heatmapWeekdayLabels(calendar);
    chart.textAlternative = textAlternative(days, busiest, calendar);
    return chart;
}

std::optional<qsizetype> heatmapNeighbour(const HeatmapChart &chart, std::optional<qsizetype> from,
                                          int weeks, int days)
{
    if (chart.isEmpty())
        return std::nullopt;
    if (!from || !isTracked(chart, *from))
        return chart.marks.size() - 1;
    const qsizetype to = *from + qsizetype(weeks) * daysPerHeatmapWeek + days;
    return isTracked(chart, to) ? to : *from;
}

} // namespace kestrova
