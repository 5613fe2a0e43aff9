#include "Views/Dashboard/Charts/TrendLayout.h"

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using testing::ElementsAre;
using testing::Optional;

const TrendLayout month{QRectF(40, 30, 780, 230), 30};

TEST(TrendLayout, MarksStandInTheMiddleOfEqualSlots)
{
    EXPECT_EQ(month.slotWidth(), 26);
    EXPECT_EQ(month.centre(0), 53);
    EXPECT_EQ(month.centre(29), 807);
    EXPECT_EQ(month.point(0, 0), QPointF(53, 260));
    EXPECT_EQ(month.point(29, 1), QPointF(807, 30));
}

TEST(TrendLayout, BarsTakeTwoThirdsOfTheirSlotOnWholePixels)
{
    EXPECT_EQ(month.bar(0, 0.5), QRectF(45, 145, 17, 115));
}

TEST(TrendLayout, BarsAreNeverTooWideOrTooNarrowToSee)
{
    const TrendLayout few{QRectF(0, 0, 600, 100), 2};
    EXPECT_EQ(few.bar(0, 1), QRectF(136, 0, 28, 100));
    const TrendLayout many{QRectF(0, 0, 300, 100), 365};
    EXPECT_EQ(many.bar(7, 1).width(), 1);
}

TEST(TrendLayout, ABarIsTwoHighAtLeastUnlessThereIsNothing)
{
    EXPECT_EQ(month.bar(3, 0.0001).height(), 2);
    EXPECT_EQ(month.bar(3, 0.0001).bottom(), 260);
    EXPECT_TRUE(month.bar(3, 0).isEmpty());
    EXPECT_TRUE(month.bar(3, -1).isEmpty());
}

TEST(TrendLayout, ThePointerIsAtTheMarkWhoseSlotItIsIn)
{
    EXPECT_THAT(month.markAt({40, 100}), Optional(0));
    EXPECT_THAT(month.markAt({65.9, 31}), Optional(0));
    EXPECT_THAT(month.markAt({66.1, 259}), Optional(1));
    EXPECT_THAT(month.markAt({820, 100}), Optional(29)) << "the right edge belongs to the plot";
    EXPECT_EQ(month.markAt({39, 100}), std::nullopt);
    EXPECT_EQ(month.markAt({821, 100}), std::nullopt);
    EXPECT_EQ(month.markAt({100, 29}), std::nullopt);
    EXPECT_EQ(month.markAt({100, 261}), std::nullopt);
}

TEST(TrendLayout, WithoutMarksThereIsNothingToHit)
{
    const TrendLayout empty{QRectF(0, 0, 100, 100), 0};
    EXPECT_EQ(empty.markAt({50, 50}), std::nullopt);
    EXPECT_EQ(empty.slotWidth(), 0);
}

TEST(AxisLabels, AreCentred)
{
    EXPECT_THAT(axisLabelEdges({{20, 30}, {}, {80, 30}}, 0, 100), ElementsAre(5, std::nullopt, 65));
}

TEST(AxisLabels, ThatWouldTouchTheNextOneAreLeftOut)
{
    EXPECT_THAT(axisLabelEdges({{20, 30}, {55, 30}, {80, 30}}, 0, 100),
                ElementsAre(5, std::nullopt, 65));
    EXPECT_THAT(axisLabelEdges({{44, 30}, {80, 30}}, 0, 100), ElementsAre(29, 65))
        << "with the least space between them";
    EXPECT_THAT(axisLabelEdges({{45, 30}, {80, 30}}, 0, 100), ElementsAre(std::nullopt, 65));
}

TEST(AxisLabels, StayWithinTheirBounds)
{
    EXPECT_THAT(axisLabelEdges({{5, 30}, {95, 30}}, 0, 100), ElementsAre(0, 70));
    EXPECT_THAT(axisLabelEdges({{50, 130}}, 0, 100), ElementsAre(std::nullopt)) << "too wide";
}

TEST(Resampling, KeepsTheShapeAtTheSamePlaces)
{
    EXPECT_THAT(resampled({1, 2, 3}, 3), ElementsAre(1, 2, 3));
    EXPECT_THAT(resampled({1, 2}, 4), ElementsAre(1, 1, 2, 2));
    EXPECT_THAT(resampled({1, 2, 3, 4}, 2), ElementsAre(2, 4));
    EXPECT_THAT(resampled({}, 2), ElementsAre(0, 0));
    EXPECT_THAT(resampled({1, 2}, 0), ElementsAre());
}

} // namespace
} // namespace kestrova
