#include "Services/Usage/UsageAggregation.h"
#include "Services/StraightforwardUsage.h"
#include "support/DateText.h"
#include "support/QtPrinting.h"
#include "support/UsageEvents.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

Calendar calendarOf(const char *zone)
{
    return {QTimeZone(zone), Qt::Monday, QLocale::c()};
}

class UsageAggregationTest : public testing::Test
{
protected:
    QList<UsageBucket> buckets(const QList<UsageEvent> &events, UsageTrendPeriod period) const
    {
        return usageTrendBuckets(CompactUsageLog(events), calendar, period, now);
    }

    UsageDashboardSnapshot snapshot(const QList<UsageEvent> &events) const
    {
        return usageSnapshot(CompactUsageLog(events), calendar, now);
    }

    static qint64 totalOf(const QList<UsageBucket> &buckets)
    {
        qint64 recordings = 0;
        for (const UsageBucket &bucket : buckets)
            recordings += bucket.recordings;
        return recordings;
    }

    static QStringList namesOf(const UsageDashboardSnapshot &snapshot)
    {
        QStringList names;
        for (const auto &application : snapshot.topApplications)
            names.append(application.appName);
        return names;
    }

    Calendar calendar = calendarOf("UTC");
    Date now = date("2024-03-27T14:35:00Z"); // a Wednesday
};

TEST_F(UsageAggregationTest, AnEmptyLogYieldsTheEmptySnapshot)
{
    const UsageDashboardSnapshot empty = UsageDashboardSnapshot::empty();
    EXPECT_EQ(snapshot({}), empty);
    EXPECT_EQ(empty.thisHour, UsageSummary());
    EXPECT_EQ(empty.averageWordsPerRecording, 0);
    EXPECT_TRUE(empty.topApplications.isEmpty());
    ASSERT_EQ(empty.slotUsage.size(), 9);
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(empty.slotUsage[i], (SlotUsageStat{i + 1, 0}));
}

TEST_F(UsageAggregationTest, AnEmptyLogYieldsEveryBucketWithZeros)
{
    const std::pair<UsageTrendPeriod, int> counts[] = {{UsageTrendPeriod::hourly, 24},
                                                       {UsageTrendPeriod::daily, 365},
                                                       {UsageTrendPeriod::weekly, 12},
                                                       {UsageTrendPeriod::monthly, 12}};
    for (const auto &[period, count] : counts) {
        const auto list = buckets({}, period);
        EXPECT_EQ(list.size(), count);
        for (const UsageBucket &bucket : list) {
            EXPECT_EQ(bucket.recordings, 0);
            EXPECT_EQ(bucket.words, 0);
            EXPECT_EQ(bucket.minutes, 0);
        }
    }
}

TEST_F(UsageAggregationTest, AnEventAtNowCountsInTheHourlyBucketButInNoSummary)
{
    const QList<UsageEvent> events{eventAt(now, 7)};
    const auto dashboard = snapshot(events);
    for (const auto &summary :
         {dashboard.thisHour, dashboard.today, dashboard.thisWeek, dashboard.thisMonth})
        EXPECT_EQ(summary, UsageSummary());
    EXPECT_EQ(dashboard.averageWordsPerRecording, 7);
    for (const UsageTrendPeriod period : allCases<UsageTrendPeriod>())
        EXPECT_EQ(buckets(events, period).last().recordings, 1) << int(period);
}

TEST_F(UsageAggregationTest, EachSummaryReachesFromTheStartOfItsPeriodUpToNow)
{
    const auto dashboard = snapshot({
        eventAt(date("2024-02-29T23:59:59.999Z"), 1),
        eventAt(date("2024-03-01T00:00:00Z"), 10),
        eventAt(date("2024-03-24T23:59:59Z"), 100),
        eventAt(date("2024-03-25T00:00:00Z"), 1000),
        eventAt(date("2024-03-27T00:00:00Z"), 10'000),
        eventAt(date("2024-03-27T14:00:00Z"), 100'000),
        eventAt(date("2024-03-27T14:34:59.999Z"), 1'000'000),
        eventAt(date("2024-03-27T14:35:00.001Z"), 10'000'000),
    });
    EXPECT_EQ(dashboard.thisHour, (UsageSummary{2, 1'100'000, 1}));
    EXPECT_EQ(dashboard.today, (UsageSummary{3, 1'110'000, 1.5}));
    EXPECT_EQ(dashboard.thisWeek, (UsageSummary{4, 1'111'000, 2}));
    EXPECT_EQ(dashboard.thisMonth, (UsageSummary{6, 1'111'110, 3}));
}

TEST_F(UsageAggregationTest, ApplicationsAreRankedByRecordingsAndThenByWords)
{
    const auto dashboard = snapshot({eventFor(u"C"_s, 100), eventFor(u"A"_s, 2),
                                     eventFor(u"A"_s, 3), eventFor(u"B"_s, 10), eventFor(u"A"_s, 5),
                                     eventFor(u"B"_s, 9), eventFor(u"B"_s, 1)});
    EXPECT_EQ(dashboard.topApplications,
              QList<TopApplicationUsage>(
                  {{u"B"_s, 3, 20, 1.5}, {u"A"_s, 3, 10, 1.5}, {u"C"_s, 1, 100, 0.5}}));
}

TEST_F(UsageAggregationTest, OfSevenApplicationsFiveAreShown)
{
    QList<UsageEvent> events;
    for (const QChar letter : u"abcdefg"_s)
        events.append(eventFor(QString(letter)));
    events.append(eventFor(u"g"_s));
    EXPECT_EQ(namesOf(snapshot(events)), QStringList({u"g"_s, u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
}

TEST_F(UsageAggregationTest, AnApplicationGoesByItsNameElseItsIdentifierElseUnknown)
{
    UsageEvent named = eventFor(u"Editor"_s);
    named.targetBundleIdentifier = u"org.example.Editor"_s;
    UsageEvent identified = eventFor(u""_s);
    identified.targetBundleIdentifier = u"org.example.Editor"_s;
    UsageEvent empty = eventFor(std::nullopt);
    empty.targetBundleIdentifier = u""_s;
    EXPECT_EQ(namesOf(snapshot(
                  {named, identified, empty, eventFor(std::nullopt), eventFor(u"editor"_s)})),
              QStringList({u"Unknown"_s, u"Editor"_s, u"org.example.Editor"_s, u"editor"_s}));
}

TEST_F(UsageAggregationTest, SlotsOutsideOneToNineAreNotShown)
{
    QList<UsageEvent> events;
    for (const int slot : {2, 2, 11, 0, -1, 10, std::numeric_limits<int>::min()}) {
        events.append(eventAt(now));
        events.last().slotIndex = slot;
    }
    auto expected = UsageDashboardSnapshot::empty().slotUsage;
    expected[1].recordings = 2;
    EXPECT_EQ(snapshot(events).slotUsage, expected);
}

TEST_F(UsageAggregationTest, TheAverageIsTakenOverAllEvents)
{
    const auto dashboard = snapshot(
        {eventAt(date("2023-06-01T00:00:00Z"), 10), eventAt(date("2023-06-02T00:00:00Z"), 20)});
    EXPECT_EQ(dashboard.averageWordsPerRecording, 15);
    EXPECT_EQ(dashboard.thisMonth, UsageSummary());
}

TEST_F(UsageAggregationTest, CountsBeyondEveryNumberStayAtTheLimit)
{
    const qint64 most = std::numeric_limits<qint64>::max();
    const auto dashboard = snapshot({eventFor(u"A"_s, most), eventFor(u"A"_s, most)});
    EXPECT_EQ(dashboard.topApplications.first().words, most);
    const qint64 least = std::numeric_limits<qint64>::min();
    const auto negative = snapshot({eventFor(u"A"_s, least), eventFor(u"A"_s, -1)});
    EXPECT_EQ(negative.topApplications.first().words, least);
}

TEST_F(UsageAggregationTest, HourlyBucketsEndWithTheCurrentHour)
{
    const auto list = buckets({}, UsageTrendPeriod::hourly);
    EXPECT_EQ(list.first().label, u"15:00"_s);
    EXPECT_EQ(list.first().startDate, date("2024-03-26T15:00:00Z"));
    EXPECT_EQ(list.last().label, u"14:00"_s);
    EXPECT_EQ(list.last().id, u"2024-03-27T14:00:00Z"_s);
}

TEST_F(UsageAggregationTest, DailyBucketsCoverAYearThatEndsToday)
{
    const auto list = buckets({}, UsageTrendPeriod::daily);
    EXPECT_EQ(list.first().startDate, date("2023-03-29T00:00:00Z")); // 2024 has a leap day
    EXPECT_EQ(list.first().label, u"Mar 29"_s);
    EXPECT_EQ(list[337].label, u"Feb 29"_s);
    EXPECT_EQ(list.last().label, u"Mar 27"_s);
}

TEST_F(UsageAggregationTest, WeeklyBucketsBeginWithTheirFirstDay)
{
    const auto list = buckets({}, UsageTrendPeriod::weekly);
    EXPECT_EQ(list.first().label, u"Jan 8"_s);
    EXPECT_EQ(list.last().label, u"Mar 25"_s);
}

TEST_F(UsageAggregationTest, MonthlyLabelsHaveTwoDigitYears)
{
    const auto list = buckets({}, UsageTrendPeriod::monthly);
    EXPECT_EQ(list.first().label, u"Apr 23"_s);
    EXPECT_EQ(list.last().label, u"Mar 24"_s);
    EXPECT_EQ(list.last().startDate, date("2024-03-01T00:00:00Z"));
}

TEST_F(UsageAggregationTest, ABucketContainsItsStartAndNotItsEndAndTheLastReachesBeyondNow)
{
    const auto list = buckets(
        {eventAt(date("2024-03-26T14:59:59.999Z")), eventAt(date("2024-03-26T15:00:00Z"), 2),
         eventAt(date("2024-03-26T15:59:59.999Z"), 3), eventAt(date("2024-03-26T16:00:00Z"), 4),
         eventAt(date("2024-03-27T14:59:59.999Z"), 5), eventAt(date("2024-03-27T15:00:00Z"), 6)},
        UsageTrendPeriod::hourly);
    EXPECT_EQ(list[0].words, 5);
    EXPECT_EQ(list[0].recordings, 2);
    EXPECT_EQ(list[0].minutes, 1);
    EXPECT_EQ(list[1].words, 4);
    EXPECT_EQ(list.last().words, 5);
    EXPECT_EQ(totalOf(list), 4);
}

TEST_F(UsageAggregationTest, TheRepeatedHourOfAutumnHasABucketOfItsOwn)
{
    calendar = calendarOf("Europe/Berlin");
    now = date("2024-10-27T03:30:00+01:00");
    const auto list = buckets({eventAt(date("2024-10-27T02:30:00+02:00"), 1),
                               eventAt(date("2024-10-27T02:30:00+01:00"), 2)},
                              UsageTrendPeriod::hourly);
    EXPECT_EQ(list[21].label, u"02:00"_s);
    EXPECT_EQ(list[21].words, 1);
    EXPECT_EQ(list[22].label, u"02:00"_s);
    EXPECT_EQ(list[22].words, 2);
    EXPECT_NE(list[21].id, list[22].id);
}

TEST_F(UsageAggregationTest, TheSkippedHourOfSpringHasNoBucket)
{
    calendar = calendarOf("Europe/Berlin");
    now = date("2024-03-31T04:30:00+02:00");
    const auto list = buckets({}, UsageTrendPeriod::hourly);
    EXPECT_EQ(list[21].label, u"01:00"_s);
    EXPECT_EQ(list[22].label, u"03:00"_s);
}

TEST_F(UsageAggregationTest, AWholeLongDayLiesInItsBucket)
{
    calendar = calendarOf("America/Havana");
    now = date("2018-11-06T12:00:00-05:00");
    const auto list = buckets({eventAt(date("2018-11-04T00:30:00-04:00")),
                               eventAt(date("2018-11-04T00:30:00-05:00")),
                               eventAt(date("2018-11-04T23:59:59-05:00"))},
                              UsageTrendPeriod::daily);
    EXPECT_EQ(list[362].label, u"Nov 4"_s);
    EXPECT_EQ(list[362].recordings, 3);
    EXPECT_EQ(totalOf(list), 3);
}

TEST_F(UsageAggregationTest, ADateThatNoCalendarCountsYieldsEmptyBuckets)
{
    now = Date{1e300};
    for (const UsageTrendPeriod period : allCases<UsageTrendPeriod>())
        EXPECT_EQ(totalOf(buckets({eventAt(now), eventAt(Date{0})}, period)), 0);
    EXPECT_EQ(snapshot({eventAt(Date{0})}).thisMonth, UsageSummary());
}

TEST_F(UsageAggregationTest, OnePassFindsWhatOneScanPerFigureFinds)
{
    std::minstd_rand random(1);
    // Each now lies shortly after a clock change at midnight, or at the end of a year.
    const std::pair<const char *, const char *> cases[] = {
        {"UTC", "2024-12-31T23:59:59.999Z"},
        {"America/Sao_Paulo", "2018-11-04T01:20:00-02:00"},
        {"America/Sao_Paulo", "2018-11-05T12:00:00-02:00"},
        {"America/Havana", "2018-11-04T00:40:00-05:00"},
        {"Australia/Lord_Howe", "2024-04-07T01:45:00+10:30"},
        {"Pacific/Apia", "2012-01-02T08:00:00+14:00"},
    };
    for (const auto &[zone, nowText] : cases) {
        calendar = calendarOf(zone);
        now = date(nowText);
        QList<UsageEvent> events;
        for (const double span : {7200.0, 86400.0, 40 * 86400.0, 380 * 86400.0}) {
            for (int i = 0; i < 1000; ++i) {
                const double age = (double(random() % 100'000) / 100'000 - 0.01) * span;
                events.append(eventAt(Date{now.secondsSinceReferenceDate - age}, i));
                events.last().durationMinutes = double(random() % 1000) / 7;
                events.last().slotIndex = int(random() % 12);
                events.last().targetAppName = QString::number(random() % 8);
            }
        }
        const StraightforwardUsage expected(events, calendar);
        EXPECT_EQ(snapshot(events), expected.snapshot(now)) << zone;
        for (const UsageTrendPeriod period : allCases<UsageTrendPeriod>())
            EXPECT_EQ(buckets(events, period), expected.buckets(period, now)) << zone;
    }
}

} // namespace
} // namespace kestrova
