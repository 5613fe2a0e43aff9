#include "Views/Popover/PopoverPlacement.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

constexpr QSize popover(360, 400);
constexpr QRect noItem;
const QRect whole(0, 0, 1920, 1080);

ScreenArea screenWithPanel(ScreenEdge edge, const QRect &geometry = whole, int thickness = 32)
{
    const int at[4] = {
        edge == ScreenEdge::left ? thickness : 0, edge == ScreenEdge::top ? thickness : 0,
        edge == ScreenEdge::right ? -thickness : 0, edge == ScreenEdge::bottom ? -thickness : 0};
    return {geometry, geometry.adjusted(at[0], at[1], at[2], at[3])};
}

QPoint placeOf(const PopoverPlacement &placement)
{
    return placement.position(popover);
}

struct Case
{
    const char *name;
    ScreenEdge edge;
    QRect trayItem;
    QPoint expected;
};

class PopoverPlacementAtEachEdge : public testing::TestWithParam<Case>
{
};

TEST_P(PopoverPlacementAtEachEdge, ItIsCentredOnTheItemEightPixelsOffThePanel)
{
    const Case &c = GetParam();
    const PopoverPlacement placement(c.trayItem, {}, {screenWithPanel(c.edge)});
    EXPECT_EQ(placement.edge(), c.edge);
    EXPECT_EQ(placeOf(placement), c.expected);
}

TEST_P(PopoverPlacementAtEachEdge, AClickIsAsGoodAsAnItem)
{
    const Case &c = GetParam();
    const PopoverPlacement placement(noItem, c.trayItem.center(), {screenWithPanel(c.edge)});
    EXPECT_EQ(placement.edge(), c.edge);
    EXPECT_EQ(placeOf(placement), c.expected);
}

TEST_P(PopoverPlacementAtEachEdge, APanelThatTheWorkAreaLeavesOutIsWhereTheItemIs)
{
    const Case &c = GetParam();
    const PopoverPlacement placement(c.trayItem, {}, {{whole, whole}});
    EXPECT_EQ(placement.edge(), c.edge);
    const QRect placed(placeOf(placement), popover);
    EXPECT_FALSE(placed.adjusted(-8, -8, 8, 8).intersects(c.trayItem));
    EXPECT_TRUE(placed.adjusted(-9, -9, 9, 9).intersects(c.trayItem));
}

INSTANTIATE_TEST_SUITE_P(
    , PopoverPlacementAtEachEdge,
    testing::Values(Case{"Top", ScreenEdge::top, {1000, 4, 24, 24}, {831, 40}},
                    Case{"Bottom", ScreenEdge::bottom, {1000, 1052, 24, 24}, {831, 640}},
                    Case{"Left", ScreenEdge::left, {4, 500, 24, 24}, {40, 311}},
                    Case{"Right", ScreenEdge::right, {1892, 500, 24, 24}, {1520, 311}}),
    [](const auto &tested) { return std::string(tested.param.name); });

TEST(PopoverPlacement, AtTheEndOfThePanelItStaysWithinTheWorkArea)
{
    const PopoverPlacement atRightEnd({1890, 4, 24, 24}, {}, {screenWithPanel(ScreenEdge::top)});
    EXPECT_EQ(atRightEnd.edge(), ScreenEdge::top);
    EXPECT_EQ(placeOf(atRightEnd), QPoint(1920 - 8 - 360, 40));

    const PopoverPlacement atBottomEnd({4, 1050, 24, 24}, {}, {screenWithPanel(ScreenEdge::left)});
    EXPECT_EQ(atBottomEnd.edge(), ScreenEdge::left);
    EXPECT_EQ(placeOf(atBottomEnd), QPoint(40, 1080 - 8 - 400));
}

TEST(PopoverPlacement, ASecondPanelIsKeptClearOfToo)
{
    const ScreenArea screen{whole, whole.adjusted(0, 32, -64, 0)};
    const PopoverPlacement placement({1890, 4, 24, 24}, {}, {screen});
    EXPECT_EQ(placement.edge(), ScreenEdge::top);
    EXPECT_EQ(placeOf(placement), QPoint(1920 - 64 - 8 - 360, 40));
}

TEST(PopoverPlacement, ItGrowsAwayFromThePanel)
{
    const PopoverPlacement below({1000, 4, 24, 24}, {}, {screenWithPanel(ScreenEdge::top)});
    EXPECT_EQ(below.position({360, 300}).y(), below.position({360, 700}).y());
    const PopoverPlacement above({1000, 1052, 24, 24}, {}, {screenWithPanel(ScreenEdge::bottom)});
    EXPECT_EQ(above.position({360, 300}).y() + 300, above.position({360, 700}).y() + 700);
}

TEST(PopoverPlacement, ItMayFillFourFifthsOfTheWorkArea)
{
    const PopoverPlacement placement({1000, 4, 24, 24}, {}, {screenWithPanel(ScreenEdge::top)});
    EXPECT_EQ(placement.maximumHeight(), 838); // of 1048
}

TEST(PopoverPlacement, OneThatIsLargerThanTheWorkAreaShowsItsTopLeftCorner)
{
    const ScreenArea small = screenWithPanel(ScreenEdge::bottom, {0, 0, 300, 200});
    const PopoverPlacement placement({100, 172, 24, 24}, {}, {small});
    EXPECT_EQ(placeOf(placement), QPoint(8, 8));
}

class PopoverPlacementOnTwoScreens : public testing::Test
{
protected:
    // 1920 x 1080 at scale 1, and on its right 3840 x 2160 at scale 2.
    const ScreenArea left = screenWithPanel(ScreenEdge::bottom, {0, 0, 1920, 1080});
    const ScreenArea right = screenWithPanel(ScreenEdge::top, {1920, 0, 1920, 1080}, 16);
};

TEST_F(PopoverPlacementOnTwoScreens, ItIsOnTheItemsScreen)
{
    const PopoverPlacement onLeft({1890, 1052, 24, 24}, {}, {left, right});
    EXPECT_EQ(onLeft.edge(), ScreenEdge::bottom);
    EXPECT_EQ(placeOf(onLeft), QPoint(1920 - 8 - 360, 640));

    const PopoverPlacement onRight({1925, 2, 12, 12}, {}, {left, right});
    EXPECT_EQ(onRight.edge(), ScreenEdge::top);
    EXPECT_EQ(placeOf(onRight), QPoint(1920 + 8, 24));
}

TEST_F(PopoverPlacementOnTwoScreens, ScalingMayLeaveAGapBetweenScreens)
{
    // 3840 x 2160 at scale 2 stands on the left: the other one's origin stays at 3840.
    const ScreenArea large{{0, 0, 1920, 1080}, {0, 0, 1920, 1080}};
    const ScreenArea small = screenWithPanel(ScreenEdge::top, {3840, 0, 1280, 1024});
    const PopoverPlacement inGap({2500, 4, 24, 24}, QPoint(4000, 16), {large, small});
    EXPECT_EQ(placeOf(inGap), QPoint(3848, 40)) << "an item on no screen does not count";
}

TEST_F(PopoverPlacementOnTwoScreens, WithoutAnItemItIsAtTheFarCornerOfTheFirstPanel)
{
    const ScreenArea bare{right.geometry, right.geometry};
    const PopoverPlacement placement(noItem, {}, {bare, left});
    EXPECT_EQ(placement.edge(), ScreenEdge::bottom);
    EXPECT_EQ(placeOf(placement), QPoint(1920 - 8 - 360, 640));
}

TEST(PopoverPlacement, TheFarCornerIsTheEndOfThePanel)
{
    const auto corner = [](ScreenEdge edge) {
        return placeOf(PopoverPlacement(noItem, {}, {screenWithPanel(edge)}));
    };
    EXPECT_EQ(corner(ScreenEdge::top), QPoint(1552, 40));
    EXPECT_EQ(corner(ScreenEdge::bottom), QPoint(1552, 640));
    EXPECT_EQ(corner(ScreenEdge::left), QPoint(40, 672));
    EXPECT_EQ(corner(ScreenEdge::right), QPoint(1520, 672));
}

TEST(PopoverPlacement, WithoutAnyPanelItIsInTheTopRightCorner)
{
    const PopoverPlacement placement(noItem, {}, {{whole, whole}});
    EXPECT_EQ(placement.edge(), ScreenEdge::top);
    EXPECT_EQ(placeOf(placement), QPoint(1552, 8));
}

} // namespace
} // namespace kestrova
