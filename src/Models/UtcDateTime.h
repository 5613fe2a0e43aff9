#pragma once

#include <QDateTime>

namespace kestrova {

/// A number of seconds since 1970-01-01 00:00:00 UTC as a date and a time in UTC. Any thread.
inline QDateTime utcDateTime(qint64 unixTime)
{
    // To name UTC takes other words for every few versions of Qt; to go there does not.
    static const QDateTime epoch = QDateTime::fromSecsSinceEpoch(0).toUTC();
    return epoch.addSecs(unixTime);
}

} // namespace kestrova
