#pragma once

#include "Views/Tray/Windows.h"

#include <memory>

namespace kestrova {

/// Loads the library of the windows, which stands beside the program, and builds the windows with
/// it. Throws PlatformError when it cannot be loaded. One of another build, as an upgrade puts
/// there while the program runs, is not loaded: its code would not fit ours.
std::unique_ptr<Windows> loadWindows(AppController &controller, Platform &platform,
                                     TrayItem &trayItem);

} // namespace kestrova
