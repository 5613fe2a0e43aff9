#include "Views/Dashboard/Charts/MonotoneCurve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace kestrova {
namespace {

/// The curve's point at a share of a segment, by de Casteljau's construction.
QPointF pointOn(QPointF from, const CurveSegment &segment, double share)
{
    const auto between = [share](QPointF a, QPointF b) { return a + (b - a) * share; };
    const QPointF first = between(from, segment.firstControl);
    const QPointF second = between(segment.firstControl, segment.secondControl);
    const QPointF third = between(segment.secondControl, segment.end);
    return between(between(first, second), between(second, third));
}

void expectWithinNeighbours(const QList<QPointF> &points)
{
    constexpr double rounding = 1e-9;
    const QList<CurveSegment> curve = monotoneCurve(points);
    ASSERT_EQ(curve.size(), points.size() - 1);
    for (qsizetype i = 0; i < curve.size(); ++i) {
        const auto [low, high] = std::minmax({points[i].y(), points[i + 1].y()});
        double x = points[i].x();
        for (double share = 0.05; share < 1; share += 0.05) {
            const QPointF point = pointOn(points[i], curve[i], share);
            EXPECT_GE(point.y(), low - rounding);
            EXPECT_LE(point.y(), high + rounding);
            EXPECT_GT(point.x(), x) << "it never turns back";
            x = point.x();
        }
        EXPECT_EQ(curve[i].end, points[i + 1]);
    }
}

TEST(MonotoneCurve, NeedsTwoPoints)
{
    EXPECT_TRUE(monotoneCurve({}).isEmpty());
    EXPECT_TRUE(monotoneCurve({{1, 2}}).isEmpty());
}

TEST(MonotoneCurve, IsStraightThroughPointsOnALine)
{
    const QList<CurveSegment> curve = monotoneCurve({{0, 0}, {3, 6}, {6, 12}});
    ASSERT_EQ(curve.size(), 2);
    EXPECT_EQ(curve[0].firstControl, QPointF(1, 2));
    EXPECT_EQ(curve[0].secondControl, QPointF(2, 4));
    EXPECT_EQ(curve[1].firstControl, QPointF(4, 8));
}

TEST(MonotoneCurve, IsLevelAtAnExtreme)
{
    const QList<CurveSegment> curve = monotoneCurve({{0, 0}, {3, 9}, {6, 0}});
    ASSERT_EQ(curve.size(), 2);
    EXPECT_EQ(curve[0].secondControl, QPointF(2, 9));
    EXPECT_EQ(curve[1].firstControl, QPointF(4, 9));
}

TEST(MonotoneCurve, HasNoKinks)
{
    const QList<QPointF> points{{0, 4}, {2, 5}, {5, 9}, {6, 9.5}, {9, 1}};
    const QList<CurveSegment> curve = monotoneCurve(points);
    for (qsizetype i = 1; i < curve.size(); ++i) {
        const QPointF in = points[i] - curve[i - 1].secondControl;
        const QPointF out = curve[i].firstControl - points[i];
        EXPECT_NEAR(in.y() * out.x(), out.y() * in.x(), 1e-9) << "at point " << i;
    }
}

TEST(MonotoneCurve, StaysBetweenNeighbouringPoints)
{
    expectWithinNeighbours({{0, 0}, {1, 0}, {2, 100}, {3, 100}, {4, 1}, {5, 0}, {6, 0}});
    std::mt19937 random(1);
    std::uniform_int_distribution<int> height(0, 50);
    for (int round = 0; round < 200; ++round) {
        QList<QPointF> points;
        for (int x = 0; x < 30; ++x)
            points.append({7.5 * x, double(height(random))});
        expectWithinNeighbours(points);
    }
}

} // namespace
} // namespace kestrova
