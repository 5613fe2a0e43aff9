#include "Models/Settings/AppSettings.h"

#include "Models/Json/JsonObjectReader.h"

#include <QHash>
#include <QJsonDocument>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1String shortcutKey("shortcut");
constexpr QLatin1String whisperCLIPathKey("whisperCLIPath");
constexpr QLatin1String modelDownloadURLKey("modelDownloadURL");
constexpr QLatin1String modelSHA256Key("modelSHA256");
constexpr QLatin1String transcriptionLanguageKey("transcriptionLanguage");
constexpr QLatin1String decodingProfileKey("decodingProfile");
constexpr QLatin1String themeKey("theme");
constexpr QLatin1String hotbarAssignmentsKey("hotbarAssignments");

HotbarSlotAssignment emptySlot(qint64 slotIndex)
{
    HotbarSlotAssignment slot;
    slot.slotIndex = slotIndex;
    return slot;
}

std::optional<QString> noneIfEmpty(const std::optional<QString> &text)
{
    return text && text->isEmpty() ? std::nullopt : text;
}

template <typename E>
E optionalCase(const JsonObjectReader &reader, QLatin1String key, E fallback)
{
    const auto raw = reader.optionalString(key);
    if (!raw)
        return fallback;
    const auto value = fromRawValue<E>(*raw);
    if (!value)
        throw JsonDecodingError(u"\""_s + *raw + u"\" is no value of \""_s + key + u"\"."_s);
    return *value;
}

QList<HotbarSlotAssignment> slotsOf(const QJsonArray &array)
{
    QList<HotbarSlotAssignment> assignments;
    for (const QJsonValue entry : array) {
        if (!entry.isObject())
            throw JsonDecodingError(u"A hotbar slot is not an object."_s);
        assignments.append(HotbarSlotAssignment::fromJson(entry.toObject()));
    }
    return assignments;
}

} // namespace

const AppSettings &AppSettings::defaults()
{
    static const AppSettings settings{
        .shortcut = HotkeyShortcut::defaultMain(),
        .whisperCLIPath = u"/opt/homebrew/bin/whisper-cli"_s,
        .modelDownloadURL =
            u"https://huggingface.co/ggerganov/whisper.cpp/resolve/main/ggml-base.bin"_s,
        .modelSHA256 = u""_s,
        .transcriptionLanguage = u"auto"_s,
        .decodingProfile = WhisperDecodingProfile::balanced,
        .theme = AppTheme::light,
        .hotbarAssignments = defaultHotbarAssignments(),
    };
    return settings;
}

QList<HotbarSlotAssignment> AppSettings::defaultHotbarAssignments()
{
    return normalizedHotbarAssignments({});
}

QList<HotbarSlotAssignment>
AppSettings::normalizedHotbarAssignments(const QList<HotbarSlotAssignment> &assignments)
{
    QHash<qint64, HotbarSlotAssignment> lastByNumber;
    for (const HotbarSlotAssignment &assignment : assignments)
        lastByNumber.insert(assignment.slotIndex, assignment);

    QList<HotbarSlotAssignment> normalized;
    for (qint64 number = 1; number <= HotbarSlotAssignment::slotCount; ++number)
        normalized.append(lastByNumber.value(number, emptySlot(number)));
    return normalized;
}

HotbarSlotAssignment AppSettings::assignment(qint64 slotIndex) const
{
    for (const HotbarSlotAssignment &slot : hotbarAssignments) {
        if (slot.slotIndex == slotIndex)
            return slot;
    }
    return emptySlot(slotIndex);
}

std::optional<HotkeyShortcut> AppSettings::hotbarShortcut(int slotIndex) const
{
    return assignment(slotIndex).effectiveShortcut();
}

void AppSettings::setHotbarAssignment(qint64 slotIndex,
                                      const std::optional<QString> &bundleIdentifier,
                                      const std::optional<QString> &appName)
{
    if (!HotbarSlotAssignment::isSlotNumber(slotIndex))
        return;
    replaceSlot({slotIndex, noneIfEmpty(bundleIdentifier), noneIfEmpty(appName),
                 assignment(slotIndex).shortcut});
}

void AppSettings::setHotbarShortcut(qint64 slotIndex, const std::optional<HotkeyShortcut> &shortcut)
{
    if (!HotbarSlotAssignment::isSlotNumber(slotIndex))
        return;
    HotbarSlotAssignment slot = assignment(slotIndex);
    slot.shortcut = shortcut;
    replaceSlot(slot);
}

void AppSettings::replaceSlot(const HotbarSlotAssignment &slot)
{
    // Normalising lets the last entry of a number win, so appending replaces.
    hotbarAssignments.append(slot);
    hotbarAssignments = normalizedHotbarAssignments(hotbarAssignments);
}

AppSettings AppSettings::fromJson(const QByteArray &document)
{
    const JsonObjectReader reader(parseJsonObject(document));
    AppSettings settings;
    settings.shortcut = HotkeyShortcut::fromJson(reader.object(shortcutKey));
    settings.whisperCLIPath = reader.string(whisperCLIPathKey);
    settings.modelDownloadURL = reader.string(modelDownloadURLKey);
    settings.modelSHA256 = reader.string(modelSHA256Key);
    settings.transcriptionLanguage =
        reader.optionalString(transcriptionLanguageKey).value_or(u"auto"_s);
    settings.decodingProfile =
        optionalCase(reader, decodingProfileKey, WhisperDecodingProfile::balanced);
    settings.theme = optionalCase(reader, themeKey, AppTheme::light);
    settings.hotbarAssignments = normalizedHotbarAssignments(
        slotsOf(reader.optionalArray(hotbarAssignmentsKey).value_or(QJsonArray())));
    return settings;
}

QByteArray AppSettings::toJson() const
{
    QJsonArray slotObjects;
    for (const HotbarSlotAssignment &slot : hotbarAssignments)
        slotObjects.append(slot.toJson());

    const QJsonObject object{
        {shortcutKey, shortcut.toJson()},
        {whisperCLIPathKey, jsonText(whisperCLIPath)},
        {modelDownloadURLKey, jsonText(modelDownloadURL)},
        {modelSHA256Key, jsonText(modelSHA256)},
        {transcriptionLanguageKey, jsonText(transcriptionLanguage)},
        {decodingProfileKey, rawValue(decodingProfile)},
        {themeKey, rawValue(theme)},
        {hotbarAssignmentsKey, slotObjects},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace kestrova
