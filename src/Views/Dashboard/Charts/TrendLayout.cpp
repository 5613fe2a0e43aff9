#include "Views/Dashboard/Charts/TrendLayout.h"

#include <algorithm>
#include <cmath>

namespace kestrova {

namespace {

constexpr double barShareOfSlot = 2.0 / 3;
constexpr double widestBar = 28;
constexpr double lowestBar = 2;
constexpr double spaceBetweenLabels = 6;

} // namespace

double TrendLayout::slotWidth() const
{
    return markCount > 0 ? plot.width() / double(markCount) : 0;
}

double TrendLayout::centre(qsizetype mark) const
{
    return plot.left() + (double(mark) + 0.5) * slotWidth();
}

QPointF TrendLayout::point(qsizetype mark, double height) const
{
    return {centre(mark), plot.bottom() - height * plot.height()};
}

QRectF TrendLayout::bar(qsizetype mark, double height) const
{
    if (height <= 0)
        return {};
    const double width =
        std::max(1.0, std::round(std::min(widestBar, barShareOfSlot * slotWidth())));
    const double top = plot.bottom() - std::max(lowestBar, height * plot.height());
    return {std::round(centre(mark) - width / 2), top, width, plot.bottom() - top};
}

std::optional<qsizetype> TrendLayout::markAt(QPointF point) const
{
    if (markCount == 0 || !plot.contains(point))
        return std::nullopt;
    const auto mark = qsizetype((point.x() - plot.left()) / slotWidth());
    return std::min(mark, markCount - 1);
}

QList<std::optional<double>> axisLabelEdges(const QList<AxisLabel> &labels, double left,
                                            double right)
{
    QList<std::optional<double>> edges(labels.size());
    double end = right;
    for (qsizetype i = labels.size() - 1; i >= 0; --i) {
        const AxisLabel &label = labels[i];
        if (label.width <= 0)
            continue;
        const double edge =
            std::clamp(label.centre - label.width / 2, left, std::max(left, right - label.width));
        if (edge + label.width > end)
            continue;
        edges[i] = edge;
        end = edge - spaceBetweenLabels;
    }
    return edges;
}

QList<double> resampled(const QList<double> &heights, qsizetype count)
{
    QList<double> result(count, 0.0);
    if (heights.isEmpty())
        return result;
    for (qsizetype i = 0; i < count; ++i) {
        const double place = (double(i) + 0.5) / double(count) * double(heights.size());
        result[i] = heights[std::min(qsizetype(place), heights.size() - 1)];
    }
    return result;
}

} // namespace kestrova
