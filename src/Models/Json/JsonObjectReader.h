#pragma once

#include "Models/Json/JsonDecodingError.h"

#include <QJsonArray>
#include <QJsonObject>

#include <optional>

namespace kestrova {

/// Parses a document whose root is an object; throws JsonDecodingError otherwise, and for all that
/// parseJson() refuses. Of a repeated key the last counts.
QJsonObject parseJsonObject(const QByteArray &bytes);

/// A string's text as JSON can hold it: half a character (a surrogate on its own) is replaced.
QString jsonText(const QString &text);

/// Strict access to the values of one JSON object. The plain accessors throw JsonDecodingError for
/// a missing key or a wrong type; the optional ones treat a missing key and null alike as none.
/// Numbers must be whole and in range. Unknown keys are never looked at.
class JsonObjectReader
{
public:
    explicit JsonObjectReader(const QJsonObject &object) : m_object(object) {}

    QString string(QLatin1String key) const;
    QJsonObject object(QLatin1String key) const;
    qint64 int64(QLatin1String key) const;
    quint32 uint32(QLatin1String key) const;

    std::optional<QString> optionalString(QLatin1String key) const;
    std::optional<QJsonObject> optionalObject(QLatin1String key) const;
    std::optional<QJsonArray> optionalArray(QLatin1String key) const;

private:
    QJsonValue required(QLatin1String key) const;
    std::optional<QJsonValue> present(QLatin1String key) const;

    QJsonObject m_object;
};

} // namespace kestrova
