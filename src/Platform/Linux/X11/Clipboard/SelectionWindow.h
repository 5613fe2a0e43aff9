#pragma once

#include "Platform/Linux/X11/Connection/X11Connection.h"

namespace kestrova {

/// A window that is never shown, for taking part in the selection protocol. It gets its own
/// PropertyNotify events. Destroyed with the connection.
xcb_window_t createSelectionWindow(X11Connection &connection);

} // namespace kestrova
