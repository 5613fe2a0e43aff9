#include "Models/UsageEventsJson.h"

#include "Models/JsonCursor.h"

#include <array>
#include <cctype>
#include <charconv>
#include <limits>
#include <string>
#include <unordered_map>

namespace kestrova {

namespace {

constexpr std::string_view idKey = "id";
constexpr std::string_view timestampKey = "timestamp";
constexpr std::string_view slotIndexKey = "slotIndex";
constexpr std::string_view targetBundleIdentifierKey = "targetBundleIdentifier";
constexpr std::string_view targetAppNameKey = "targetAppName";
constexpr std::string_view wordCountKey = "wordCount";
constexpr std::string_view durationMinutesKey = "durationMinutes";

constexpr std::string_view uuidForm = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX";

/// One QString per name, however many events carry it.
class Names
{
public:
    QString named(std::string_view utf8)
    {
        const auto found = m_names.find(utf8);
        if (found != m_names.end())
            return found->second;
        return m_names.emplace(utf8, QString::fromUtf8(utf8)).first->second;
    }

private:
    struct Hash : std::hash<std::string_view>
    {
        using is_transparent = void;
    };
    std::unordered_map<std::string, QString, Hash, std::equal_to<>> m_names;
};

class EventReader
{
public:
    explicit EventReader(const QByteArray &document) : m_json(document) {}

    QList<UsageEvent> readAll()
    {
        QList<UsageEvent> events;
        m_json.readArray([&] { events.append(readEvent()); });
        m_json.expectEnd();
        return events;
    }

private:
    UsageEvent readEvent();
    QUuid readUuid();
    int readSlotIndex();

    template <typename Read>
    auto readUnlessNull(Read read) -> std::optional<decltype(read())>
    {
        return m_json.readNull() ? std::nullopt : std::optional(read());
    }

    JsonCursor m_json;
    Names m_names;
};

UsageEvent EventReader::readEvent()
{
    UsageEvent event;
    bool hasId = false;
    bool hasTimestamp = false;
    bool hasWordCount = false;
    bool hasDurationMinutes = false;
    const auto readName = [this] { return m_names.named(m_json.readString()); };
    m_json.readObject([&](std::string_view key) {
        if (key == idKey) {
            event.id = readUuid();
            hasId = true;
        } else if (key == timestampKey) {
            event.timestamp = {m_json.readNumber()};
            hasTimestamp = true;
        } else if (key == slotIndexKey) {
            event.slotIndex = readUnlessNull([this] { return readSlotIndex(); });
        } else if (key == targetBundleIdentifierKey) {
            event.targetBundleIdentifier = readUnlessNull(readName);
        } else if (key == targetAppNameKey) {
            event.targetAppName = readUnlessNull(readName);
        } else if (key == wordCountKey) {
            event.wordCount = m_json.readWholeNumber();
            hasWordCount = true;
        } else if (key == durationMinutesKey) {
            event.durationMinutes = m_json.readNumber();
            hasDurationMinutes = true;
        } else {
            m_json.skipValue();
        }
    });
    if (!hasId || !hasTimestamp || !hasWordCount || !hasDurationMinutes)
        m_json.fail("lacks a key of an event");
    return event;
}

QUuid EventReader::readUuid()
{
    // QUuid would also take braces, and a null UUID for damage.
    const std::string_view text = m_json.readString();
    bool isCanonical = text.size() == uuidForm.size();
    for (std::size_t i = 0; isCanonical && i < text.size(); ++i) {
        isCanonical = uuidForm[i] == '-' ? text[i] == '-'
                                         : std::isxdigit(static_cast<unsigned char>(text[i])) != 0;
    }
    if (!isCanonical)
        m_json.fail("has a damaged UUID");
    return QUuid::fromString(QLatin1String(text.data(), qsizetype(text.size())));
}

int EventReader::readSlotIndex()
{
    const qint64 number = m_json.readWholeNumber();
    if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
        m_json.fail("has a slot number out of range");
    return int(number);
}

void append(std::string_view text, QByteArray &document)
{
    document.append(text.data(), qsizetype(text.size()));
}

void appendKey(std::string_view key, QByteArray &document)
{
    document.append(document.endsWith('{') ? "\"" : ",\"");
    append(key, document);
    document.append("\":");
}

/// The shortest text that reads as the same number.
template <typename Number>
void appendNumber(Number number, QByteArray &document)
{
    std::array<char, 32> text;
    const auto result = std::to_chars(text.begin(), text.end(), number);
    append({text.begin(), result.ptr}, document);
}

void appendString(const QString &text, QByteArray &document)
{
    constexpr auto hexDigits = "0123456789abcdef";
    document.append('"');
    for (const char character : text.toUtf8()) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x20) {
            document.append("\\u00").append(hexDigits[code >> 4]).append(hexDigits[code & 15]);
            continue;
        }
        if (character == '"' || character == '\\')
            document.append('\\');
        document.append(character);
    }
    document.append('"');
}

} // namespace

QList<UsageEvent> usageEventsFromJson(const QByteArray &document)
{
    return EventReader(document).readAll();
}

void appendJson(const UsageEvent &event, QByteArray &document)
{
    document.append('{');
    appendKey(idKey, document);
    document.append('"').append(event.id.toByteArray(QUuid::WithoutBraces).toUpper()).append('"');
    appendKey(timestampKey, document);
    appendNumber(event.timestamp.secondsSinceReferenceDate, document);
    if (event.slotIndex) {
        appendKey(slotIndexKey, document);
        appendNumber(*event.slotIndex, document);
    }
    if (event.targetBundleIdentifier) {
        appendKey(targetBundleIdentifierKey, document);
        appendString(*event.targetBundleIdentifier, document);
    }
    if (event.targetAppName) {
        appendKey(targetAppNameKey, document);
        appendString(*event.targetAppName, document);
    }
    appendKey(wordCountKey, document);
    appendNumber(event.wordCount, document);
    appendKey(durationMinutesKey, document);
    appendNumber(event.durationMinutes, document);
    document.append('}');
}

} // namespace kestrova
