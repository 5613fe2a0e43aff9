#include "Views/Dashboard/Charts/HeatmapLayout.h"

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::Optional;

constexpr qsizetype yearOfColumns = 53;

TEST(HeatmapLayout, ChoosesTheLargestCellsThatFit)
{
    EXPECT_EQ(HeatmapLayout::fitting(792, yearOfColumns).cell, 12);
    EXPECT_EQ(HeatmapLayout::fitting(792, yearOfColumns).width(yearOfColumns), 792);
    EXPECT_EQ(HeatmapLayout::fitting(791, yearOfColumns).cell, 11);
    EXPECT_EQ(HeatmapLayout::fitting(791, yearOfColumns).width(yearOfColumns), 687);
    EXPECT_EQ(HeatmapLayout::fitting(100, yearOfColumns).cell, 11) << "then the grid scrolls";
    EXPECT_EQ(HeatmapLayout().width(0), 0);
}

TEST(HeatmapLayout, CellsFollowEachOtherDownTheColumns)
{
    const HeatmapLayout layout;
    EXPECT_EQ(layout.cellRect(0), QRectF(0, 0, 12, 12));
    EXPECT_EQ(layout.cellRect(6), QRectF(0, 90, 12, 12));
    EXPECT_EQ(layout.cellRect(7), QRectF(15, 0, 12, 12));
    EXPECT_EQ(layout.height(), 102);
}

TEST(HeatmapLayout, EveryPointOfTheGridBelongsToItsNearestCell)
{
    const HeatmapLayout layout;
    for (qsizetype cell = 0; cell < 20; ++cell) {
        const QRectF rect = layout.cellRect(cell);
        EXPECT_THAT(layout.cellAt(rect.center(), 20), Optional(cell));
        EXPECT_THAT(layout.cellAt(rect.topLeft() - QPointF(1.4, 1.4), 20), Optional(cell));
        EXPECT_THAT(layout.cellAt(rect.bottomRight() + QPointF(1.4, 1.4), 20), Optional(cell));
    }
}

TEST(HeatmapLayout, NoCellLiesBeyondTheGridOrTheLastDay)
{
    const HeatmapLayout layout;
    EXPECT_EQ(layout.cellAt({-2, 5}, 20), std::nullopt);
    EXPECT_EQ(layout.cellAt({5, -2}, 20), std::nullopt);
    EXPECT_EQ(layout.cellAt({5, 104}, 20), std::nullopt);
    EXPECT_EQ(layout.cellAt(layout.cellRect(20).center(), 20), std::nullopt);
    EXPECT_EQ(layout.cellAt({0, 0}, 0), std::nullopt);
}

TEST(HeatmapLayout, ALabelNeedsTwoColumns)
{
    const HeatmapLayout layout;
    const QList<double> widths(6, 20.0);
    EXPECT_THAT(layout.shownLabels({u"Nov"_s, {}, u"Dec"_s, {}, {}, {}}, widths),
                ElementsAre(true, false, true, false, false, false));
    EXPECT_THAT(layout.shownLabels({u"Oct"_s, u"Nov"_s, {}, {}, {}, u"Dec"_s}, widths),
                ElementsAre(false, true, false, false, false, false))
        << "the first and the last one have one column only";
}

TEST(HeatmapLayout, AWideLabelNeedsItsOwnWidth)
{
    const HeatmapLayout layout;
    const QStringList labels{u"sept."_s, {}, u"oct."_s, {}, {}};
    EXPECT_THAT(layout.shownLabels(labels, {27, 0, 27, 0, 0}),
                ElementsAre(true, false, true, false, false));
    EXPECT_THAT(layout.shownLabels(labels, {28, 0, 27, 0, 0}),
                ElementsAre(false, false, true, false, false));
}

} // namespace
} // namespace kestrova
