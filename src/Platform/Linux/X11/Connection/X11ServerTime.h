#pragma once

#include "Platform/Linux/X11/Connection/X11Connection.h"

namespace kestrova {

/// The X server's clock in milliseconds, to mark a request as the user's latest one; 0, which
/// means "now", when the server does not tell. Any thread.
xcb_timestamp_t serverTime(X11Connection &connection);

} // namespace kestrova
