#include "Models/Usage/UsageEventsJson.h"

#include "Models/Json/JsonCursor.h"

#include <array>
#include <cctype>
#include <charconv>
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

/// An event with two names of middling length fits.
constexpr std::size_t usualEventSize = 320;

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

    template <typename Take>
    void readAll(Take take)
    {
        m_json.readArray([&] {
            UsageEvent event;
            const QByteArrayView text = m_json.textOf([&] { event = readEvent(); });
            take(event, text);
        });
        m_json.expectEnd();
    }

private:
    UsageEvent readEvent();
    QUuid readUuid();

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
            event.slotIndex = readUnlessNull([this] { return m_json.readWholeNumber(); });
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

void appendKey(std::string_view key, std::string &json)
{
    json += json.ends_with('{') ? "\"" : ",\"";
    json += key;
    json += "\":";
}

/// The shortest text that reads as the same number.
template <typename Number>
void appendNumber(Number number, std::string &json)
{
    std::array<char, 32> text;
    const auto result = std::to_chars(text.begin(), text.end(), number);
    json.append(text.begin(), result.ptr);
}

void appendString(const QString &text, std::string &json)
{
    constexpr auto hexDigits = "0123456789abcdef";
    json += '"';
    for (const char character : text.toUtf8()) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x20) {
            json += "\\u00";
            json += hexDigits[code >> 4];
            json += hexDigits[code & 15];
            continue;
        }
        if (character == '"' || character == '\\')
            json += '\\';
        json += character;
    }
    json += '"';
}

} // namespace

QList<UsageEvent> usageEventsFromJson(const QByteArray &document)
{
    QList<UsageEvent> events;
    readUsageEvents(document,
                    [&](const UsageEvent &event, QByteArrayView) { events.append(event); });
    return events;
}

void readUsageEvents(const QByteArray &document,
                     const std::function<void(const UsageEvent &, QByteArrayView text)> &take)
{
    EventReader(document).readAll(take);
}

void appendJson(const UsageEvent &event, QByteArray &document)
{
    // Putting it together in a std::string takes two thirds of the time that QByteArray takes.
    std::string json = "{";
    json.reserve(usualEventSize);
    appendKey(idKey, json);
    json += '"';
    json += std::string_view(event.id.toByteArray(QUuid::WithoutBraces).toUpper());
    json += '"';
    appendKey(timestampKey, json);
    appendNumber(event.timestamp.secondsSinceReferenceDate, json);
    if (event.slotIndex) {
        appendKey(slotIndexKey, json);
        appendNumber(*event.slotIndex, json);
    }
    if (event.targetBundleIdentifier) {
        appendKey(targetBundleIdentifierKey, json);
        appendString(*event.targetBundleIdentifier, json);
    }
    if (event.targetAppName) {
        appendKey(targetAppNameKey, json);
        appendString(*event.targetAppName, json);
    }
    appendKey(wordCountKey, json);
    appendNumber(event.wordCount, json);
    appendKey(durationMinutesKey, json);
    appendNumber(event.durationMinutes, json);
    json += '}';
    document.append(json.data(), qsizetype(json.size()));
}

} // namespace kestrova
