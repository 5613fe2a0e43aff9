#include "ViewModels/HotkeyBindings.h"

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// The first slot with this shortcut, own or default, other than the one that is left out.
std::optional<int> slotWithShortcut(const AppSettings &settings, const HotkeyShortcut &shortcut,
                                    int leftOut = 0)
{
    for (int slot = 1; slot <= HotbarSlotAssignment::slotCount; ++slot) {
        if (slot != leftOut && settings.hotbarShortcut(slot) == shortcut)
            return slot;
    }
    return std::nullopt;
}

} // namespace

QList<HotkeyBinding> hotkeyBindings(const AppSettings &settings, std::function<void()> toggleMain,
                                    const std::function<void(int slotIndex)> &toggleSlot)
{
    QList<HotkeyBinding> bindings{{.id = mainHotkeyId(),
                                   .shortcut = settings.shortcut,
                                   .handler = std::move(toggleMain),
                                   .description = u"Start or end a dictation"_s}};
    for (int slot = 1; slot <= HotbarSlotAssignment::slotCount; ++slot) {
        if (const auto shortcut = settings.hotbarShortcut(slot)) {
            // Without the application's name: a desktop may ask its user about each new
            // description.
            bindings.append({.id = hotbarHotkeyId(slot),
                             .shortcut = *shortcut,
                             .handler = [toggleSlot, slot] { toggleSlot(slot); },
                             .isExclusive = settings.assignment(slot).isAssigned(),
                             .description = u"Dictate into hotbar slot %1"_s.arg(slot)});
        }
    }
    return bindings;
}

std::optional<QString> mainShortcutConflict(const AppSettings &settings,
                                            const HotkeyShortcut &shortcut)
{
    if (const auto slot = slotWithShortcut(settings, shortcut))
        return u"That shortcut conflicts with hotbar slot %1."_s.arg(*slot);
    return std::nullopt;
}

std::optional<QString> hotbarShortcutConflict(const AppSettings &settings, int slotIndex,
                                              const HotkeyShortcut &shortcut)
{
    if (shortcut == settings.shortcut)
        return u"That shortcut conflicts with the main recording shortcut."_s;
    if (const auto slot = slotWithShortcut(settings, shortcut, slotIndex))
        return u"That shortcut is already used by slot %1."_s.arg(*slot);
    return std::nullopt;
}

} // namespace kestrova
