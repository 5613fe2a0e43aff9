#pragma once

#include "Platform/Linux/X11/Connection/X11Connection.h"

namespace kestrova {

/// A window that is never shown, for taking part in the selection protocol. It gets its own
/// PropertyNotify events. Destroyed with the connection.
xcb_window_t createSelectionWindow(X11Connection &connection);

/// Makes the server send the window a PropertyNotify of this property, which carries the
/// server's present time (ICCCM 2.1 wants it and not CurrentTime). The property stays as it is.
void requestServerTime(X11Connection &connection, xcb_window_t window, xcb_atom_t property);

} // namespace kestrova
