#include "Views/Dashboard/Charts/HeatmapGrid.h"
#include "Views/Dashboard/Charts/TrendPlot.h"
#include "support/ApplicationObject.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

const QColor background = Qt::white;
const QColor focus = Qt::magenta;
const QColor grid = Qt::lightGray;
const QColor baseLine = Qt::darkGray;
const QColor mark = Qt::red;
const QColor softMark = Qt::cyan;
const QColor untracked = Qt::yellow;
const QList<QColor> levels{Qt::black, Qt::blue, Qt::green, Qt::darkCyan, Qt::darkMagenta};

/// What the charts draw, pixel by pixel.
class ChartPaintingTest : public testing::Test
{
protected:
    ChartPaintingTest()
    {
        for (const char *property : {"labelColor", "outlineColor", "surfaceColor", "guideColor"}) {
            heatmap.setProperty(property, background);
            plot.setProperty(property, background);
        }
        heatmap.setProperty("levelColors", QVariant::fromValue(levels));
        heatmap.setProperty("untrackedColor", untracked);
        heatmap.setProperty("focusColor", focus);
        heatmap.setProperty("availableWidth", 400.0);
        plot.setProperty("markColor", mark);
        plot.setProperty("softMarkColor", softMark);
        plot.setProperty("gridColor", grid);
        plot.setProperty("baseLineColor", baseLine);
        plot.setSize({348, 250});
        plot.setChart(chart);
    }

    static QImage picture(QQuickPaintedItem &item, QSizeF size)
    {
        QImage image(size.toSize(), QImage::Format_RGB32);
        image.fill(background);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        item.paint(&painter);
        return image;
    }
    QImage heatmapPicture()
    {
        return picture(heatmap, {heatmap.implicitWidth(), heatmap.implicitHeight()});
    }
    QImage plotPicture() { return picture(plot, plot.size()); }

    /// From above, the first and last row of the column that has the colour; -1: none has.
    static std::pair<int, int> extent(const QImage &image, int x, const QColor &color)
    {
        int first = -1;
        int last = -1;
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixelColor(x, y) != color)
                continue;
            first = first < 0 ? y : first;
            last = y;
        }
        return {first, last};
    }
    static QList<int> rowsOf(const QImage &image, int x, const QColor &color)
    {
        QList<int> rows;
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixelColor(x, y) == color)
                rows.append(y);
        }
        return rows;
    }
    int centreOf(int index)
    {
        plot.setProperty("currentMark", index);
        return int(plot.currentCentre());
    }

    ApplicationObject<QGuiApplication> m_application{"offscreen"};
    /// A value axis from 0 to 4, and marks of all heights.
    const TrendChart chart{.marks = {{0, u""_s, u"a"_s}, {2, u""_s, u"b"_s}, {4, u""_s, u"c"_s}},
                           .axis = {1, 4},
                           .textAlternative = {}};
    HeatmapGrid heatmap;
    TrendPlot plot;
};

TEST_F(ChartPaintingTest, EachDayIsACellInTheColourOfItsLevel)
{
    HeatmapChart days;
    for (const int level : {HeatmapMark::untracked, 0, 1, 2, 3, 4, 0, 1})
        days.marks.append(HeatmapMark{level, QString()});
    days.monthLabels = QStringList{QString(), QString()};
    heatmap.setProperty("chart", QVariant::fromValue(days));

    const QImage image = heatmapPicture();
    const int top = int(heatmap.cellsTop());
    EXPECT_EQ(image.size(), QSize(2 * 12 + 3, top + 7 * 12 + 6 * 3));
    const QList<QColor> firstWeek{untracked,    levels.at(0), levels.at(1), levels.at(2),
                                  levels.at(3), levels.at(4), levels.at(0)};
    for (int day = 0; day < firstWeek.size(); ++day)
        EXPECT_EQ(image.pixelColor(6, top + day * 15 + 6), firstWeek.at(day)) << day;
    EXPECT_EQ(image.pixelColor(15 + 6, top + 6), levels.at(1)) << "the next week";
    EXPECT_EQ(image.pixelColor(15 + 6, top + 15 + 6), background) << "a day that has not come";
    EXPECT_EQ(image.pixelColor(13, top + 6), background) << "between the weeks";
    EXPECT_EQ(image.pixelColor(6, top + 13), background) << "between the days";
    EXPECT_EQ(image.pixelColor(0, top), background) << "a rounded corner";
}

TEST_F(ChartPaintingTest, TheCurrentDayHasARing)
{
    HeatmapChart days;
    days.marks = {{1, u"a"_s}, {2, u"b"_s}};
    days.monthLabels = QStringList{QString()};
    heatmap.setProperty("chart", QVariant::fromValue(days));
    const int top = int(heatmap.cellsTop());
    EXPECT_NE(heatmapPicture().pixelColor(6, top + 15), focus);

    heatmap.setProperty("currentCell", 1);
    EXPECT_EQ(heatmap.readOut(), u"b"_s);
    EXPECT_EQ(heatmap.currentRect(), QRectF(0, top + 15, 12, 12));
    const QImage image = heatmapPicture();
    EXPECT_EQ(image.pixelColor(6, top + 15), focus);
    EXPECT_EQ(image.pixelColor(6, top + 15 + 6), levels.at(2));
    EXPECT_NE(image.pixelColor(6, top), focus) << "the other day";
}

TEST_F(ChartPaintingTest, LinesStandAtEachStepOfTheAxis)
{
    const QImage image = plotPicture();
    const int betweenMarks = 340 - 2;
    const QList<int> lines = rowsOf(image, betweenMarks, grid);
    const QList<int> base = rowsOf(image, betweenMarks, baseLine);
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines.first(), 30) << "the read-out's room is above";
    ASSERT_EQ(base.size(), 1);
    const double step = (base.first() - lines.first()) / 4.0;
    for (int line = 0; line < lines.size(); ++line)
        EXPECT_NEAR(lines.at(line), lines.first() + line * step, 1) << line;
}

TEST_F(ChartPaintingTest, BarsAreAsHighAsTheirValue)
{
    const QList<int> centres{centreOf(0), centreOf(1), centreOf(2)};
    EXPECT_EQ(centres, (QList<int>{90, 190, 290})) << "the middles of three equal slots";
    plot.setProperty("currentMark", -1);
    const QImage image = plotPicture();
    const int bottom = rowsOf(image, 338, baseLine).value(0);
    EXPECT_EQ(extent(image, centres[0], mark), std::pair(-1, -1)) << "nothing for no words";
    EXPECT_NEAR(extent(image, centres[1], mark).first, (30 + bottom) / 2, 1);
    EXPECT_NEAR(extent(image, centres[2], mark).first, 30, 1);
    for (const int bar : {1, 2})
        EXPECT_NEAR(extent(image, centres[bar], mark).second, bottom, 1) << bar;
    EXPECT_EQ(extent(image, centres[2] - 15, mark), std::pair(-1, -1)) << "no wider than 28";
    EXPECT_NE(extent(image, centres[2] - 13, mark), std::pair(-1, -1));
}

TEST_F(ChartPaintingTest, TheOtherBarsStandBackBehindTheCurrentOne)
{
    const int second = centreOf(1);
    const int third = centreOf(2);
    const QImage image = plotPicture();
    EXPECT_EQ(plot.readOut(), u"c"_s);
    EXPECT_NE(extent(image, third, mark).first, -1);
    EXPECT_EQ(extent(image, third, softMark).first, -1);
    EXPECT_EQ(extent(image, second, mark).first, -1);
    EXPECT_NE(extent(image, second, softMark).first, -1);
}

TEST_F(ChartPaintingTest, ALineGoesThroughThePoints)
{
    const int third = centreOf(2);
    const int first = centreOf(0);
    plot.setProperty("currentMark", -1);
    plot.setProperty("isLine", true);
    const QImage image = plotPicture();
    const int bottom = rowsOf(image, 338, baseLine).value(0);
    EXPECT_NEAR(extent(image, third, mark).first, 30 - 7 / 2, 1) << "a point is 7 across";
    EXPECT_NEAR(extent(image, third, mark).second, 30 + 7 / 2, 1);
    EXPECT_NEAR(extent(image, first, mark).second, bottom + 7 / 2, 1);
    const auto [above, below] = extent(image, (third + first) / 2 + 50, mark);
    EXPECT_GT(above, 30);
    EXPECT_LT(below, (30 + bottom) / 2) << "between the second and the third";
    EXPECT_LE(below - above, 7) << "a line, and no area";
}

TEST_F(ChartPaintingTest, APointerFindsTheMarkWhoseSlotItIsIn)
{
    EXPECT_EQ(plot.markAt(centreOf(0), 100), 0);
    EXPECT_EQ(plot.markAt(centreOf(2) + 30, 31), 2);
    EXPECT_EQ(plot.markAt(20, 100), -1) << "beside the value axis";
    EXPECT_EQ(plot.markAt(centreOf(1), 10), -1) << "in the read-out's room";
}

} // namespace
} // namespace kestrova
