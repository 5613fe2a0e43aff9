#pragma once

#include "Models/Date.h"

#include <QDateTime>

#include <ostream>

namespace kestrova {

/// The date of an ISO 8601 text with an offset, for example "2024-03-31T02:30:00+02:00".
inline Date date(const char *text)
{
    const auto parsed = QDateTime::fromString(QString::fromLatin1(text), Qt::ISODateWithMs);
    return Date::fromUnixTime(double(parsed.toMSecsSinceEpoch()) / 1000);
}

inline void PrintTo(const Date &date, std::ostream *stream)
{
    *stream << QDateTime::fromMSecsSinceEpoch(qint64(date.unixTime() * 1000), Qt::UTC)
                   .toString(Qt::ISODateWithMs)
                   .toStdString();
}

} // namespace kestrova
