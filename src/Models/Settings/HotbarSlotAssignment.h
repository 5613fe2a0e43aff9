#pragma once

#include "Models/Settings/HotkeyShortcut.h"

namespace kestrova {

/// One numbered slot of the hotbar: a destination application and, optionally, its own shortcut.
struct HotbarSlotAssignment
{
    static constexpr int slotCount = 9; ///< slots are numbered 1 to slotCount

    static constexpr bool isSlotNumber(qint64 number) { return number >= 1 && number <= slotCount; }

    qint64 slotIndex = 0;
    std::optional<QString> bundleIdentifier; ///< none, or empty: the slot is unassigned
    std::optional<QString> appName;
    std::optional<HotkeyShortcut> shortcut; ///< none: the slot's default shortcut applies

    bool isAssigned() const;
    /// The application's name, else its identifier, else "Unassigned".
    QString displayName() const;
    /// The slot's own shortcut, else its default; none only for a number outside 1 to 9.
    std::optional<HotkeyShortcut> effectiveShortcut() const;

    /// Throws JsonDecodingError when "slotIndex" is missing or any value has the wrong type.
    static HotbarSlotAssignment fromJson(const QJsonObject &object);
    /// Absent optional fields are left out.
    QJsonObject toJson() const;

    bool operator==(const HotbarSlotAssignment &) const = default;
};

} // namespace kestrova
