#pragma once

#include "Models/Usage/Calendar.h"
#include "Models/Usage/UsageRecords.h"
#include "support/DateText.h"

namespace kestrova {

/// Buckets of consecutive units of the calendar with these words, one recording and half a minute
/// each.
inline QList<UsageBucket> bucketsOf(Calendar::Unit unit, const char *firstStart,
                                    const QList<qint64> &words, const Calendar &calendar,
                                    QStringView labelFormat = u"MMM d")
{
    QList<UsageBucket> buckets;
    for (const qint64 count : words) {
        UsageBucket bucket;
        bucket.startDate = *calendar.adding(buckets.size(), unit, date(firstStart));
        bucket.label = calendar.label(bucket.startDate, labelFormat);
        bucket.recordings = 1;
        bucket.words = count;
        bucket.minutes = 0.5;
        buckets.append(bucket);
    }
    return buckets;
}

inline QList<UsageBucket> dailyBuckets(const char *firstStart, const QList<qint64> &words,
                                       const Calendar &calendar = {QTimeZone::utc(), Qt::Monday,
                                                                   QLocale::c()})
{
    return bucketsOf(Calendar::Unit::day, firstStart, words, calendar);
}

} // namespace kestrova
