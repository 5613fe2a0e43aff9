#pragma once

#include "ViewModels/AppState.h"

namespace kestrova {

// What the user reads about the permission to observe the keyboard and to paste, and whether
// anything can be done about it. Main thread.

/// False where no permission would help.
bool isAccessibilityAvailable(const AppState &state);
/// Whether it is not granted, and the user can be asked for it.
bool canAskForAccessibility(const AppState &state);
/// How it stands, in a few words.
QString accessibilityDetail(const AppState &state);
/// What it is for, or why it cannot be had.
QString accessibilityExplanation(const AppState &state);

} // namespace kestrova
