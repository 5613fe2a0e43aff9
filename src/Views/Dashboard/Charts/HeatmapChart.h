#pragma once

#include "Models/Usage/UsageRecords.h"

#include <QObject>

namespace kestrova {

class Calendar;

/// What one cell of the drawn heatmap shows.
struct HeatmapMark
{
    int level = untracked;
    QString readOut; ///< for example "Nov 13, 2026: 424 words"; empty when untracked

    static constexpr int untracked = -1;

    bool operator==(const HeatmapMark &) const = default;
};

/// A heatmap as it is drawn. Empty when there are no buckets.
struct HeatmapChart
{
    Q_GADGET
    Q_PROPERTY(bool isEmpty READ isEmpty)
    Q_PROPERTY(QStringList weekdayLabels MEMBER weekdayLabels)
    Q_PROPERTY(QString textAlternative MEMBER textAlternative)

public:
    /// Column by column, each of daysPerHeatmapWeek cells; the last may have fewer.
    QList<HeatmapMark> marks;
    QStringList monthLabels; ///< one a column
    QStringList weekdayLabels;
    QString textAlternative; ///< the whole in a sentence or two, for screen readers

    bool isEmpty() const { return marks.isEmpty(); }
    bool operator==(const HeatmapChart &) const = default;
};

HeatmapChart heatmapChart(const QList<UsageBucket> &dailyBuckets, const Calendar &calendar);

/// The cell that an arrow key leads to from a cell: weeks sideways, days up and down. The cell
/// itself where there is no tracked cell in that direction; the last tracked one when from is none.
std::optional<qsizetype> heatmapNeighbour(const HeatmapChart &chart, std::optional<qsizetype> from,
                                          int weeks, int days);

} // namespace kestrova
