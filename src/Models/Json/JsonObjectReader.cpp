#include "Models/Json/JsonObjectReader.h"

#include "Models/Json/JsonTree.h"

#include <limits>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void failAt(QLatin1String key, QLatin1String problem)
{
    throw JsonDecodingError(u"The value of \""_s + key + u"\" "_s + problem + u"."_s);
}

QString stringOf(const QJsonValue &value, QLatin1String key)
{
    if (!value.isString())
        failAt(key, "is not a string"_L1);
    return value.toString();
}

QJsonObject objectOf(const QJsonValue &value, QLatin1String key)
{
    if (!value.isObject())
        failAt(key, "is not an object"_L1);
    return value.toObject();
}

qint64 wholeNumberOf(const QJsonValue &value, QLatin1String key)
{
    // toInteger() answers with its default for anything that is not exactly a 64-bit integer.
    const qint64 number = value.toInteger(0);
    if (number == 0 && value.toInteger(1) != 0)
        failAt(key, "is not a whole number"_L1);
    return number;
}

} // namespace

QJsonObject parseJsonObject(const QByteArray &bytes)
{
    const QJsonValue root = jsonTree(bytes);
    if (!root.isObject())
        throw JsonDecodingError(u"The document is not an object."_s);
    return root.toObject();
}

QString jsonText(const QString &text)
{
    return text.isValidUtf16() ? text : QString::fromUtf8(text.toUtf8());
}

QJsonValue JsonObjectReader::required(QLatin1String key) const
{
    const QJsonValue value = m_object.value(key);
    if (value.isUndefined())
        failAt(key, "is missing"_L1);
    return value;
}

std::optional<QJsonValue> JsonObjectReader::present(QLatin1String key) const
{
    const QJsonValue value = m_object.value(key);
    if (value.isUndefined() || value.isNull())
        return std::nullopt;
    return value;
}

QString JsonObjectReader::string(QLatin1String key) const
{
    return stringOf(required(key), key);
}

QJsonObject JsonObjectReader::object(QLatin1String key) const
{
    return objectOf(required(key), key);
}

qint64 JsonObjectReader::int64(QLatin1String key) const
{
    return wholeNumberOf(required(key), key);
}

quint32 JsonObjectReader::uint32(QLatin1String key) const
{
    const qint64 number = int64(key);
    if (number < 0 || number > std::numeric_limits<quint32>::max())
        failAt(key, "is out of range"_L1);
    return quint32(number);
}

std::optional<QString> JsonObjectReader::optionalString(QLatin1String key) const
{
    const auto value = present(key);
    return value ? std::optional(stringOf(*value, key)) : std::nullopt;
}

std::optional<QJsonObject> JsonObjectReader::optionalObject(QLatin1String key) const
{
    const auto value = present(key);
    return value ? std::optional(objectOf(*value, key)) : std::nullopt;
}

std::optional<QJsonArray> JsonObjectReader::optionalArray(QLatin1String key) const
{
    const auto value = present(key);
    if (value && !value->isArray())
        failAt(key, "is not an array"_L1);
    return value ? std::optional(value->toArray()) : std::nullopt;
}

} // namespace kestrova
