#pragma once

#include <QByteArray>
#include <QString>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string_view>

namespace kestrova {

/// Writes one JSON object, compact, in UTF-8, with its members in the order of the calls.
class JsonObjectWriter
{
public:
    JsonObjectWriter();

    /// Half a character (a surrogate on its own) is replaced.
    void string(std::string_view key, const QString &text);
    void number(std::string_view key, qint64 number);
    /// A finite number, in the shortest text that reads as the same number.
    void number(std::string_view key, double number);

    /// Ends the object and appends it; the writer is of no more use.
    void appendTo(QByteArray &document);

private:
    void key(std::string_view key);

    rapidjson::StringBuffer m_buffer;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer{m_buffer};
};

} // namespace kestrova
