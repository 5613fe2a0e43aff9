#include "Views/Dashboard/Charts/UsageHeatmap.h"
#include "support/DateText.h"
#include "support/QtPrinting.h"
#include "support/UsageBuckets.h"

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

class UsageHeatmapTest : public testing::Test
{
protected:
    static Calendar calendarOf(const char *zone, Qt::DayOfWeek firstWeekday = Qt::Monday)
    {
        return {QTimeZone(zone), firstWeekday, QLocale(QLocale::English, QLocale::UnitedStates)};
    }

    static std::vector<qint64> wordsOf(const UsageHeatmapWeek &week)
    {
        std::vector<qint64> words;
        for (const UsageHeatmapCell &cell : week)
            words.push_back(cell.words);
        return words;
    }
    static std::vector<bool> trackedOf(const UsageHeatmapWeek &week)
    {
        std::vector<bool> tracked;
        for (const UsageHeatmapCell &cell : week)
            tracked.push_back(cell.isTracked);
        return tracked;
    }

    const Calendar calendar = calendarOf("UTC");
};

TEST_F(UsageHeatmapTest, NoBucketsMakeNoWeeks)
{
    EXPECT_THAT(usageHeatmapWeeks({}, calendar), SizeIs(0));
    EXPECT_THAT(heatmapMonthLabels({}, calendar), SizeIs(0));
}

TEST_F(UsageHeatmapTest, AFirstDayOnAWednesdayLeavesTheDaysBeforeItUntracked)
{
    const auto weeks = usageHeatmapWeeks(dailyBuckets("2024-03-27T00:00:00Z", {7, 8}), calendar);
    ASSERT_THAT(weeks, SizeIs(1));
    EXPECT_THAT(trackedOf(weeks[0]), ElementsAre(false, false, true, true)) << "it ends today";
    EXPECT_THAT(wordsOf(weeks[0]), ElementsAre(0, 0, 7, 8));
    EXPECT_EQ(weeks[0][0].date, date("2024-03-25T00:00:00Z")) << "Monday";
}

TEST_F(UsageHeatmapTest, EachColumnIsAWeekOfTheCalendar)
{
    const auto buckets = dailyBuckets("2024-03-29T00:00:00Z", {1, 2, 3, 4, 5}); // from a Friday
    const auto fromMonday = usageHeatmapWeeks(buckets, calendar);
    ASSERT_THAT(fromMonday, SizeIs(2));
    EXPECT_THAT(wordsOf(fromMonday[0]), ElementsAre(0, 0, 0, 0, 1, 2, 3));
    EXPECT_THAT(wordsOf(fromMonday[1]), ElementsAre(4, 5));

    const auto fromSunday = usageHeatmapWeeks(buckets, calendarOf("UTC", Qt::Sunday));
    ASSERT_THAT(fromSunday, SizeIs(2));
    EXPECT_THAT(wordsOf(fromSunday[0]), ElementsAre(0, 0, 0, 0, 0, 1, 2));
    EXPECT_THAT(wordsOf(fromSunday[1]), ElementsAre(3, 4, 5));
}

TEST_F(UsageHeatmapTest, TheOrderOfTheBucketsDoesNotMatterAndMissingDaysCountZero)
{
    auto buckets = dailyBuckets("2024-03-25T00:00:00Z", {1, 2, 3, 4});
    buckets.removeAt(1);
    std::reverse(buckets.begin(), buckets.end());
    const auto weeks = usageHeatmapWeeks(buckets, calendar);
    ASSERT_THAT(weeks, SizeIs(1));
    EXPECT_THAT(wordsOf(weeks[0]), ElementsAre(1, 0, 3, 4));
    EXPECT_THAT(trackedOf(weeks[0]), Each(true));
}

TEST_F(UsageHeatmapTest, AYearFillsFiftyThreeColumns)
{
    const QList<qint64> words(365, 1);
    const auto weeks = usageHeatmapWeeks(dailyBuckets("2023-03-28T00:00:00Z", words), calendar);
    ASSERT_THAT(weeks, SizeIs(53));
    EXPECT_THAT(weeks.first(), SizeIs(7));
    EXPECT_EQ(weeks.last().last().date, date("2024-03-26T00:00:00Z")) << "across a leap day";
}

TEST_F(UsageHeatmapTest, ClockChangesNeitherLoseNorRepeatADay)
{
    // Chile sets its clocks at midnight: in 2024, September 8 began at 1 o'clock.
    const Calendar chile = calendarOf("America/Santiago", Qt::Sunday);
    const auto weeks =
        usageHeatmapWeeks(dailyBuckets("2024-09-06T00:00:00-04:00", {1, 2, 3, 4}, chile), chile);
    ASSERT_THAT(weeks, SizeIs(2));
    EXPECT_THAT(wordsOf(weeks[0]), ElementsAre(0, 0, 0, 0, 0, 1, 2));
    EXPECT_THAT(wordsOf(weeks[1]), ElementsAre(3, 4));
    EXPECT_EQ(weeks[1][0].date, date("2024-09-08T01:00:00-03:00"));
    EXPECT_EQ(weeks[1][1].date, date("2024-09-09T00:00:00-03:00"));
}

TEST_F(UsageHeatmapTest, OfTheColumnsOfAMonthOnlyTheFirstHasItsName)
{
    // Mondays of the columns: March 18, 25, April 1, 8
    const auto weeks =
        usageHeatmapWeeks(dailyBuckets("2024-03-18T00:00:00Z", QList<qint64>(22, 0)), calendar);
    EXPECT_EQ(heatmapMonthLabels(weeks, calendar), QStringList({u"Mar"_s, u""_s, u"Apr"_s, u""_s}));
}

TEST_F(UsageHeatmapTest, AColumnsMonthIsThatOfItsFirstTrackedDay)
{
    // The column begins in April, its first tracked day is in May.
    const auto weeks = usageHeatmapWeeks(dailyBuckets("2024-05-02T00:00:00Z", {1}), calendar);
    EXPECT_EQ(heatmapMonthLabels(weeks, calendar), QStringList({u"May"_s}));
    EXPECT_EQ(heatmapMonthLabels({{{date("2024-05-01T00:00:00Z"), 0, false}}}, calendar),
              QStringList({u""_s}))
        << "a column without tracked days";
}

TEST_F(UsageHeatmapTest, TheSameMonthAYearLaterIsNamedAgain)
{
    const UsageHeatmapCell november2023{date("2023-11-30T00:00:00Z"), 0, true};
    const UsageHeatmapCell november2024{date("2024-11-04T00:00:00Z"), 0, true};
    EXPECT_EQ(heatmapMonthLabels({{november2023}, {november2024}}, calendar),
              QStringList({u"Nov"_s, u"Nov"_s}));
}

TEST_F(UsageHeatmapTest, EverySecondWeekdayIsNamed)
{
    EXPECT_EQ(heatmapWeekdayLabels(calendarOf("UTC", Qt::Sunday)),
              QStringList({u""_s, u"Mon"_s, u""_s, u"Wed"_s, u""_s, u"Fri"_s, u""_s}));
    EXPECT_EQ(heatmapWeekdayLabels(calendarOf("America/Santiago", Qt::Monday)),
              QStringList({u""_s, u"Tue"_s, u""_s, u"Thu"_s, u""_s, u"Sat"_s, u""_s}));
}

TEST_F(UsageHeatmapTest, LevelsGoByTheShareOfTheBusiestDay)
{
    EXPECT_EQ(heatmapLevel(0, 100), 0);
    EXPECT_EQ(heatmapLevel(1, 100), 1);
    EXPECT_EQ(heatmapLevel(19, 100), 1);
    EXPECT_EQ(heatmapLevel(20, 100), 2) << "20 % exactly";
    EXPECT_EQ(heatmapLevel(44, 100), 2);
    EXPECT_EQ(heatmapLevel(45, 100), 3);
    EXPECT_EQ(heatmapLevel(74, 100), 3);
    EXPECT_EQ(heatmapLevel(75, 100), 4) << "75 % exactly";
    EXPECT_EQ(heatmapLevel(100, 100), 4);
    EXPECT_EQ(heatmapLevel(1, 1), 4) << "the busiest day, however little it has";
    EXPECT_EQ(heatmapLevel(0, 0), 0) << "nothing at all";
}

TEST_F(UsageHeatmapTest, TheLevelsBoundsHoldForEveryCountThatMeetsThemExactly)
{
    for (qint64 most = 20; most <= 20'000; most += 20) {
        EXPECT_EQ(heatmapLevel(most / 5, most), 2) << most;
        EXPECT_EQ(heatmapLevel(most / 20 * 9, most), 3) << most;
        EXPECT_EQ(heatmapLevel(most / 4 * 3, most), 4) << most;
    }
}

} // namespace
} // namespace kestrova
