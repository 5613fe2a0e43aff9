#include "Models/Usage/UsageRecords.h"

#include "Models/Settings/HotbarSlotAssignment.h"

#include <limits>

namespace kestrova {

qint64 cappedSum(qint64 a, qint64 b)
{
    qint64 result = 0;
    if (!qAddOverflow(a, b, &result))
        return result;
    return b < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
}

UsageDashboardSnapshot UsageDashboardSnapshot::empty()
{
    UsageDashboardSnapshot snapshot;
    for (int slot = 1; slot <= HotbarSlotAssignment::slotCount; ++slot)
        snapshot.slotUsage.append({slot, 0});
    return snapshot;
}

} // namespace kestrova
