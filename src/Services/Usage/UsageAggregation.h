#pragma once

#include "Models/Usage/Calendar.h"
#include "Models/Usage/UsageRecords.h"
#include "Models/Usage/UsageTrendPeriod.h"
#include "Services/Usage/CompactUsageLog.h"

namespace kestrova {

/// What the dashboard shows of the usage log, each computed in one pass over the events. Time
/// ranges contain their start and not their end.

/// The totals since the start of this hour, day, week and month, all of them up to now, excluded;
/// the average, the five applications with the most recordings (then the most words, then the
/// earliest in the log) and the slots over all events. An application goes by its name, else its
/// identifier, else "Unknown".
UsageDashboardSnapshot usageSnapshot(const CompactUsageLog &log, const Calendar &calendar,
                                     Date now);

/// The last 24 hours, 365 days, 12 weeks or 12 months, oldest first, each whole, also the present
/// one. The labels are in the calendar's locale and time zone; the identifier is the start in UTC
/// (ISO 8601).
QList<UsageBucket> usageTrendBuckets(const CompactUsageLog &log, const Calendar &calendar,
                                     UsageTrendPeriod period, Date now);

} // namespace kestrova
