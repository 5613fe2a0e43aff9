#pragma once

// Before the standard headers: moc does not get over <compare> otherwise.
#include <QtGlobal>

#include <compare>

namespace kestrova {

/// A moment in time, in the form in which documents store it.
struct Date
{
    double secondsSinceReferenceDate = 0; ///< since 2001-01-01 00:00:00 UTC; may be negative

    /// The reference date in seconds since 1970-01-01 00:00:00 UTC.
    static constexpr double referenceDateInUnixTime = 978'307'200.0;

    static constexpr Date fromUnixTime(double seconds)
    {
        return {seconds - referenceDateInUnixTime};
    }
    constexpr double unixTime() const
    {
        return secondsSinceReferenceDate + referenceDateInUnixTime;
    }

    auto operator<=>(const Date &) const = default;
};

} // namespace kestrova
