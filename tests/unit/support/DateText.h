#pragma once

#include "Models/Date.h"
#include "Models/UtcDateTime.h"

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
    *stream << utcDateTime(0)
                   .addMSecs(qint64(date.unixTime() * 1000))
                   .toString(Qt::ISODateWithMs)
                   .toStdString();
}

} // namespace kestrova
