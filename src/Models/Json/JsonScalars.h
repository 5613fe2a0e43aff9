#pragma once

#include <QString>

#include <optional>
#include <string_view>

namespace kestrova {

/// A text that parseJson() has told, whole: QString::fromUtf8() would drop a U+FEFF in front.
QString textFromJson(std::string_view utf8);

/// The double nearest to a JSON number; none if there is none near it.
std::optional<double> doubleFromJson(std::string_view number);

/// The value of a JSON number that is exactly a 64-bit integer, however it is written.
std::optional<qint64> wholeNumberFromJson(std::string_view number);

} // namespace kestrova
