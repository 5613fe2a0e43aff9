#include "Views/Dashboard/Charts/TrendChart.h"

#include "Models/Usage/Calendar.h"
#include "Views/Dashboard/UsageText.h"

#include <algorithm>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostDailyBuckets = 30;
constexpr int daysPerWeek = 7;

struct Wording
{
    QString unit;
    int tickStride;
};

Wording wordingOf(UsageTrendPeriod period)
{
    switch (period) {
    case UsageTrendPeriod::hourly:
        return {u"hour"_s, 3};
    case UsageTrendPeriod::daily:
        return {u"day"_s, 5};
    case UsageTrendPeriod::weekly:
        return {u"week"_s, 2};
    case UsageTrendPeriod::monthly:
        return {u"month"_s, 1};
    }
    Q_UNREACHABLE();
}

QString tickText(UsageTrendPeriod period, Date date, const Calendar &calendar)
{
    switch (period) {
    case UsageTrendPeriod::hourly:
        return calendar.label(date, u"HH");
    case UsageTrendPeriod::daily:
    case UsageTrendPeriod::weekly:
        return calendar.monthAndDay(date);
    case UsageTrendPeriod::monthly:
        return calendar.label(date, u"MMM");
    }
    Q_UNREACHABLE();
}

QString timeText(UsageTrendPeriod period, const UsageBucket &bucket, const Calendar &calendar)
{
    if (period == UsageTrendPeriod::daily)
        return calendar.mediumDate(bucket.startDate);
    if (period != UsageTrendPeriod::weekly)
        return bucket.label;
    const Date lastDay = calendar.adding(daysPerWeek - 1, Calendar::Unit::day, bucket.startDate)
                             .value_or(bucket.startDate);
    return u"%1 – %2"_s.arg(calendar.monthAndDay(bucket.startDate), calendar.monthAndDay(lastDay));
}

QString textAlternative(const QString &unit, const QList<TrendMark> &marks,
                        const TrendMark &busiest)
{
    const QString subject = u"Words per %1, the last %2."_s.arg(unit).arg(marks.size());
    return busiest.words > 0 ? subject + u" Most: %1."_s.arg(busiest.readOut)
                             : subject + u" No words."_s;
}

} // namespace

QList<UsageBucket> usageTrendChartBuckets(UsageTrendPeriod period,
                                          const QList<UsageBucket> &buckets)
{
    const bool isLong = period == UsageTrendPeriod::daily && buckets.size() > mostDailyBuckets;
    return isLong ? buckets.last(mostDailyBuckets) : buckets;
}

UsageSummary usageTotals(const QList<UsageBucket> &buckets)
{
    UsageSummary totals;
    for (const UsageBucket &bucket : buckets) {
        totals.recordings = cappedSum(totals.recordings, bucket.recordings);
        totals.words = cappedSum(totals.words, bucket.words);
        totals.minutes += bucket.minutes;
    }
    return totals;
}

TrendChart trendChart(UsageTrendPeriod period, const QList<UsageBucket> &buckets,
                      const Calendar &calendar)
{
    const Wording wording = wordingOf(period);
    TrendChart chart;
    for (qsizetype i = 0; i < buckets.size(); ++i) {
        const UsageBucket &bucket = buckets[i];
        const bool hasTick = (buckets.size() - 1 - i) % wording.tickStride == 0;
        chart.marks.append(
            {bucket.words, hasTick ? tickText(period, bucket.startDate, calendar) : QString(),
             u"%1: %2"_s.arg(timeText(period, bucket, calendar), wordsText(bucket.words))});
    }
    if (chart.marks.isEmpty())
        return chart;
    const TrendMark busiest =
        *std::max_element(chart.marks.begin(), chart.marks.end(),
                          [](const auto &a, const auto &b) { return a.words < b.words; });
    chart.axis = ValueAxis::reaching(double(busiest.words));
    chart.textAlternative = textAlternative(wording.unit, chart.marks, busiest);
    return chart;
}

} // namespace kestrova
