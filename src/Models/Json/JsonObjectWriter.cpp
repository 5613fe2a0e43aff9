#include "Models/Json/JsonObjectWriter.h"

#include <array>
#include <charconv>

namespace kestrova {

JsonObjectWriter::JsonObjectWriter()
{
    m_writer.StartObject();
}

void JsonObjectWriter::key(std::string_view key)
{
    m_writer.Key(key.data(), rapidjson::SizeType(key.size()));
}

void JsonObjectWriter::string(std::string_view key, const QString &text)
{
    this->key(key);
    const QByteArray utf8 = text.toUtf8();
    m_writer.String(utf8.constData(), rapidjson::SizeType(utf8.size()));
}

void JsonObjectWriter::number(std::string_view key, qint64 number)
{
    this->key(key);
    m_writer.Int64(number);
}

void JsonObjectWriter::number(std::string_view key, double number)
{
    // RapidJSON's own text is not always the shortest, and has a fraction for whole numbers.
    std::array<char, 32> text;
    const auto result = std::to_chars(text.begin(), text.end(), number);
    this->key(key);
    m_writer.RawValue(text.data(), std::size_t(result.ptr - text.data()), rapidjson::kNumberType);
}

void JsonObjectWriter::appendTo(QByteArray &document)
{
    m_writer.EndObject();
    document.append(m_buffer.GetString(), qsizetype(m_buffer.GetSize()));
}

} // namespace kestrova
