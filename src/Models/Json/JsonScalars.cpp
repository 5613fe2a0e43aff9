#include "Models/Json/JsonScalars.h"

#include <QStringDecoder>

#include <charconv>
#include <cmath>

namespace kestrova {

namespace {

template <typename Number>
std::optional<Number> parsed(std::string_view text)
{
    Number number = 0;
    const auto result = std::from_chars(text.begin(), text.end(), number);
    if (result.ec != std::errc() || result.ptr != text.end())
        return std::nullopt;
    return number;
}

} // namespace

QString textFromJson(std::string_view utf8)
{
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decode(QByteArrayView(utf8.data(), qsizetype(utf8.size())));
}

std::optional<double> doubleFromJson(std::string_view number)
{
    return parsed<double>(number);
}

std::optional<qint64> wholeNumberFromJson(std::string_view number)
{
    if (const auto whole = parsed<qint64>(number))
        return whole;
    constexpr double limit = 0x1p63;
    const auto value = parsed<double>(number);
    if (!value || *value != std::floor(*value) || *value < -limit || *value >= limit)
        return std::nullopt;
    return qint64(*value);
}

} // namespace kestrova
