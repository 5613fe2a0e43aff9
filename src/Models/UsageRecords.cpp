#include "Models/UsageRecords.h"

#include "Models/HotbarSlotAssignment.h"

namespace kestrova {

UsageDashboardSnapshot UsageDashboardSnapshot::empty()
{
    UsageDashboardSnapshot snapshot;
    for (int slot = 1; slot <= HotbarSlotAssignment::slotCount; ++slot)
        snapshot.slotUsage.append({slot, 0});
    return snapshot;
}

} // namespace kestrova
