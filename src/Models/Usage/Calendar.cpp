#include "Models/Usage/Calendar.h"

#include "Models/UtcDateTime.h"

#include <QRegularExpression>

#include <cmath>

namespace kestrova {

namespace {

constexpr qint64 secondsPerHour = 3600;
constexpr qint64 secondsPerDay = 24 * secondsPerHour;
constexpr int daysPerWeek = 7;

/// Some thirty thousand years to either side: all arithmetic below stays exact and in range.
constexpr double furthestSecond = 1e12;
constexpr qint64 mostUnits = 1'000'000'000;

bool isCountable(Date date)
{
    return std::abs(date.unixTime()) <= furthestSecond;
}

qint64 wholeSeconds(Date date)
{
    return qint64(std::floor(date.secondsSinceReferenceDate)) +
           qint64(Date::referenceDateInUnixTime);
}

Date dateAt(qint64 unixTime)
{
    return {double(unixTime - qint64(Date::referenceDateInUnixTime))};
}

qint64 floorTo(qint64 step, qint64 value)
{
    const qint64 remainder = value % step;
    return value - remainder - (remainder < 0 ? step : 0);
}

/// QLocale knows a long and a short format only.
QString mediumDateFormat(const QLocale &locale)
{
    static const QRegularExpression weekday(QStringLiteral("[\\s,\u060c]*d{3,4}[\\s,\u060c]*"));
    return locale.dateFormat(QLocale::LongFormat)
        .replace(weekday, QStringLiteral(" "))
        .replace(QLatin1String("MMMM"), QLatin1String("MMM"))
        .trimmed();
}

/// From the first to the last of month and day, with what stands between them and the sign that
/// belongs to the last: a full stop or letters, as in "d. MMM" and "M月d日". Quoted words are no
/// fields.
QString monthAndDayFormat(const QLocale &locale)
{
    static const QRegularExpression monthAndDay(
        QStringLiteral("^(?:'[^']*'|[^Md'])*"
                       "(?<fields>(?:M+(?:'[^']*'|[^yMd'])*d+|d+(?:'[^']*'|[^yMd'])*M+)"
                       "(?:\\.|(?:(?![yMd])\\p{L})*))"));
    const auto match = monthAndDay.match(mediumDateFormat(locale));
    return match.hasMatch() ? match.captured(QStringLiteral("fields")) : QStringLiteral("MMM d");
}

} // namespace

Calendar::Calendar(const QTimeZone &timeZone, Qt::DayOfWeek firstWeekday, const QLocale &locale)
    : m_timeZone(timeZone.isValid() ? timeZone : QTimeZone::utc()), m_firstWeekday(firstWeekday),
      m_locale(locale)
{
}

Calendar Calendar::current()
{
    const QLocale locale = QLocale::system();
    return {QTimeZone::systemTimeZone(), locale.firstDayOfWeek(), locale};
}

Date Calendar::startOf(Unit unit, Date date) const
{
    if (!isCountable(date))
        return date;
    const qint64 seconds = wholeSeconds(date);
    if (unit == Unit::hour) {
        const qint64 offset = offsetAt(seconds);
        return dateAt(floorTo(secondsPerHour, seconds + offset) - offset);
    }
    const QDate day = startOf(unit, localTime(seconds).date());
    return dateAt(unixTimeOf(utcDateTime(QDate(1970, 1, 1).daysTo(day) * secondsPerDay)));
}

QDate Calendar::startOf(Unit unit, QDate day) const
{
    if (unit == Unit::week)
        return day.addDays(-((day.dayOfWeek() - m_firstWeekday + daysPerWeek) % daysPerWeek));
    return unit == Unit::month ? day.addDays(1 - day.day()) : day;
}

std::optional<Date> Calendar::adding(qint64 count, Unit unit, Date date) const
{
    if (!isCountable(date) || count < -mostUnits || count > mostUnits)
        return std::nullopt;
    if (unit == Unit::hour)
        return Date{date.secondsSinceReferenceDate + double(count * secondsPerHour)};

    const qint64 seconds = wholeSeconds(date);
    const double fraction =
        date.secondsSinceReferenceDate - std::floor(date.secondsSinceReferenceDate);
    const QDateTime local = localTime(seconds);
    const QDateTime moved = unit == Unit::month
                                ? local.addMonths(int(count))
                                : local.addDays(unit == Unit::week ? count * daysPerWeek : count);
    if (!moved.isValid())
        return std::nullopt;
    const Date result = dateAt(unixTimeOf(moved));
    if (!isCountable(result))
        return std::nullopt;
    return Date{result.secondsSinceReferenceDate + fraction};
}

QString Calendar::label(Date date, QStringView format) const
{
    return isCountable(date) ? m_locale.toString(localTime(wholeSeconds(date)), format) : QString();
}

QString Calendar::mediumDate(Date date) const
{
    return label(date, mediumDateFormat(m_locale));
}

QString Calendar::monthAndDay(Date date) const
{
    return label(date, monthAndDayFormat(m_locale));
}

qint64 Calendar::offsetAt(qint64 unixTime) const
{
    return m_timeZone.offsetFromUtc(utcDateTime(unixTime));
}

// Local times are computed with as if they were UTC: QDateTime leaves open what it makes of local
// times that a clock change skips or repeats.
QDateTime Calendar::localTime(qint64 unixTime) const
{
    return utcDateTime(unixTime + offsetAt(unixTime));
}

qint64 Calendar::unixTimeOf(const QDateTime &localTime) const
{
    const qint64 local = localTime.toSecsSinceEpoch();
    // No zone is a day away from UTC: these lie on either side of a change near the local time.
    const qint64 offsetBefore = offsetAt(local - secondsPerDay);
    const qint64 offsetAfter = offsetAt(local + secondsPerDay);
    const qint64 first = local - offsetBefore;
    const qint64 second = local - offsetAfter;
    if (offsetBefore == offsetAfter || offsetAt(first) == offsetBefore)
        return first;
    return offsetAt(second) == offsetAfter ? second : first;
}

} // namespace kestrova
