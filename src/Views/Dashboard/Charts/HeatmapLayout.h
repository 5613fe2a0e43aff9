#pragma once

#include <QRectF>
#include <QStringList>

#include <optional>

namespace kestrova {

/// Where the cells of a heatmap lie, in logical pixels from the grid's top left corner. Cells are
/// counted column by column, seven to a column.
struct HeatmapLayout
{
    double cell = 12;
    double gap = 3;

    /// The regular cells, or the smaller ones where those columns are too wide.
    static HeatmapLayout fitting(double width, qsizetype columns);

    double pitch() const { return cell + gap; }
    double width(qsizetype columns) const;
    double height() const;
    QRectF cellRect(qsizetype index) const;
    /// The cell at the point, or nearest to it when it lies in a gap; none beyond the cells.
    std::optional<qsizetype> cellAt(QPointF point, qsizetype cellCount) const;

    /// Whether each column's label is drawn: only when it has at least two columns, and the room it
    /// takes, before the next label or the end.
    QList<bool> shownLabels(const QStringList &labels, const QList<double> &widths) const;
};

} // namespace kestrova
