#include "Models/Usage/Calendar.h"
#include "support/DateText.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using Unit = Calendar::Unit;

Calendar calendarOf(const char *zone, Qt::DayOfWeek firstWeekday = Qt::Monday)
{
    return {QTimeZone(zone), firstWeekday, QLocale::c()};
}

const Calendar utc = calendarOf("UTC");
const Calendar berlin = calendarOf("Europe/Berlin");

TEST(Calendar, UnitsBeginAtTheirFirstMoment)
{
    const Date now = date("2024-03-27T14:35:12.250+01:00");
    EXPECT_EQ(berlin.startOf(Unit::hour, now), date("2024-03-27T14:00:00+01:00"));
    EXPECT_EQ(berlin.startOf(Unit::day, now), date("2024-03-27T00:00:00+01:00"));
    EXPECT_EQ(berlin.startOf(Unit::week, now), date("2024-03-25T00:00:00+01:00"));
    EXPECT_EQ(berlin.startOf(Unit::month, now), date("2024-03-01T00:00:00+01:00"));
}

TEST(Calendar, TheFirstMomentOfAUnitBelongsToIt)
{
    const Date midnight = date("2024-07-01T00:00:00+02:00"); // a Monday
    for (const Unit unit : {Unit::hour, Unit::day, Unit::week, Unit::month}) {
        EXPECT_EQ(berlin.startOf(unit, midnight), midnight);
        EXPECT_LT(berlin.startOf(unit, Date{midnight.secondsSinceReferenceDate - 0.25}), midnight);
    }
}

TEST(Calendar, DatesBefore1970And2001BeginTheirUnitsToo)
{
    EXPECT_EQ(utc.startOf(Unit::hour, date("1969-12-31T23:59:59.500Z")),
              date("1969-12-31T23:00:00Z"));
    EXPECT_EQ(utc.startOf(Unit::day, date("1969-12-31T23:59:59.500Z")),
              date("1969-12-31T00:00:00Z"));
    EXPECT_EQ(utc.startOf(Unit::month, date("2000-12-31T23:59:59.500Z")),
              date("2000-12-01T00:00:00Z"));
}

TEST(Calendar, WeeksBeginWithTheFirstWeekday)
{
    const Date sunday = date("2024-03-10T12:00:00Z");
    EXPECT_EQ(utc.startOf(Unit::week, sunday), date("2024-03-04T00:00:00Z"));
    EXPECT_EQ(calendarOf("UTC", Qt::Sunday).startOf(Unit::week, sunday),
              date("2024-03-10T00:00:00Z"));
    EXPECT_EQ(calendarOf("UTC", Qt::Saturday).startOf(Unit::week, sunday),
              date("2024-03-09T00:00:00Z"));
}

TEST(Calendar, AWeekAcrossTheEndOfAYearIsOneWeek)
{
    // By the numbering of weeks these lie in week 1 of the next year, and in week 53 of the last.
    EXPECT_EQ(utc.startOf(Unit::week, date("2024-12-31T12:00:00Z")), date("2024-12-30T00:00:00Z"));
    EXPECT_EQ(utc.startOf(Unit::week, date("2025-01-05T12:00:00Z")), date("2024-12-30T00:00:00Z"));
    EXPECT_EQ(utc.startOf(Unit::week, date("2021-01-03T12:00:00Z")), date("2020-12-28T00:00:00Z"));
    EXPECT_EQ(calendarOf("UTC", Qt::Sunday).startOf(Unit::week, date("2026-01-01T12:00:00Z")),
              date("2025-12-28T00:00:00Z"));
    EXPECT_EQ(calendarOf("UTC", Qt::Saturday).startOf(Unit::week, date("2026-01-01T12:00:00Z")),
              date("2025-12-27T00:00:00Z"));
    EXPECT_EQ(utc.adding(-1, Unit::week, date("2025-01-06T00:00:00Z")),
              date("2024-12-30T00:00:00Z"));
}

TEST(Calendar, HoursOfHalfHourZonesBeginAtTheirOwnMinuteZero)
{
    const Calendar kolkata = calendarOf("Asia/Kolkata");
    const Date now = date("2024-03-27T14:10:00+05:30");
    EXPECT_EQ(kolkata.startOf(Unit::hour, now), date("2024-03-27T14:00:00+05:30"));
    EXPECT_EQ(kolkata.startOf(Unit::day, now), date("2024-03-27T00:00:00+05:30"));
    EXPECT_EQ(calendarOf("Asia/Kathmandu").startOf(Unit::hour, now),
              date("2024-03-27T14:00:00+05:45"));
}

TEST(Calendar, AHalfHourClockChangeKeepsTheHoursOfTheClockInForce)
{
    // Lord Howe Island goes from 02:00 +11 back to 01:30 +10:30.
    const Calendar lordHowe = calendarOf("Australia/Lord_Howe");
    EXPECT_EQ(lordHowe.startOf(Unit::hour, date("2024-04-07T01:45:00+11:00")),
              date("2024-04-07T01:00:00+11:00"));
    EXPECT_EQ(lordHowe.startOf(Unit::hour, date("2024-04-07T01:45:00+10:30")),
              date("2024-04-07T01:00:00+10:30"));
    EXPECT_EQ(lordHowe.startOf(Unit::day, date("2024-04-07T12:00:00+10:30")),
              date("2024-04-07T00:00:00+11:00"));
}

TEST(Calendar, HoursAreCountedThroughClockChanges)
{
    EXPECT_EQ(berlin.adding(1, Unit::hour, date("2024-03-31T01:00:00+01:00")),
              date("2024-03-31T03:00:00+02:00"));
    const Date secondTwo = date("2024-10-27T02:00:00+01:00");
    EXPECT_EQ(berlin.adding(-1, Unit::hour, secondTwo), date("2024-10-27T02:00:00+02:00"));
    EXPECT_EQ(berlin.startOf(Unit::hour, date("2024-10-27T02:59:59+02:00")),
              date("2024-10-27T02:00:00+02:00"));
    EXPECT_EQ(berlin.startOf(Unit::hour, date("2024-10-27T02:00:01+01:00")), secondTwo);
}

TEST(Calendar, DaysKeepTheLocalTimeAcrossClockChanges)
{
    EXPECT_EQ(berlin.adding(1, Unit::day, date("2024-03-30T12:00:00+01:00")),
              date("2024-03-31T12:00:00+02:00"));
    EXPECT_EQ(berlin.adding(1, Unit::day, date("2024-03-31T00:00:00+01:00")),
              date("2024-04-01T00:00:00+02:00"));
    EXPECT_EQ(berlin.adding(-1, Unit::week, date("2024-10-28T00:00:00+01:00")),
              date("2024-10-21T00:00:00+02:00"));
    EXPECT_EQ(berlin.adding(-6, Unit::month, date("2024-12-01T00:00:00+01:00")),
              date("2024-06-01T00:00:00+02:00"));
}

TEST(Calendar, ASkippedTimeStandsForOneAsFarAfterTheChange)
{
    EXPECT_EQ(berlin.adding(1, Unit::day, date("2024-03-30T02:30:00+01:00")),
              date("2024-03-31T03:30:00+02:00"));
    EXPECT_EQ(berlin.adding(-1, Unit::day, date("2024-04-01T02:30:00+02:00")),
              date("2024-03-31T03:30:00+02:00"));
}

TEST(Calendar, ARepeatedTimeMeansTheFirst)
{
    EXPECT_EQ(berlin.adding(1, Unit::day, date("2024-10-26T02:30:00+02:00")),
              date("2024-10-27T02:30:00+02:00"));
    EXPECT_EQ(berlin.adding(-1, Unit::day, date("2024-10-28T02:30:00+01:00")),
              date("2024-10-27T02:30:00+02:00"));
}

TEST(Calendar, ADayWithoutMidnightBeginsWithItsFirstMoment)
{
    const Calendar saoPaulo = calendarOf("America/Sao_Paulo");
    const Date first = date("2018-11-04T01:00:00-02:00");
    EXPECT_EQ(saoPaulo.startOf(Unit::day, date("2018-11-04T12:00:00-02:00")), first);
    EXPECT_EQ(saoPaulo.startOf(Unit::day, first), first);
    EXPECT_EQ(calendarOf("America/Sao_Paulo", Qt::Sunday)
                  .startOf(Unit::week, date("2018-11-07T12:00:00-02:00")),
              first);
    EXPECT_EQ(saoPaulo.adding(1, Unit::day, date("2018-11-03T00:00:00-03:00")), first);
    EXPECT_EQ(saoPaulo.startOf(Unit::day, date("2018-11-03T23:59:59-03:00")),
              date("2018-11-03T00:00:00-03:00"));
}

TEST(Calendar, ADayWithTwoMidnightsBeginsWithTheFirst)
{
    const Calendar havana = calendarOf("America/Havana", Qt::Sunday);
    const Date first = date("2018-11-04T00:00:00-04:00");
    for (const char *now :
         {"2018-11-04T00:30:00-04:00", "2018-11-04T00:30:00-05:00", "2018-11-04T12:00:00-05:00"}) {
        EXPECT_EQ(havana.startOf(Unit::day, date(now)), first) << now;
        EXPECT_EQ(havana.startOf(Unit::week, date(now)), first) << now;
    }
    EXPECT_EQ(havana.adding(-1, Unit::day, date("2018-11-05T00:00:00-05:00")), first);
}

TEST(Calendar, ADayThatTheIslandsSkippedLeavesNoUnitAfterItsContents)
{
    // Samoa went from 2011-12-29 to 2011-12-31.
    const Calendar apia = calendarOf("Pacific/Apia");
    const Date first = date("2011-12-31T00:00:00+14:00");
    EXPECT_EQ(apia.startOf(Unit::day, first), first);
    EXPECT_EQ(apia.startOf(Unit::day, Date{first.secondsSinceReferenceDate - 1}),
              date("2011-12-29T00:00:00-10:00"));
    EXPECT_EQ(apia.adding(-1, Unit::day, first), first);
    EXPECT_EQ(apia.adding(-2, Unit::day, first), date("2011-12-29T00:00:00-10:00"));
}

TEST(Calendar, NoUnitBeginsAfterAMomentThatItContains)
{
    for (const char *zone : {"Europe/Berlin", "America/New_York", "America/Sao_Paulo",
                             "America/Havana", "Australia/Lord_Howe", "Asia/Beirut", "Asia/Tehran",
                             "Africa/Casablanca", "America/Nuuk"}) {
        const Calendar calendar = calendarOf(zone, Qt::Sunday);
        const double begin = date("2016-01-01T00:00:00Z").secondsSinceReferenceDate;
        const double end = date("2019-01-01T00:00:00Z").secondsSinceReferenceDate;
        for (double second = begin; second < end; second += 7777.75) {
            for (const Unit unit : {Unit::hour, Unit::day, Unit::week, Unit::month})
                ASSERT_LE(calendar.startOf(unit, Date{second}), Date{second}) << zone;
            for (const Unit unit : {Unit::day, Unit::week, Unit::month}) {
                const Date start = calendar.startOf(unit, Date{second});
                ASSERT_EQ(calendar.startOf(unit, start), start) << zone;
            }
        }
    }
}

TEST(Calendar, ClockChangesAfterTheRecordedOnesFollowTheRule)
{
    EXPECT_EQ(berlin.startOf(Unit::day, date("2060-07-01T12:00:00+02:00")),
              date("2060-07-01T00:00:00+02:00"));
    EXPECT_EQ(berlin.adding(6, Unit::month, date("2060-01-01T00:00:00+01:00")),
              date("2060-07-01T00:00:00+02:00"));
}

TEST(Calendar, MonthsKeepTheDayOrTakeTheLast)
{
    EXPECT_EQ(utc.adding(-12, Unit::month, date("2024-03-31T10:20:30Z")),
              date("2023-03-31T10:20:30Z"));
    EXPECT_EQ(utc.adding(-1, Unit::month, date("2024-03-31T10:20:30Z")),
              date("2024-02-29T10:20:30Z"));
    EXPECT_EQ(utc.adding(-12, Unit::month, date("2024-02-29T10:20:30Z")),
              date("2023-02-28T10:20:30Z"));
    EXPECT_EQ(utc.adding(-1, Unit::month, date("2024-01-31T00:00:00Z")),
              date("2023-12-31T00:00:00Z"));
    EXPECT_EQ(utc.adding(1, Unit::day, date("2024-02-28T00:00:00Z")), date("2024-02-29T00:00:00Z"));
    EXPECT_EQ(utc.adding(1, Unit::day, date("2023-02-28T00:00:00Z")), date("2023-03-01T00:00:00Z"));
}

TEST(Calendar, AddingKeepsTheFractionOfASecond)
{
    for (const Unit unit : {Unit::hour, Unit::day, Unit::week, Unit::month})
        EXPECT_EQ(utc.adding(0, unit, Date{-0.125}), Date{-0.125});
    EXPECT_EQ(utc.adding(-12, Unit::month, Date{31'536'000.03125 + 86400}), Date{0.03125 + 86400});
}

TEST(Calendar, WhatNoCalendarCountsYieldsNoDateAndIsItsOwnStart)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double seconds : {1e300, -1e300, infinity, -infinity}) {
        for (const Unit unit : {Unit::hour, Unit::day, Unit::week, Unit::month}) {
            EXPECT_EQ(utc.startOf(unit, Date{seconds}), Date{seconds});
            EXPECT_FALSE(utc.adding(1, unit, Date{seconds}));
        }
        EXPECT_EQ(utc.label(Date{seconds}, u"HH:mm"), u""_s);
    }
    EXPECT_FALSE(utc.adding(std::numeric_limits<qint64>::min(), Unit::day, Date{0}));
    EXPECT_FALSE(utc.adding(-1'000'000'000, Unit::month, Date{0}));
    EXPECT_FALSE(utc.adding(-1'000'000'000, Unit::week, Date{0}));
}

TEST(Calendar, LabelsAreLocal)
{
    const Date now = date("2024-03-05T23:30:00Z");
    EXPECT_EQ(berlin.label(now, u"HH:mm"), u"00:30"_s);
    EXPECT_EQ(berlin.label(now, u"MMM d"), u"Mar 6"_s);
    EXPECT_EQ(calendarOf("America/New_York").label(now, u"MMM d HH:mm"), u"Mar 5 18:30"_s);
    EXPECT_EQ(berlin.label(now, u"MMM yy"), u"Mar 24"_s);
    const Calendar german(QTimeZone("UTC"), Qt::Monday, QLocale(QLocale::German));
    EXPECT_EQ(german.label(date("2024-10-05T00:00:00Z"), u"MMM d"), u"Okt. 5"_s);
}

TEST(Calendar, AnInvalidTimeZoneCountsAsUtc)
{
    EXPECT_EQ(calendarOf("Nowhere/Atall").startOf(Unit::day, date("2024-03-05T23:30:00Z")),
              date("2024-03-05T00:00:00Z"));
}

TEST(Calendar, TheSystemsCalendarBeginsWeeksAsItsLocaleDoes)
{
    const Date start = Calendar::current().startOf(Unit::week, date("2024-03-07T12:00:00Z"));
    EXPECT_EQ(QDateTime::fromSecsSinceEpoch(qint64(start.unixTime())).date().dayOfWeek(),
              QLocale::system().firstDayOfWeek());
}

TEST(Calendar, MediumDatesFollowTheLocale)
{
    const auto inLocale = [](const char *name) {
        const Calendar calendar{QTimeZone("Europe/Berlin"), Qt::Monday,
                                QLocale(QString::fromLatin1(name))};
        return calendar.mediumDate(date("2026-11-13T23:30:00Z"));
    };
    EXPECT_EQ(inLocale("en_US"), u"Nov 14, 2026"_s);
    EXPECT_EQ(inLocale("en_GB"), u"14 Nov 2026"_s);
    EXPECT_EQ(inLocale("de_DE"), u"14. Nov. 2026"_s);
    EXPECT_EQ(inLocale("es_ES"), u"14 de nov de 2026"_s);
    EXPECT_EQ(inLocale("hu_HU"), u"2026. nov. 14."_s);
    EXPECT_EQ(inLocale("ja_JP"), u"2026年11月14日"_s);
    EXPECT_EQ(inLocale("C"), u"14 Nov 2026"_s);
}

TEST(CalendarTest, MonthAndDayFollowTheLocale)
{
    const auto inLocale = [](const char *name) {
        const Calendar calendar{QTimeZone("Europe/Berlin"), Qt::Monday,
                                QLocale(QString::fromLatin1(name))};
        return calendar.monthAndDay(date("2026-03-14T23:30:00Z"));
    };
    EXPECT_EQ(inLocale("en_US"), u"Mar 15"_s);
    EXPECT_EQ(inLocale("en_GB"), u"15 Mar"_s);
    EXPECT_EQ(inLocale("de_DE"), u"15. März"_s);
    EXPECT_EQ(inLocale("nds_DE"), u"15. März"_s);
    EXPECT_EQ(inLocale("es_ES"), u"15 de mar"_s);
    EXPECT_EQ(inLocale("hu_HU"), u"márc. 15."_s);
    EXPECT_EQ(inLocale("lv_LV"), u"15. marts"_s);
    EXPECT_EQ(inLocale("lt_LT"), u"kov. 15"_s);
    EXPECT_EQ(inLocale("ja_JP"), u"3月15日"_s);
    EXPECT_EQ(inLocale("ko_KR"), u"3월 15일"_s);
    EXPECT_EQ(inLocale("fa_IR"), u"۱۵ مارس"_s);
    EXPECT_EQ(inLocale("C"), u"15 Mar"_s);
    EXPECT_EQ(inLocale("eu_ES"), u"mar.ren 15"_s);
}

TEST(CalendarTest, InEveryLocaleMonthAndDayTellThemApart)
{
    const Date first = date("2026-03-15T12:00:00Z");
    const auto locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
    for (const QLocale &locale : locales) {
        const Calendar calendar{QTimeZone::utc(), Qt::Monday, locale};
        const QString label = calendar.monthAndDay(first);
        for (const char *other : {"2026-03-16T12:00:00Z", "2026-04-15T12:00:00Z"})
            EXPECT_NE(label, calendar.monthAndDay(date(other))) << locale.name().toStdString();
        EXPECT_EQ(label, calendar.monthAndDay(date("2027-03-15T12:00:00Z")))
            << locale.name().toStdString();
    }
}

} // namespace
} // namespace kestrova
