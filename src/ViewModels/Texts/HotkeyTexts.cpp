#include "ViewModels/Texts/HotkeyTexts.h"

#include "Models/Settings/HotbarSlotAssignment.h"
#include "Models/Settings/HotkeyShortcut.h"

#include <QStringList>

#include <array>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

struct NamedModifier
{
    HotkeyShortcut::Modifier modifier;
    QStringView name; ///< what stands on the key, and the sign that shortcuts are shown with
};

constexpr std::array modifiers{
    NamedModifier{HotkeyShortcut::command, u"Super (⌘)"},
    NamedModifier{HotkeyShortcut::shift, u"Shift (⇧)"},
    NamedModifier{HotkeyShortcut::option, u"Alt (⌥)"},
    NamedModifier{HotkeyShortcut::control, u"Ctrl (⌃)"},
};

QString untypableHint(const HotkeyStatus &hotkey)
{
    QStringList missing;
    for (const auto &[modifier, name] : modifiers) {
        if ((hotkey.missingModifiers & modifier) != 0)
            missing.append(name.toString());
    }
    const QString reason =
        missing.isEmpty() ? QString() : u": it has no %1 key"_s.arg(missing.join(u" and no "_s));
    return u"%1 cannot be typed on this keyboard%2. Record another shortcut, or change the "
           "keyboard's options."_s.arg(hotkey.keys, reason);
}

QString refusedHint(ShortcutEditing editing)
{
    return editing == ShortcutEditing::inDesktopDialog
               ? u"The desktop has not granted this shortcut. Choose its keys with Configure "
                 "Shortcuts."_s
               : u"The desktop has not granted this shortcut. Choose its keys in the desktop's "
                 "settings."_s;
}

} // namespace

QString shownKeys(const HotkeyStatus &hotkey)
{
    if (!hotkey.keys.isEmpty())
        return hotkey.keys;
    return hotkey.state == HotkeyStatus::armed ? u"Set by the desktop"_s : u"None"_s;
}

QString hotkeyHint(const HotkeyStatus &hotkey, ShortcutEditing editing)
{
    switch (hotkey.state) {
    case HotkeyStatus::armed:
        return hotkey.keys.isEmpty() ? u"The desktop does not say which keys this shortcut has."_s
                                     : QString();
    case HotkeyStatus::pending:
        return u"The desktop has not confirmed this shortcut yet."_s;
    case HotkeyStatus::refused:
        return refusedHint(editing);
    case HotkeyStatus::untypable:
        return untypableHint(hotkey);
    }
    Q_UNREACHABLE();
}

QString shortcutEditingTip(ShortcutEditing editing)
{
    return editing == ShortcutEditing::inProgram
               ? u"Tip: press Escape in the recorder to cancel."_s
               : u"On this desktop, the keys of all shortcuts are chosen in its settings."_s;
}

QString hotbarExplanation(ShortcutEditing editing)
{
    if (editing != ShortcutEditing::inProgram)
        return u"Each slot has a shortcut that dictates into its application. "_s +
               shortcutEditingTip(editing);
    // The shortcuts that a new user starts with, whatever has been changed since.
    const auto numbered = [](int slotIndex) {
        return HotkeyShortcut::defaultHotbarNumber(slotIndex)->displayText();
    };
    return u"Use %1 for default routing. Hotbar defaults are %2 through %3, and custom slot "
           "shortcuts override them."_s.arg(HotkeyShortcut::defaultMain().displayText(),
                                            numbered(1), numbered(HotbarSlotAssignment::slotCount));
}

QString hotbarLimits(const WorkspaceCapabilities &capabilities)
{
    QStringList limits;
    if (!capabilities.knowsFront)
        limits.append(u"This desktop does not tell programs which application is in front, so that "
                      "none can be assigned from there."_s);
    if (!capabilities.canActivate)
        limits.append(
            u"This desktop lets no program bring another one to the front: an application "
            "that is running has to be there when its slot is used."_s);
    return limits.join(u' ');
}

} // namespace kestrova
