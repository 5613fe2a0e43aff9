#include "Models/Usage/UsageEventsJson.h"

#include "Models/Json/JsonObjectWriter.h"
#include "Models/Json/JsonParsing.h"
#include "Models/Json/JsonScalars.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <string>
#include <unordered_map>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr std::string_view uuidForm = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX";

/// Of an event; other ends the list.
enum class Field {
    id,
    timestamp,
    slotIndex,
    targetBundleIdentifier,
    targetAppName,
    wordCount,
    durationMinutes,
    other
};

constexpr std::array<std::string_view, std::size_t(Field::other)> fieldNames{
    "id",        "timestamp",      "slotIndex", "targetBundleIdentifier", "targetAppName",
    "wordCount", "durationMinutes"};

constexpr std::string_view nameOf(Field field)
{
    return fieldNames[std::size_t(field)];
}

Field fieldNamed(std::string_view name)
{
    return Field(std::find(fieldNames.begin(), fieldNames.end(), name) - fieldNames.begin());
}

/// One QString per name, however many events carry it.
class Names
{
public:
    QString named(std::string_view utf8)
    {
        const auto found = m_names.find(utf8);
        if (found != m_names.end())
            return found->second;
        return m_names.emplace(utf8, textFromJson(utf8)).first->second;
    }

private:
    struct Hash : std::hash<std::string_view>
    {
        using is_transparent = void;
    };
    std::unordered_map<std::string, QString, Hash, std::equal_to<>> m_names;
};

bool isHexDigit(char character)
{
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'F') ||
           (character >= 'a' && character <= 'f');
}

/// QUuid would also take braces, and a null UUID for damage.
std::optional<QUuid> uuidFrom(std::string_view text)
{
    const auto fits = [](char character, char form) {
        return form == '-' ? character == '-' : isHexDigit(character);
    };
    if (!std::equal(text.begin(), text.end(), uuidForm.begin(), uuidForm.end(), fits))
        return std::nullopt;
    return QUuid::fromString(QLatin1String(text.data(), qsizetype(text.size())));
}

using TakeEvent = std::function<void(const UsageEvent &, QByteArrayView text)>;

/// Handler of parseJson() for the whole log.
class EventsHandler
{
public:
    explicit EventsHandler(const TakeEvent &take) : m_take(take) {}

    void beginObject(const char *begin);
    void key(std::string_view key);
    void endObject(const char *end);
    void beginArray();
    void endArray() { --m_depth; }
    void string(std::string_view text);
    void number(std::string_view text);
    void boolean(bool) { refuseUnlessIgnored(); }
    void null();

private:
    // What the innermost open container is; anything deeper is a value of an unknown key.
    enum Depth { outside, inLog, inEvent };

    bool isIgnored() const
    {
        return m_depth > inEvent || (m_depth == inEvent && m_field == Field::other);
    }
    void refuseUnlessIgnored() const;
    template <typename Value>
    Value need(const std::optional<Value> &value) const;
    [[noreturn]] void refuseValue() const;

    const TakeEvent &m_take;
    Names m_names;
    int m_depth = outside;
    UsageEvent m_event;
    const char *m_begin = nullptr;
    Field m_field = Field::other;
    std::bitset<fieldNames.size() + 1> m_given;
};

void EventsHandler::refuseValue() const
{
    if (m_depth < inEvent)
        throw JsonDecodingError(u"The document is not a list of events."_s);
    throw JsonDecodingError(u"An event has a wrong value of \"%1\"."_s.arg(
        QLatin1String(nameOf(m_field).data(), qsizetype(nameOf(m_field).size()))));
}

void EventsHandler::refuseUnlessIgnored() const
{
    if (!isIgnored())
        refuseValue();
}

template <typename Value>
Value EventsHandler::need(const std::optional<Value> &value) const
{
    if (!value)
        refuseValue();
    return *value;
}

void EventsHandler::beginObject(const char *begin)
{
    if (m_depth == inLog) {
        m_event = {};
        m_given.reset();
        m_begin = begin;
    } else {
        refuseUnlessIgnored();
    }
    ++m_depth;
}

void EventsHandler::key(std::string_view key)
{
    if (m_depth != inEvent)
        return;
    m_field = fieldNamed(key);
    m_given.set(std::size_t(m_field));
}

void EventsHandler::endObject(const char *end)
{
    --m_depth;
    if (m_depth != inLog)
        return;
    for (const Field field :
         {Field::id, Field::timestamp, Field::wordCount, Field::durationMinutes}) {
        if (!m_given.test(std::size_t(field)))
            throw JsonDecodingError(u"An event lacks a key."_s);
    }
    m_take(m_event, QByteArrayView(m_begin, end));
}

void EventsHandler::beginArray()
{
    if (m_depth != outside)
        refuseUnlessIgnored();
    ++m_depth;
}

void EventsHandler::string(std::string_view text)
{
    if (isIgnored())
        return;
    if (m_depth < inEvent)
        refuseValue();
    switch (m_field) {
    case Field::id:
        m_event.id = need(uuidFrom(text));
        break;
    case Field::targetBundleIdentifier:
        m_event.targetBundleIdentifier = m_names.named(text);
        break;
    case Field::targetAppName:
        m_event.targetAppName = m_names.named(text);
        break;
    default:
        refuseValue();
    }
}

void EventsHandler::number(std::string_view text)
{
    if (isIgnored())
        return;
    if (m_depth < inEvent)
        refuseValue();
    switch (m_field) {
    case Field::timestamp:
        m_event.timestamp = {need(doubleFromJson(text))};
        break;
    case Field::slotIndex:
        m_event.slotIndex = need(wholeNumberFromJson(text));
        break;
    case Field::wordCount:
        m_event.wordCount = need(wholeNumberFromJson(text));
        break;
    case Field::durationMinutes:
        m_event.durationMinutes = need(doubleFromJson(text));
        break;
    default:
        refuseValue();
    }
}

void EventsHandler::null()
{
    if (isIgnored())
        return;
    if (m_depth < inEvent)
        refuseValue();
    switch (m_field) {
    case Field::slotIndex:
        m_event.slotIndex.reset();
        break;
    case Field::targetBundleIdentifier:
        m_event.targetBundleIdentifier.reset();
        break;
    case Field::targetAppName:
        m_event.targetAppName.reset();
        break;
    default:
        refuseValue();
    }
}

} // namespace

QList<UsageEvent> usageEventsFromJson(const QByteArray &document)
{
    QList<UsageEvent> events;
    readUsageEvents(document,
                    [&](const UsageEvent &event, QByteArrayView) { events.append(event); });
    return events;
}

void readUsageEvents(const QByteArray &document, const TakeEvent &take)
{
    EventsHandler handler(take);
    parseJson(document, handler);
}

void appendJson(const UsageEvent &event, QByteArray &document)
{
    JsonObjectWriter object;
    object.string(nameOf(Field::id), event.id.toString(QUuid::WithoutBraces).toUpper());
    object.number(nameOf(Field::timestamp), event.timestamp.secondsSinceReferenceDate);
    if (event.slotIndex)
        object.number(nameOf(Field::slotIndex), *event.slotIndex);
    if (event.targetBundleIdentifier)
        object.string(nameOf(Field::targetBundleIdentifier), *event.targetBundleIdentifier);
    if (event.targetAppName)
        object.string(nameOf(Field::targetAppName), *event.targetAppName);
    object.number(nameOf(Field::wordCount), event.wordCount);
    object.number(nameOf(Field::durationMinutes), event.durationMinutes);
    object.appendTo(document);
}

} // namespace kestrova
