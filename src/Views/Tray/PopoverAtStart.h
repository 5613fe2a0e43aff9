#pragma once

#include "ViewModels/AppState.h"
#include "Views/Tray/Windows.h"

#include <chrono>

namespace kestrova {

/// How long a panel takes to show the icon of a program that has just started.
constexpr std::chrono::seconds trayDelay{1};
/// How long a panel may take to come up after the program.
constexpr std::chrono::seconds trayLimit{5};

/// After the start of the program: shows the popover by itself to a user who has something to set
/// up, and, without taking the keyboard from a dictation that is under way, where no panel comes up
/// in time, without which the program could not be reached. The state outlives the windows.
void openPopoverAtStart(const AppState &state, Windows &windows);

} // namespace kestrova
