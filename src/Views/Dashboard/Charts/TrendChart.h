#pragma once

#include "Models/Usage/UsageRecords.h"
#include "Models/Usage/UsageTrendPeriod.h"
#include "Views/Dashboard/Charts/ValueAxis.h"

#include <QObject>

namespace kestrova {

class Calendar;

/// The buckets that the trend chart shows: the last 30 of a long daily trend, else all.
QList<UsageBucket> usageTrendChartBuckets(UsageTrendPeriod period,
                                          const QList<UsageBucket> &buckets);

/// The buckets added up. Counts stay at the limit of their type rather than overflow.
UsageSummary usageTotals(const QList<UsageBucket> &buckets);

/// One bar or point.
struct TrendMark
{
    qint64 words = 0;
    QString tickLabel; ///< empty where the x axis has no tick
    QString readOut;   ///< for example "Nov 13, 2026: 424 words"

    bool operator==(const TrendMark &) const = default;
};

/// A trend chart as it is drawn, oldest mark first.
struct TrendChart
{
    Q_GADGET
    Q_PROPERTY(QString textAlternative MEMBER textAlternative)

public:
    QList<TrendMark> marks;
    ValueAxis axis;
    QString textAlternative; ///< the whole in a sentence or two, for screen readers

    bool operator==(const TrendChart &) const = default;
};

/// Of the buckets as they are. The ticks stand at a fixed stride per period, counted back from the
/// last bucket, so that the present one has a label.
TrendChart trendChart(UsageTrendPeriod period, const QList<UsageBucket> &buckets,
                      const Calendar &calendar);

} // namespace kestrova
