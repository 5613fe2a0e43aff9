#pragma once

#include "Platform/Keys/KeyEventMonitoring.h"

#include <QString>

namespace kestrova {

/// Why the shortcut cannot be typed on the present keyboard and what helps, for the user; empty
/// when it can.
QString shortcutHint(KeyEventMonitoring &keyboard, const HotkeyShortcut &shortcut);

} // namespace kestrova
