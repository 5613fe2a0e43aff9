#pragma once

#include "Models/Settings/AppSettings.h"
#include "Services/HotkeyBinding.h"

namespace kestrova {

/// The identifiers of the bindings.
inline QString mainHotkeyId()
{
    return QStringLiteral("toggle");
}
inline QString hotbarHotkeyId(int slotIndex)
{
    return QStringLiteral("hotbar-%1").arg(slotIndex);
}

/// The binding "toggle" of the main shortcut, then "hotbar-1" to "hotbar-9", assigned or not. Those
/// of unassigned slots take their shortcuts from no other program.
QList<HotkeyBinding> hotkeyBindings(const AppSettings &settings, std::function<void()> toggleMain,
                                    const std::function<void(int slotIndex)> &toggleSlot);

/// Why the shortcut cannot become the main one; none when it can.
std::optional<QString> mainShortcutConflict(const AppSettings &settings,
                                            const HotkeyShortcut &shortcut);
/// Why the shortcut cannot become the slot's; none when it can.
std::optional<QString> hotbarShortcutConflict(const AppSettings &settings, int slotIndex,
                                              const HotkeyShortcut &shortcut);

} // namespace kestrova
