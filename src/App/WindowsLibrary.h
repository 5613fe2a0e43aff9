#pragma once

#include "Views/Tray/Windows.h"

#include <memory>

namespace kestrova {

/// Loads the library of the windows, which stands beside the program, and builds the windows with
/// it. A program without it is not whole: ends the process when it cannot be loaded.
std::unique_ptr<Windows> loadWindows(AppController &controller, Platform &platform,
                                     TrayItem &trayItem);

} // namespace kestrova
