#pragma once

#include "Models/Settings/AppSettings.h"
#include "Models/Usage/UsageRecords.h"

namespace kestrova {

/// A hotbar slot in the overview.
struct OverviewSlotUsageRow
{
    qint64 slotIndex = 0;
    QString
        label; ///< the application's name without white space around it, else "Slot " and number
    qint64 recordings = 0;

    bool operator==(const OverviewSlotUsageRow &) const = default;
};

/// The slots that have an application, in the order given.
QList<OverviewSlotUsageRow> overviewSlotUsageRows(const QList<SlotUsageStat> &slotUsage,
                                                  const AppSettings &settings);

/// The length of each row's bar as a share of the longest; 0 when all counts are 0.
QList<double> barShares(const QList<qint64> &counts);

} // namespace kestrova
