#include "Views/Dashboard/Overview/OverviewRows.h"

#include <algorithm>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

QString labelOf(const HotbarSlotAssignment &slot)
{
    const QString name = slot.appName.value_or(QString()).trimmed();
    return name.isEmpty() ? u"Slot %1"_s.arg(slot.slotIndex) : name;
}

} // namespace

QList<OverviewSlotUsageRow> overviewSlotUsageRows(const QList<SlotUsageStat> &slotUsage,
                                                  const AppSettings &settings)
{
    QList<OverviewSlotUsageRow> rows;
    for (const SlotUsageStat &usage : slotUsage) {
        const HotbarSlotAssignment slot = settings.assignment(usage.slotIndex);
        if (slot.isAssigned())
            rows.append({usage.slotIndex, labelOf(slot), usage.recordings});
    }
    return rows;
}

QList<double> barShares(const QList<qint64> &counts)
{
    QList<double> shares(counts.size(), 0.0);
    const auto most = std::max_element(counts.begin(), counts.end());
    if (most == counts.end() || *most <= 0)
        return shares;
    std::transform(counts.begin(), counts.end(), shares.begin(),
                   [most](qint64 count) { return std::max(0.0, double(count) / double(*most)); });
    return shares;
}

} // namespace kestrova
