#pragma once

#include <QtGlobal>

#include <optional>
#include <string_view>

namespace kestrova {

/// The double nearest to a JSON number; none if there is none near it.
std::optional<double> doubleFromJson(std::string_view number);

/// The value of a JSON number that is exactly a 64-bit integer, however it is written.
std::optional<qint64> wholeNumberFromJson(std::string_view number);

} // namespace kestrova
