#include "Views/ShortcutHint.h"

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

QStringList missingModifiers(KeyEventMonitoring &keyboard, const HotkeyShortcut &shortcut)
{
    QStringList missing;
    for (const auto &[modifier, name] : modifiers) {
        if (shortcut.has(modifier) && !keyboard.canType({shortcut.keyCode, modifier}))
            missing.append(name.toString());
    }
    return missing;
}

} // namespace

QString shortcutHint(KeyEventMonitoring &keyboard, const HotkeyShortcut &shortcut)
{
    if (keyboard.canType(shortcut))
        return {};
    const QStringList missing = missingModifiers(keyboard, shortcut);
    const QString reason =
        missing.isEmpty() ? QString() : u": it has no %1 key"_s.arg(missing.join(u" and no "_s));
    return u"%1 cannot be typed on this keyboard%2. Record another shortcut, or change the "
           "keyboard's options."_s.arg(shortcut.displayText(), reason);
}

} // namespace kestrova
