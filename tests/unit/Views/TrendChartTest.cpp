#include "Views/Dashboard/Charts/TrendChart.h"
#include "support/QtPrinting.h"
#include "support/UsageBuckets.h"

#include <gmock/gmock.h>

#include <limits>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using Period = UsageTrendPeriod;
using Unit = Calendar::Unit;

class TrendChartTest : public testing::Test
{
protected:
    static QList<qint64> counting(qint64 count)
    {
        QList<qint64> words;
        for (qint64 i = 1; i <= count; ++i)
            words.append(i);
        return words;
    }
    static QStringList ticksOf(const TrendChart &chart)
    {
        QStringList ticks;
        for (const TrendMark &mark : chart.marks) {
            if (!mark.tickLabel.isEmpty())
                ticks.append(mark.tickLabel);
        }
        return ticks;
    }

    const Calendar calendar{QTimeZone::utc(), Qt::Sunday,
                            QLocale(QLocale::English, QLocale::UnitedStates)};
    const QList<UsageBucket> hours =
        bucketsOf(Unit::hour, "2026-11-19T15:00:00Z", counting(24), calendar, u"HH:mm");
    const QList<UsageBucket> days =
        bucketsOf(Unit::day, "2026-10-22T00:00:00Z", counting(30), calendar);
    const QList<UsageBucket> weeks =
        bucketsOf(Unit::week, "2026-08-30T00:00:00Z", counting(12), calendar);
    const QList<UsageBucket> months =
        bucketsOf(Unit::month, "2025-12-01T00:00:00Z", counting(12), calendar, u"MMM yy");
};

TEST_F(TrendChartTest, OfALongDailyTrendTheLastThirtyDaysAreShown)
{
    const auto buckets = dailyBuckets("2026-10-01T00:00:00Z", counting(45));
    const auto shown = usageTrendChartBuckets(Period::daily, buckets);
    ASSERT_EQ(shown.size(), 30);
    EXPECT_EQ(shown.first().words, 16);
    EXPECT_EQ(shown.last().words, 45);
    EXPECT_EQ(usageTotals(shown), (UsageSummary{30, (16 + 45) * 15, 15})) << "so do the metrics";
    EXPECT_EQ(usageTrendChartBuckets(Period::daily, buckets.first(31)).size(), 30);
}

TEST_F(TrendChartTest, ShorterAndOtherTrendsAreShownWhole)
{
    EXPECT_EQ(usageTrendChartBuckets(Period::daily, days), days);
    EXPECT_TRUE(usageTrendChartBuckets(Period::daily, {}).isEmpty());
    const auto long45 = dailyBuckets("2026-10-01T00:00:00Z", counting(45));
    for (const Period period : {Period::hourly, Period::weekly, Period::monthly})
        EXPECT_EQ(usageTrendChartBuckets(period, long45), long45);
}

TEST_F(TrendChartTest, TotalsDoNotOverflow)
{
    constexpr qint64 limit = std::numeric_limits<qint64>::max();
    const auto buckets = dailyBuckets("2026-10-01T00:00:00Z", {limit, 5});
    EXPECT_EQ(usageTotals(buckets), (UsageSummary{2, limit, 1}));
    EXPECT_EQ(usageTotals({}), UsageSummary());
}

TEST_F(TrendChartTest, TicksStandAtAFixedStrideBackFromTheLastBucket)
{
    EXPECT_EQ(
        ticksOf(trendChart(Period::hourly, hours, calendar)),
        QStringList({u"17"_s, u"20"_s, u"23"_s, u"02"_s, u"05"_s, u"08"_s, u"11"_s, u"14"_s}));
    EXPECT_EQ(
        ticksOf(trendChart(Period::daily, days, calendar)),
        QStringList({u"Oct 26"_s, u"Oct 31"_s, u"Nov 5"_s, u"Nov 10"_s, u"Nov 15"_s, u"Nov 20"_s}));
    EXPECT_EQ(
        ticksOf(trendChart(Period::weekly, weeks, calendar)),
        QStringList({u"Sep 6"_s, u"Sep 20"_s, u"Oct 4"_s, u"Oct 18"_s, u"Nov 1"_s, u"Nov 15"_s}));
    EXPECT_EQ(ticksOf(trendChart(Period::monthly, months, calendar)).size(), 12);
    EXPECT_EQ(ticksOf(trendChart(Period::monthly, months, calendar)).first(), u"Dec"_s);
}

TEST_F(TrendChartTest, ReadOutsNameTheTimeAndTheWords)
{
    EXPECT_EQ(trendChart(Period::hourly, hours, calendar).marks[0].readOut, u"15:00: 1 words"_s);
    EXPECT_EQ(trendChart(Period::daily, days, calendar).marks[22].readOut,
              u"Nov 13, 2026: 23 words"_s);
    EXPECT_EQ(trendChart(Period::weekly, weeks, calendar).marks[8].readOut,
              u"Oct 25 – Oct 31: 9 words"_s);
    EXPECT_EQ(trendChart(Period::monthly, months, calendar).marks[11].readOut,
              u"Nov 26: 12 words"_s);
}

TEST_F(TrendChartTest, DatesFollowTheLocale)
{
    const Calendar german{QTimeZone::utc(), Qt::Monday, QLocale(QLocale::German)};
    const auto ofGerman = [&](Period period, Unit unit) {
        return trendChart(period, bucketsOf(unit, "2026-03-15T00:00:00Z", {1}, german), german);
    };
    EXPECT_EQ(ticksOf(ofGerman(Period::daily, Unit::day)), QStringList{u"15. März"_s});
    EXPECT_EQ(ticksOf(ofGerman(Period::weekly, Unit::week)), QStringList{u"15. März"_s});
    EXPECT_EQ(ofGerman(Period::weekly, Unit::week).marks[0].readOut,
              u"15. März – 21. März: 1 words"_s);
}

TEST_F(TrendChartTest, AWeekEndsOnItsLastDayAlsoWhenTheClockChangesInIt)
{
    const Calendar berlin{QTimeZone("Europe/Berlin"), Qt::Monday,
                          QLocale(QLocale::English, QLocale::UnitedStates)};
    const auto week = bucketsOf(Unit::week, "2026-10-19T00:00:00+02:00", {5}, berlin);
    EXPECT_EQ(trendChart(Period::weekly, week, berlin).marks[0].readOut,
              u"Oct 19 – Oct 25: 5 words"_s);
}

TEST_F(TrendChartTest, TheAxisReachesTheMostWords)
{
    EXPECT_EQ(trendChart(Period::daily, days, calendar).axis, (ValueAxis{10, 3}));
    EXPECT_EQ(
        trendChart(Period::daily, dailyBuckets("2026-10-22T00:00:00Z", {0, 0}), calendar).axis,
        ValueAxis());
}

TEST_F(TrendChartTest, TheWholeIsToldInWords)
{
    EXPECT_EQ(trendChart(Period::weekly, weeks, calendar).textAlternative,
              u"Words per week, the last 12. Most: Nov 15 – Nov 21: 12 words."_s);
    EXPECT_EQ(trendChart(Period::hourly,
                         bucketsOf(Unit::hour, "2026-11-19T15:00:00Z", QList<qint64>(24, 0),
                                   calendar, u"HH:mm"),
                         calendar)
                  .textAlternative,
              u"Words per hour, the last 24. No words."_s);
    EXPECT_EQ(trendChart(Period::daily, {}, calendar), TrendChart());
}

} // namespace
} // namespace kestrova
