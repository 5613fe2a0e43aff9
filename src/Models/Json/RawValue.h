#pragma once

#include <QString>

#include <array>
#include <optional>
#include <utility>

namespace kestrova {

/// Specialised for each enumeration that is stored or shown by name:
/// `static constexpr std::array table{std::pair{E::first, "first"}, ...}` in declaration order.
template <typename E>
struct RawValues;

/// The stored name of an enumeration's case.
template <typename E>
QString rawValue(E value)
{
    for (const auto &[candidate, name] : RawValues<E>::table) {
        if (candidate == value)
            return QString::fromLatin1(name);
    }
    Q_UNREACHABLE();
}

/// The case with exactly this name (case-sensitive), or none.
template <typename E>
std::optional<E> fromRawValue(const QString &raw)
{
    for (const auto &[candidate, name] : RawValues<E>::table) {
        if (raw == QLatin1String(name))
            return candidate;
    }
    return std::nullopt;
}

/// Every case, in declaration order.
template <typename E>
constexpr auto allCases()
{
    std::array<E, RawValues<E>::table.size()> cases{};
    for (std::size_t i = 0; i < cases.size(); ++i)
        cases[i] = RawValues<E>::table[i].first;
    return cases;
}

} // namespace kestrova
