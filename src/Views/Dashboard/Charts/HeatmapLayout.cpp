#include "Views/Dashboard/Charts/HeatmapLayout.h"

#include "Views/Dashboard/Charts/UsageHeatmap.h"

#include <algorithm>
#include <cmath>

namespace kestrova {

namespace {

constexpr HeatmapLayout smallCells{11, 2};
constexpr qsizetype columnsOfLabel = 2;

double extent(qsizetype cells, const HeatmapLayout &layout)
{
    return double(cells) * layout.pitch() - layout.gap;
}

} // namespace

HeatmapLayout HeatmapLayout::fitting(double width, qsizetype columns)
{
    const HeatmapLayout regular;
    return regular.width(columns) <= width ? regular : smallCells;
}

double HeatmapLayout::width(qsizetype columns) const
{
    return std::max(0.0, extent(columns, *this));
}

double HeatmapLayout::height() const
{
    return extent(daysPerHeatmapWeek, *this);
}

QRectF HeatmapLayout::cellRect(qsizetype index) const
{
    const qsizetype column = index / daysPerHeatmapWeek;
    const qsizetype row = index % daysPerHeatmapWeek;
    return {double(column) * pitch(), double(row) * pitch(), cell, cell};
}

std::optional<qsizetype> HeatmapLayout::cellAt(QPointF point, qsizetype cellCount) const
{
    const auto column = qsizetype(std::floor((point.x() + gap / 2) / pitch()));
    const auto row = qsizetype(std::floor((point.y() + gap / 2) / pitch()));
    const qsizetype index = column * daysPerHeatmapWeek + row;
    if (column < 0 || row < 0 || row >= daysPerHeatmapWeek || index >= cellCount)
        return std::nullopt;
    return index;
}

QList<bool> HeatmapLayout::shownLabels(const QStringList &labels, const QList<double> &widths) const
{
    QList<bool> shown(labels.size(), false);
    qsizetype next = labels.size();
    for (qsizetype column = labels.size() - 1; column >= 0; --column) {
        if (labels[column].isEmpty())
            continue;
        const qsizetype room = next - column;
        shown[column] = room >= columnsOfLabel && widths[column] <= extent(room, *this);
        next = column;
    }
    return shown;
}

} // namespace kestrova
