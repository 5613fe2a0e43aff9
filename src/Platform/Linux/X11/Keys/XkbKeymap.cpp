#include "Platform/Linux/X11/Keys/XkbKeymap.h"

#include <xkbcommon/xkbcommon-x11.h>

// This header of libxcb has members of that name.
#define explicit isExplicit
#include <xcb/xkb.h>
#undef explicit

namespace kestrova {

namespace {

bool setUpXkb(X11Connection &connection)
{
    return xkb_x11_setup_xkb_extension(
               connection.xcb(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
               XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr) != 0;
}

} // namespace

XkbKeymapPointer readKeymap(X11Connection &connection)
{
    if (!setUpXkb(connection))
        return nullptr;
    xcb_connection_t *const xcb = connection.xcb();
    const int32_t device = xkb_x11_get_core_keyboard_device_id(xcb);
    const std::unique_ptr<xkb_context, XkbUnreference<xkb_context_unref>> context(
        xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
    if (device < 0 || !context)
        return nullptr;
    return XkbKeymapPointer(
        xkb_x11_keymap_new_from_device(context.get(), xcb, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

XkbStatePointer readKeyboardState(X11Connection &connection, xkb_keymap &keymap)
{
    const int32_t device = xkb_x11_get_core_keyboard_device_id(connection.xcb());
    return XkbStatePointer(xkb_x11_state_new_from_device(&keymap, connection.xcb(), device));
}

void selectKeymapChanges(X11Connection &connection)
{
    constexpr uint16_t changes =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr uint16_t allParts = 0xFF;
    if (setUpXkb(connection)) {
        xcb_xkb_select_events(connection.xcb(), XCB_XKB_ID_USE_CORE_KBD, changes, /*clear=*/0,
                              /*selectAll=*/changes, allParts, allParts, nullptr);
    }
}

bool isKeymapChange(const X11Connection &connection, const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7F;
    if (type == XCB_MAPPING_NOTIFY)
        return true;
    if (!connection.hasExtension(&xcb_xkb_id) ||
        type != xcb_get_extension_data(connection.xcb(), &xcb_xkb_id)->first_event)
        return false;
    const int xkbType = reinterpret_cast<const xcb_xkb_map_notify_event_t &>(event).xkbType;
    return xkbType == XCB_XKB_NEW_KEYBOARD_NOTIFY || xkbType == XCB_XKB_MAP_NOTIFY;
}

} // namespace kestrova
