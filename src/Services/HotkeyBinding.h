#pragma once

#include "Models/Settings/HotkeyShortcut.h"

#include <functional>

namespace kestrova {

/// A shortcut tied to an action. Not stored.
struct HotkeyBinding
{
    QString id; ///< "toggle", or "hotbar-" and the slot number
    HotkeyShortcut shortcut;
    std::function<void()> handler; ///< called on the main thread
    /// Other programs' windows do not get the shortcut. Otherwise they do, and the handler is not
    /// called where another program has reserved it.
    bool isExclusive = true;
    QString description = {}; ///< what a desktop that binds shortcuts by name shows the user
};

} // namespace kestrova
