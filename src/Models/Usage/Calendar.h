#pragma once

#include "Models/Date.h"

#include <QLocale>
#include <QTimeZone>

#include <optional>

namespace kestrova {

/// The user's civil calendar (Gregorian): a time zone, the weekday that weeks begin with, and the
/// locale of labels. A plain value, usable from any thread.
///
/// Clock changes: a local time that a change skips stands for the moment as far after the change
/// as the skipped time is after its beginning; of a local time that comes twice, the first is
/// meant. So no unit begins after a moment that it contains.
class Calendar
{
public:
    enum class Unit { hour, day, week, month };

    /// An invalid time zone counts as UTC.
    Calendar(const QTimeZone &timeZone, Qt::DayOfWeek firstWeekday, const QLocale &locale);
    /// The system's time zone and locale as they are now, weeks beginning as the locale has it.
    static Calendar current();

    /// The first moment of the unit that contains the date. An hour begins with the minute 0 of the
    /// clock that the date itself is told by; a week with the last first weekday, whichever year it
    /// lies in. The date itself where it lies outside what calendars count.
    Date startOf(Unit unit, Date date) const;

    /// Hours are 3600 seconds each. Days, weeks (7 days) and months keep the local time of day, to
    /// the fraction of a second; a day that the month lacks becomes its last. None where the result
    /// or the date lies outside what calendars count.
    std::optional<Date> adding(qint64 count, Unit unit, Date date) const;

    /// The local date and time in a format of QLocale::toString(), in the calendar's locale.
    QString label(Date date, QStringView format) const;
    /// The local date with an abbreviated month and without weekday, as the locale orders it, for
    /// example "Nov 13, 2026".
    QString mediumDate(Date date) const;
    /// The same without the year, for example "Nov 13".
    QString monthAndDay(Date date) const;

private:
    qint64 offsetAt(qint64 unixTime) const;
    QDateTime localTime(qint64 unixTime) const;
    qint64 unixTimeOf(const QDateTime &localTime) const;
    QDate startOf(Unit unit, QDate day) const;

    QTimeZone m_timeZone;
    Qt::DayOfWeek m_firstWeekday;
    QLocale m_locale;
};

} // namespace kestrova
