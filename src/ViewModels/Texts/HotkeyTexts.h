#pragma once

#include "Platform/Workspace.h"
#include "Services/HotkeyStatus.h"

namespace kestrova {

/// What windows say about the shortcuts and what they lead to.

/// The keys of a shortcut; words where it has none, or none that are known.
QString shownKeys(const HotkeyStatus &hotkey);

/// Why the shortcut does not do what the user expects, and what helps; empty when it does.
QString hotkeyHint(const HotkeyStatus &hotkey, ShortcutEditing editing);

/// How the user gets other keys.
QString shortcutEditingTip(ShortcutEditing editing);

/// What the shortcuts of the hotbar do, before any is changed.
QString hotbarExplanation(ShortcutEditing editing);

/// Which of the hotbar's actions cannot work on this desktop, and why; empty when all can.
QString hotbarLimits(const WorkspaceCapabilities &capabilities);

} // namespace kestrova
