#pragma once

#include "Models/Json/JsonDecodingError.h"

#include <QByteArray>

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <string_view>

namespace kestrova {

/// Far beyond any document of ours, far below what the stack holds: RapidJSON calls itself for each
/// level.
constexpr int deepestJsonNesting = 512;

/// Translates RapidJSON's events for a handler of parseJson().
template <typename Handler>
class JsonEvents : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, JsonEvents<Handler>>
{
public:
    using Stream = rapidjson::InsituStringStream;

    JsonEvents(const char *document, Stream &stream, Handler &handler)
        : m_document(document), m_stream(stream), m_handler(handler)
    {
    }

    bool Null()
    {
        m_handler.null();
        return true;
    }

    bool Bool(bool value)
    {
        m_handler.boolean(value);
        return true;
    }

    bool RawNumber(const char *text, rapidjson::SizeType size, bool)
    {
        m_handler.number({text, size});
        return true;
    }

    bool String(const char *text, rapidjson::SizeType size, bool)
    {
        m_handler.string(validText(text, size));
        return true;
    }

    bool Key(const char *text, rapidjson::SizeType size, bool)
    {
        m_handler.key(validText(text, size));
        return true;
    }

    bool StartObject()
    {
        enter();
        m_handler.beginObject(position() - 1);
        return true;
    }

    bool EndObject(rapidjson::SizeType)
    {
        --m_depth;
        m_handler.endObject(position());
        return true;
    }

    bool StartArray()
    {
        enter();
        m_handler.beginArray();
        return true;
    }

    bool EndArray(rapidjson::SizeType)
    {
        --m_depth;
        m_handler.endArray();
        return true;
    }

private:
    const char *position() const { return m_document + m_stream.Tell(); }

    void enter()
    {
        if (++m_depth > deepestJsonNesting)
            throw JsonDecodingError(QStringLiteral("The document is nested too deeply."));
    }

    // RapidJSON 1.1.0 lets an escaped low surrogate on its own pass, and encodes it as three bytes
    // from ED A0 on. Nothing else that it lets pass has them.
    static std::string_view validText(const char *utf8, std::size_t size)
    {
        const std::string_view text(utf8, size);
        for (auto at = text.find('\xED'); at != text.npos; at = text.find('\xED', at + 1)) {
            if (static_cast<unsigned char>(text[at + 1]) >= 0xA0)
                throw JsonDecodingError(QStringLiteral("A text has half a character."));
        }
        return text;
    }

    const char *const m_document;
    Stream &m_stream;
    Handler &m_handler;
    int m_depth = 0;
};

/// Parses one JSON document (RFC 8259, UTF-8, a byte order mark is passed over) from front to back
/// without a tree of it. In the document's order the handler's operations are called:
///
///     beginObject(const char *begin), key(std::string_view), endObject(const char *end),
///     beginArray(), endArray(), string(std::string_view), number(std::string_view),
///     boolean(bool), null()
///
/// begin and end point into the document, at the brace and behind it. Keys and strings come
/// without escapes, in UTF-8, numbers as they are written; each lives until the operation returns.
/// Repeated keys come as often as they stand there.
///
/// Throws JsonDecodingError for all that is no JSON, for more than deepestJsonNesting levels and
/// for a number beyond 1e308. What the handler throws passes through. Needs as much memory again as
/// the document, until it returns.
template <typename Handler>
void parseJson(const QByteArray &document, Handler &handler)
{
    constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    const qsizetype begin = document.startsWith(byteOrderMark) ? byteOrderMark.size() : 0;

    // In place, strings and numbers need no copy each: a fifth less time than parsing the document
    // itself. std::from_chars() reads the numbers sooner than RapidJSON, and exactly.
    constexpr unsigned flags = rapidjson::kParseInsituFlag | rapidjson::kParseValidateEncodingFlag |
                               rapidjson::kParseNumbersAsStringsFlag;
    QByteArray scratch(document.constData() + begin, document.size() - begin);
    rapidjson::InsituStringStream stream(scratch.data());
    JsonEvents<Handler> events(document.constData() + begin, stream, handler);
    rapidjson::Reader reader;
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, events);
    if (result.IsError()) {
        throw JsonDecodingError(QStringLiteral("%1 (Byte %2.)")
                                    .arg(QLatin1String(rapidjson::GetParseError_En(result.Code())))
                                    .arg(begin + qsizetype(result.Offset())));
    }
    // It takes a zero byte for the end.
    if (qsizetype(stream.Tell()) != scratch.size())
        throw JsonDecodingError(QStringLiteral("The document goes on behind its end."));
}

} // namespace kestrova
