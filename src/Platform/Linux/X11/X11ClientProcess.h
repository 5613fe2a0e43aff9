#pragma once

#include "Platform/Linux/X11/X11Connection.h"

namespace kestrova {

/// The process that connected the client whose window it is, as the X server knows it from the
/// client's socket; 0 for a client of another machine or container. Any thread.
qint32 clientProcess(X11Connection &connection, xcb_window_t window);

} // namespace kestrova
