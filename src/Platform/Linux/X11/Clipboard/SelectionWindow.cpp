#include "Platform/Linux/X11/Clipboard/SelectionWindow.h"

namespace kestrova {

xcb_window_t createSelectionWindow(X11Connection &connection)
{
    const xcb_window_t window = xcb_generate_id(connection.xcb());
    constexpr uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection.xcb(), 0, window, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    return window;
}

} // namespace kestrova
