#include "Views/Dashboard/Charts/HeatmapChart.h"
#include "support/QtPrinting.h"
#include "support/UsageBuckets.h"

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::Optional;
using testing::SizeIs;

class HeatmapChartTest : public testing::Test
{
protected:
    const Calendar calendar{QTimeZone::utc(), Qt::Monday,
                            QLocale(QLocale::English, QLocale::UnitedStates)};
    /// Wednesday to the Tuesday after: cells 2 to 8.
    const HeatmapChart chart =
        heatmapChart(dailyBuckets("2024-03-27T00:00:00Z", {0, 100, 20, 0, 0, 0, 75}), calendar);
};

TEST_F(HeatmapChartTest, WithoutBucketsItIsEmpty)
{
    EXPECT_TRUE(heatmapChart({}, calendar).isEmpty());
    EXPECT_EQ(heatmapNeighbour({}, std::nullopt, 0, 1), std::nullopt);
}

TEST_F(HeatmapChartTest, CellsShowTheirLevelAndReadOut)
{
    ASSERT_THAT(chart.marks, SizeIs(9));
    EXPECT_EQ(chart.marks[1], HeatmapMark()) << "untracked days have nothing to tell";
    EXPECT_EQ(chart.marks[2], (HeatmapMark{0, u"Mar 27, 2024: 0 words"_s}));
    EXPECT_EQ(chart.marks[3], (HeatmapMark{4, u"Mar 28, 2024: 100 words"_s}));
    EXPECT_EQ(chart.marks[4], (HeatmapMark{2, u"Mar 29, 2024: 20 words"_s}));
    EXPECT_EQ(chart.marks[8], (HeatmapMark{4, u"Apr 2, 2024: 75 words"_s}));
}

TEST_F(HeatmapChartTest, ColumnsAndRowsHaveTheirNames)
{
    EXPECT_EQ(chart.monthLabels, QStringList({u"Mar"_s, u"Apr"_s}));
    EXPECT_EQ(chart.weekdayLabels.value(1), u"Tue"_s);
}

TEST_F(HeatmapChartTest, AllZeroMeansLevelZeroThroughout)
{
    const HeatmapChart zero = heatmapChart(dailyBuckets("2024-03-25T00:00:00Z", {0, 0}), calendar);
    ASSERT_THAT(zero.marks, SizeIs(2));
    EXPECT_EQ(zero.marks[0].level, 0);
    EXPECT_EQ(zero.marks[1].level, 0);
    EXPECT_EQ(zero.textAlternative, u"Words per day, Mar 25, 2024 to Mar 26, 2024. No words."_s);
}

TEST_F(HeatmapChartTest, TheWholeIsToldInWords)
{
    EXPECT_EQ(chart.textAlternative, u"Words per day, Mar 27, 2024 to Apr 2, 2024. "
                                     "Busiest day: Mar 28, 2024: 100 words."_s);
}

TEST_F(HeatmapChartTest, ArrowsLeadFromDayToDayAndFromWeekToWeek)
{
    EXPECT_THAT(heatmapNeighbour(chart, std::nullopt, 0, -1), Optional(8)) << "it begins today";
    EXPECT_THAT(heatmapNeighbour(chart, 4, 0, 1), Optional(5));
    EXPECT_THAT(heatmapNeighbour(chart, 7, 0, -1), Optional(6)) << "up from Monday is Sunday";
    EXPECT_THAT(heatmapNeighbour(chart, 8, 0, 1), Optional(8)) << "nothing after today";
    EXPECT_THAT(heatmapNeighbour(chart, 2, 0, -1), Optional(2)) << "nor before the first day";
    EXPECT_THAT(heatmapNeighbour(chart, 8, -1, 0), Optional(8)) << "Tuesday before is untracked";
    EXPECT_THAT(heatmapNeighbour(chart, 3, 1, 0), Optional(3)) << "Thursday after has not come";
    EXPECT_THAT(heatmapNeighbour(chart, 99, 0, 1), Optional(8)) << "of a longer chart before";
}

TEST_F(HeatmapChartTest, ArrowsLeadAcrossWeeks)
{
    const HeatmapChart weeks =
        heatmapChart(dailyBuckets("2024-03-25T00:00:00Z", QList<qint64>(21, 1)), calendar);
    EXPECT_THAT(heatmapNeighbour(weeks, 9, -1, 0), Optional(2));
    EXPECT_THAT(heatmapNeighbour(weeks, 9, 1, 0), Optional(16));
}

} // namespace
} // namespace kestrova
