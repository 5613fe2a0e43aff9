#pragma once

#include <QList>
#include <QPointF>
#include <QRectF>

#include <optional>

namespace kestrova {

/// Where the marks of a trend chart lie: each has a slot of the same width, from left to right.
/// In logical pixels; heights are shares of the plot's height.
struct TrendLayout
{
    QRectF plot;
    qsizetype markCount = 0;

    double slotWidth() const;
    double centre(qsizetype mark) const;
    QPointF point(qsizetype mark, double height) const;
    /// On whole pixels sideways; empty for the height 0, else tall enough to be seen.
    QRectF bar(qsizetype mark, double height) const;
    /// The mark whose slot is at the point; none outside the plot.
    std::optional<qsizetype> markAt(QPointF point) const;
};

/// A text that is centred at a place of an axis.
struct AxisLabel
{
    double centre = 0;
    double width = 0; ///< 0: no label
};

/// Left edge of each label that is drawn, within the bounds; none for one that would come too near
/// to the one after it. The last one is always drawn.
QList<std::optional<double>> axisLabelEdges(const QList<AxisLabel> &labels, double left,
                                            double right);

/// The heights with which marks begin their way to new ones: those of the old chart at the same
/// places of the axis, 0 when there was none.
QList<double> resampled(const QList<double> &heights, qsizetype count);

} // namespace kestrova
