#include "Services/Usage/UsageAggregation.h"
#include "support/DateText.h"
#include "support/QtPrinting.h"
#include "support/UsageEvents.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

/// The local beginnings of the present unit and of the two before it.
struct Starts
{
    const char *present;
    const char *last;
    const char *lastButOne;
};

/// A moment at which the civil calendar is at its most awkward.
struct Edge
{
    const char *name;
    const char *zone;
    Qt::DayOfWeek firstWeekday;
    const char *now;
    Starts hours;
    Starts days;
    Starts weeks;
    Starts months;
};

void PrintTo(const Edge &edge, std::ostream *stream)
{
    *stream << edge.name;
}

const Edge edges[] = {
    {"SpringGap",
     "Europe/Berlin",
     Qt::Monday,
     "2024-03-31T03:20:00+02:00",
     {"2024-03-31T03:00:00+02:00", "2024-03-31T01:00:00+01:00", "2024-03-31T00:00:00+01:00"},
     {"2024-03-31T00:00:00+01:00", "2024-03-30T00:00:00+01:00", "2024-03-29T00:00:00+01:00"},
     {"2024-03-25T00:00:00+01:00", "2024-03-18T00:00:00+01:00", "2024-03-11T00:00:00+01:00"},
     {"2024-03-01T00:00:00+01:00", "2024-02-01T00:00:00+01:00", "2024-01-01T00:00:00+01:00"}},
    {"AfterSpringGap",
     "Europe/Berlin",
     Qt::Sunday,
     "2024-04-01T00:30:00+02:00",
     {"2024-04-01T00:00:00+02:00", "2024-03-31T23:00:00+02:00", "2024-03-31T22:00:00+02:00"},
     {"2024-04-01T00:00:00+02:00", "2024-03-31T00:00:00+01:00", "2024-03-30T00:00:00+01:00"},
     {"2024-03-31T00:00:00+01:00", "2024-03-24T00:00:00+01:00", "2024-03-17T00:00:00+01:00"},
     {"2024-04-01T00:00:00+02:00", "2024-03-01T00:00:00+01:00", "2024-02-01T00:00:00+01:00"}},
    {"AutumnOverlap",
     "America/New_York",
     Qt::Sunday,
     "2024-11-03T01:45:00-05:00",
     {"2024-11-03T01:00:00-05:00", "2024-11-03T01:00:00-04:00", "2024-11-03T00:00:00-04:00"},
     {"2024-11-03T00:00:00-04:00", "2024-11-02T00:00:00-04:00", "2024-11-01T00:00:00-04:00"},
     {"2024-11-03T00:00:00-04:00", "2024-10-27T00:00:00-04:00", "2024-10-20T00:00:00-04:00"},
     {"2024-11-01T00:00:00-04:00", "2024-10-01T00:00:00-04:00", "2024-09-01T00:00:00-04:00"}},
    {"AfterAutumnOverlap",
     "America/New_York",
     Qt::Monday,
     "2024-12-01T02:30:00-05:00",
     {"2024-12-01T02:00:00-05:00", "2024-12-01T01:00:00-05:00", "2024-12-01T00:00:00-05:00"},
     {"2024-12-01T00:00:00-05:00", "2024-11-30T00:00:00-05:00", "2024-11-29T00:00:00-05:00"},
     {"2024-11-25T00:00:00-05:00", "2024-11-18T00:00:00-05:00", "2024-11-11T00:00:00-05:00"},
     {"2024-12-01T00:00:00-05:00", "2024-11-01T00:00:00-04:00", "2024-10-01T00:00:00-04:00"}},
    {"LeapDay",
     "UTC",
     Qt::Monday,
     "2024-02-29T00:10:00Z",
     {"2024-02-29T00:00:00Z", "2024-02-28T23:00:00Z", "2024-02-28T22:00:00Z"},
     {"2024-02-29T00:00:00Z", "2024-02-28T00:00:00Z", "2024-02-27T00:00:00Z"},
     {"2024-02-26T00:00:00Z", "2024-02-19T00:00:00Z", "2024-02-12T00:00:00Z"},
     {"2024-02-01T00:00:00Z", "2024-01-01T00:00:00Z", "2023-12-01T00:00:00Z"}},
    {"AfterLeapDay",
     "UTC",
     Qt::Saturday,
     "2024-03-01T01:10:00Z",
     {"2024-03-01T01:00:00Z", "2024-03-01T00:00:00Z", "2024-02-29T23:00:00Z"},
     {"2024-03-01T00:00:00Z", "2024-02-29T00:00:00Z", "2024-02-28T00:00:00Z"},
     {"2024-02-24T00:00:00Z", "2024-02-17T00:00:00Z", "2024-02-10T00:00:00Z"},
     {"2024-03-01T00:00:00Z", "2024-02-01T00:00:00Z", "2024-01-01T00:00:00Z"}},
    {"NoLeapDay",
     "UTC",
     Qt::Monday,
     "2100-03-01T00:10:00Z",
     {"2100-03-01T00:00:00Z", "2100-02-28T23:00:00Z", "2100-02-28T22:00:00Z"},
     {"2100-03-01T00:00:00Z", "2100-02-28T00:00:00Z", "2100-02-27T00:00:00Z"},
     {"2100-03-01T00:00:00Z", "2100-02-22T00:00:00Z", "2100-02-15T00:00:00Z"},
     {"2100-03-01T00:00:00Z", "2100-02-01T00:00:00Z", "2100-01-01T00:00:00Z"}},
    {"WeekOneInTheOldYear", // 30 December lies in week 1 of the next year.
     "UTC",
     Qt::Monday,
     "2024-12-31T23:50:00Z",
     {"2024-12-31T23:00:00Z", "2024-12-31T22:00:00Z", "2024-12-31T21:00:00Z"},
     {"2024-12-31T00:00:00Z", "2024-12-30T00:00:00Z", "2024-12-29T00:00:00Z"},
     {"2024-12-30T00:00:00Z", "2024-12-23T00:00:00Z", "2024-12-16T00:00:00Z"},
     {"2024-12-01T00:00:00Z", "2024-11-01T00:00:00Z", "2024-10-01T00:00:00Z"}},
    {"WeekFiftyThreeInTheNewYear", // 1 January lies in week 53 of the last year.
     "UTC",
     Qt::Monday,
     "2021-01-01T00:10:00Z",
     {"2021-01-01T00:00:00Z", "2020-12-31T23:00:00Z", "2020-12-31T22:00:00Z"},
     {"2021-01-01T00:00:00Z", "2020-12-31T00:00:00Z", "2020-12-30T00:00:00Z"},
     {"2020-12-28T00:00:00Z", "2020-12-21T00:00:00Z", "2020-12-14T00:00:00Z"},
     {"2021-01-01T00:00:00Z", "2020-12-01T00:00:00Z", "2020-11-01T00:00:00Z"}},
    {"YearEndWithSundayWeeks",
     "UTC",
     Qt::Sunday,
     "2026-01-01T00:10:00Z",
     {"2026-01-01T00:00:00Z", "2025-12-31T23:00:00Z", "2025-12-31T22:00:00Z"},
     {"2026-01-01T00:00:00Z", "2025-12-31T00:00:00Z", "2025-12-30T00:00:00Z"},
     {"2025-12-28T00:00:00Z", "2025-12-21T00:00:00Z", "2025-12-14T00:00:00Z"},
     {"2026-01-01T00:00:00Z", "2025-12-01T00:00:00Z", "2025-11-01T00:00:00Z"}},
    {"YearEndWithSaturdayWeeks",
     "UTC",
     Qt::Saturday,
     "2023-01-01T00:10:00Z",
     {"2023-01-01T00:00:00Z", "2022-12-31T23:00:00Z", "2022-12-31T22:00:00Z"},
     {"2023-01-01T00:00:00Z", "2022-12-31T00:00:00Z", "2022-12-30T00:00:00Z"},
     {"2022-12-31T00:00:00Z", "2022-12-24T00:00:00Z", "2022-12-17T00:00:00Z"},
     {"2023-01-01T00:00:00Z", "2022-12-01T00:00:00Z", "2022-11-01T00:00:00Z"}},
    {"HalfHourZone",
     "Asia/Kolkata",
     Qt::Sunday,
     "2024-03-01T00:15:00+05:30",
     {"2024-03-01T00:00:00+05:30", "2024-02-29T23:00:00+05:30", "2024-02-29T22:00:00+05:30"},
     {"2024-03-01T00:00:00+05:30", "2024-02-29T00:00:00+05:30", "2024-02-28T00:00:00+05:30"},
     {"2024-02-25T00:00:00+05:30", "2024-02-18T00:00:00+05:30", "2024-02-11T00:00:00+05:30"},
     {"2024-03-01T00:00:00+05:30", "2024-02-01T00:00:00+05:30", "2024-01-01T00:00:00+05:30"}},
    {"QuarterHourZone",
     "Asia/Kathmandu",
     Qt::Saturday,
     "2024-12-31T23:50:00+05:45",
     {"2024-12-31T23:00:00+05:45", "2024-12-31T22:00:00+05:45", "2024-12-31T21:00:00+05:45"},
     {"2024-12-31T00:00:00+05:45", "2024-12-30T00:00:00+05:45", "2024-12-29T00:00:00+05:45"},
     {"2024-12-28T00:00:00+05:45", "2024-12-21T00:00:00+05:45", "2024-12-14T00:00:00+05:45"},
     {"2024-12-01T00:00:00+05:45", "2024-11-01T00:00:00+05:45", "2024-10-01T00:00:00+05:45"}},
    {"HalfHourZoneWithSpringGap",
     "Australia/Adelaide",
     Qt::Monday,
     "2024-10-06T04:10:00+10:30",
     {"2024-10-06T04:00:00+10:30", "2024-10-06T03:00:00+10:30", "2024-10-06T01:00:00+09:30"},
     {"2024-10-06T00:00:00+09:30", "2024-10-05T00:00:00+09:30", "2024-10-04T00:00:00+09:30"},
     {"2024-09-30T00:00:00+09:30", "2024-09-23T00:00:00+09:30", "2024-09-16T00:00:00+09:30"},
     {"2024-10-01T00:00:00+09:30", "2024-09-01T00:00:00+09:30", "2024-08-01T00:00:00+09:30"}},
};

class UsageCalendarEdgeTest : public testing::TestWithParam<Edge>
{
protected:
    const Calendar calendar{QTimeZone(GetParam().zone), GetParam().firstWeekday, QLocale::c()};
    const Date now = date(GetParam().now);

    static Date justBefore(const char *text)
    {
        return {date(text).secondsSinceReferenceDate - 0.125};
    }

    /// Around each start one event just before it and one at it; the digits of a sum of words tell
    /// which of them are in it.
    static QList<UsageEvent> eventsAround(const Starts &starts)
    {
        return {
            eventAt(justBefore(starts.lastButOne), 100'000),
            eventAt(date(starts.lastButOne), 10'000),
            eventAt(justBefore(starts.last), 1000),
            eventAt(date(starts.last), 100),
            eventAt(justBefore(starts.present), 10),
            eventAt(date(starts.present), 1),
        };
    }

    UsageDashboardSnapshot snapshotAround(const Starts &starts) const
    {
        return usageSnapshot(CompactUsageLog(eventsAround(starts)), calendar, now);
    }

    void expectBuckets(UsageTrendPeriod period, const Starts &starts) const
    {
        SCOPED_TRACE(rawValue(period).toStdString());
        const auto buckets =
            usageTrendBuckets(CompactUsageLog(eventsAround(starts)), calendar, period, now);
        const auto last = buckets.size() - 1;
        EXPECT_EQ(buckets[last].startDate, date(starts.present));
        EXPECT_EQ(buckets[last - 1].startDate, date(starts.last));
        EXPECT_EQ(buckets[last - 2].startDate, date(starts.lastButOne));
        EXPECT_EQ(buckets[last].words, 1);
        EXPECT_EQ(buckets[last - 1].words, 110);
        EXPECT_EQ(buckets[last - 2].words, 11'000);
        EXPECT_EQ(buckets[last - 3].words, 100'000);
    }
};

TEST_P(UsageCalendarEdgeTest, EachSummaryReachesBackToTheLocalBeginningOfItsPeriod)
{
    EXPECT_EQ(snapshotAround(GetParam().hours).thisHour.words, 1);
    EXPECT_EQ(snapshotAround(GetParam().days).today.words, 1);
    EXPECT_EQ(snapshotAround(GetParam().weeks).thisWeek.words, 1);
    EXPECT_EQ(snapshotAround(GetParam().months).thisMonth.words, 1);
}

TEST_P(UsageCalendarEdgeTest, EachBucketReachesFromItsLocalBeginningToTheNext)
{
    expectBuckets(UsageTrendPeriod::hourly, GetParam().hours);
    expectBuckets(UsageTrendPeriod::daily, GetParam().days);
    expectBuckets(UsageTrendPeriod::weekly, GetParam().weeks);
    expectBuckets(UsageTrendPeriod::monthly, GetParam().months);
}

INSTANTIATE_TEST_SUITE_P(At, UsageCalendarEdgeTest, testing::ValuesIn(edges),
                         testing::PrintToStringParamName());

} // namespace
} // namespace kestrova
