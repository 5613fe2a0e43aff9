#include "Models/Json/JsonCursor.h"

#include "Models/Json/JsonObjectReader.h"

#include <charconv>
#include <cmath>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// Far beyond any document of ours, far below what the stack holds.
constexpr int deepestNesting = 512;

/// Some editors put it in front; QJsonDocument passes over it, too.
constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

void appendUtf8(char32_t codePoint, std::string &text)
{
    const QByteArray utf8 = QString::fromUcs4(&codePoint, 1).toUtf8();
    text.append(utf8.constData(), std::size_t(utf8.size()));
}

} // namespace

JsonCursor::JsonCursor(const QByteArray &document)
    : m_begin(document.constData()), m_next(m_begin), m_end(m_begin + document.size())
{
    if (!document.isValidUtf8())
        fail("is not UTF-8");
    if (document.startsWith(byteOrderMark))
        m_next += byteOrderMark.size();
}

void JsonCursor::fail(const char *problem) const
{
    throw JsonDecodingError(u"The document %1 near byte %2."_s.arg(QLatin1String(problem))
                                .arg(qsizetype(m_next - m_begin)));
}

void JsonCursor::skipWhiteSpace()
{
    while (m_next != m_end &&
           (*m_next == ' ' || *m_next == '\n' || *m_next == '\r' || *m_next == '\t'))
        ++m_next;
}

char JsonCursor::peek()
{
    skipWhiteSpace();
    if (m_next == m_end)
        fail("ends too early");
    return *m_next;
}

bool JsonCursor::take(char character)
{
    if (peek() != character)
        return false;
    ++m_next;
    return true;
}

bool JsonCursor::takeWord(std::string_view word)
{
    skipWhiteSpace();
    if (!std::string_view(m_next, std::size_t(m_end - m_next)).starts_with(word))
        return false;
    m_next += word.size();
    return true;
}

void JsonCursor::expect(char character)
{
    if (!take(character))
        fail("has an unexpected character");
}

void JsonCursor::enter(char bracket)
{
    expect(bracket);
    if (++m_depth > deepestNesting)
        fail("is nested too deeply");
}

void JsonCursor::expectEnd()
{
    skipWhiteSpace();
    if (m_next != m_end)
        fail("does not end");
}

const char *JsonCursor::endOfPlainText() const
{
    const char *at = m_next;
    while (at != m_end && *at != '"' && *at != '\\' && static_cast<unsigned char>(*at) >= 0x20)
        ++at;
    return at;
}

std::string_view JsonCursor::readString()
{
    expect('"');
    const char *const begin = m_next;
    m_next = endOfPlainText();
    if (m_next != m_end && *m_next == '"')
        return {begin, std::size_t(m_next++ - begin)};

    m_unescaped.assign(begin, m_next);
    while (m_next != m_end && *m_next == '\\') {
        appendEscape();
        const char *const end = endOfPlainText();
        m_unescaped.append(m_next, end);
        m_next = end;
    }
    if (m_next == m_end || *m_next != '"')
        fail("has an unfinished string");
    ++m_next;
    return m_unescaped;
}

void JsonCursor::appendEscape()
{
    constexpr std::string_view letters = "\"\\/bfnrt";
    constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    ++m_next;
    if (m_next == m_end)
        fail("ends too early");
    const char letter = *m_next++;
    if (letter == 'u')
        return appendUtf8(readCodePoint(), m_unescaped);
    const auto index = letters.find(letter);
    if (index == std::string_view::npos)
        fail("has an unknown escape");
    m_unescaped += meanings[index];
}

char32_t JsonCursor::readCodeUnit()
{
    constexpr int digits = 4;
    unsigned unit = 0;
    if (m_end - m_next < digits ||
        std::from_chars(m_next, m_next + digits, unit, 16).ptr != m_next + digits)
        fail("has a damaged escape");
    m_next += digits;
    return char32_t(unit);
}

char32_t JsonCursor::readCodePoint()
{
    const char32_t first = readCodeUnit();
    if (!QChar::isSurrogate(first))
        return first;
    if (QChar::isLowSurrogate(first) || !std::string_view(m_next, m_end).starts_with("\\u"))
        fail("has half a character");
    m_next += 2;
    const char32_t second = readCodeUnit();
    if (!QChar::isLowSurrogate(second))
        fail("has half a character");
    return QChar::surrogateToUcs4(char16_t(first), char16_t(second));
}

const char *JsonCursor::skipDigits(const char *at) const
{
    while (at != m_end && isDigit(*at))
        ++at;
    return at;
}

std::string_view JsonCursor::readNumberText()
{
    skipWhiteSpace();
    const char *const begin = m_next;
    const auto failIfNoDigitAt = [this](const char *at) {
        if (at == m_end || !isDigit(*at))
            fail("has no number where one must be");
    };
    const char *at = begin + (begin != m_end && *begin == '-');
    failIfNoDigitAt(at);
    at = *at == '0' ? at + 1 : skipDigits(at);
    if (at != m_end && *at == '.') {
        failIfNoDigitAt(++at);
        at = skipDigits(at);
    }
    if (at != m_end && (*at == 'e' || *at == 'E')) {
        ++at;
        at += at != m_end && (*at == '+' || *at == '-');
        failIfNoDigitAt(at);
        at = skipDigits(at);
    }
    m_next = at;
    return {begin, at};
}

double JsonCursor::readNumber()
{
    const std::string_view text = readNumberText();
    double number = 0;
    if (std::from_chars(text.begin(), text.end(), number).ec != std::errc())
        fail("has a number out of range");
    return number;
}

qint64 JsonCursor::readWholeNumber()
{
    const char *const begin = m_next;
    const std::string_view text = readNumberText();
    qint64 whole = 0;
    if (const auto result = std::from_chars(text.begin(), text.end(), whole);
        result.ec == std::errc() && result.ptr == text.end())
        return whole;

    m_next = begin;
    const double number = readNumber();
    constexpr double limit = 0x1p63;
    if (number != std::floor(number) || number < -limit || number >= limit)
        fail("has a number that is not whole or out of range");
    return qint64(number);
}

bool JsonCursor::readNull()
{
    return takeWord("null");
}

void JsonCursor::skipValue()
{
    switch (peek()) {
    case '{':
        return readObject([this](std::string_view) { skipValue(); });
    case '[':
        return readArray([this] { skipValue(); });
    case '"':
        readString();
        return;
    default:
        if (!takeWord("true") && !takeWord("false") && !readNull())
            readNumberText();
    }
}

} // namespace kestrova
