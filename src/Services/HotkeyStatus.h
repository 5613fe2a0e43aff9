#pragma once

#include <QString>

namespace kestrova {

/// Where the user decides which keys the shortcuts are.
enum class ShortcutEditing {
    inProgram,
    inDesktopDialog,   ///< one that the program can open
    inDesktopSettings, ///< which the user has to find
};

/// How the shortcut of a binding stands, for whoever shows it.
struct HotkeyStatus
{
    enum State {
        armed,
        pending,  ///< the desktop, or its user, has not answered yet
        refused,  ///< or taken away by the user since
        untypable ///< the keys of the present keyboard do not give it
    };

    State state = armed;
    /// What the shortcut is called on screen by whoever binds it; empty when it has no keys, or
    /// none that are known.
    QString keys = {};
    /// The HotkeyShortcut::Modifier bits that no key of the keyboard carries, where it is untypable
    /// for that.
    quint32 missingModifiers = 0;

    bool operator==(const HotkeyStatus &) const = default;
};

} // namespace kestrova
