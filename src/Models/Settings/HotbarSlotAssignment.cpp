#include "Models/Settings/HotbarSlotAssignment.h"

#include "Models/Json/JsonObjectReader.h"

namespace kestrova {

using namespace Qt::StringLiterals;

bool HotbarSlotAssignment::isAssigned() const
{
    return bundleIdentifier && !bundleIdentifier->isEmpty();
}

QString HotbarSlotAssignment::displayName() const
{
    if (appName && !appName->isEmpty())
        return *appName;
    if (isAssigned())
        return *bundleIdentifier;
    return u"Unassigned"_s;
}

std::optional<HotkeyShortcut> HotbarSlotAssignment::effectiveShortcut() const
{
    if (shortcut)
        return shortcut;
    if (!isSlotNumber(slotIndex))
        return std::nullopt;
    return HotkeyShortcut::defaultHotbarNumber(int(slotIndex));
}

HotbarSlotAssignment HotbarSlotAssignment::fromJson(const QJsonObject &object)
{
    const JsonObjectReader reader(object);
    HotbarSlotAssignment slot;
    slot.slotIndex = reader.int64("slotIndex"_L1);
    slot.bundleIdentifier = reader.optionalString("bundleIdentifier"_L1);
    slot.appName = reader.optionalString("appName"_L1);
    if (const auto shortcut = reader.optionalObject("shortcut"_L1))
        slot.shortcut = HotkeyShortcut::fromJson(*shortcut);
    return slot;
}

QJsonObject HotbarSlotAssignment::toJson() const
{
    QJsonObject object{{"slotIndex"_L1, slotIndex}};
    if (bundleIdentifier)
        object.insert("bundleIdentifier"_L1, jsonText(*bundleIdentifier));
    if (appName)
        object.insert("appName"_L1, jsonText(*appName));
    if (shortcut)
        object.insert("shortcut"_L1, shortcut->toJson());
    return object;
}

} // namespace kestrova
