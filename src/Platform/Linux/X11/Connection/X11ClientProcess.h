#pragma once

#include "Platform/Linux/X11/Connection/X11Connection.h"

namespace kestrova {

/// The process that connected the client whose window it is, as the X server knows it from the
/// client's socket; 0 for a client of another machine or container. Any thread.
qint32 clientProcess(X11Connection &connection, xcb_window_t window);

/// The live process that the window belongs to: that of its client or, where that has ended or is
/// not known, the one that the window itself names, if it is of this machine; 0 when not known. Any
/// thread.
qint32 windowProcess(X11Connection &connection, xcb_window_t window);

/// The same for a window that asks for a selection. Such a window is seldom shown and names
/// nothing; the managed windows of its client then tell.
qint32 requestorProcess(X11Connection &connection, xcb_window_t requestor);

} // namespace kestrova
