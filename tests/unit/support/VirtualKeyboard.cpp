#include "support/VirtualKeyboard.h"

#include "Platform/Linux/X11/Connection/X11Connection.h"

#include <xcb/xtest.h>

#include <stdexcept>
#include <string_view>

namespace kestrova {

namespace {

// Xvfb numbers its devices alike each time: two master devices, their XTEST devices, the mouse,
// and then this one.
constexpr uint8_t xvfbKeyboard = 7;
// DeviceKeyPress and DeviceKeyRelease of the X Input extension, counted from its first event.
constexpr uint8_t deviceKeyPress = 1;
constexpr uint8_t deviceKeyRelease = 2;

} // namespace

VirtualKeyboard::VirtualKeyboard(xcb_connection_t *connection) : m_connection(connection)
{
    constexpr std::string_view name = "XInputExtension";
    const XcbPointer<xcb_query_extension_reply_t> reply(xcb_query_extension_reply(
        connection, xcb_query_extension(connection, name.size(), name.data()), nullptr));
    if (!reply || !reply->present)
        throw std::runtime_error("no X Input extension");
    m_firstEvent = reply->first_event;
}

void VirtualKeyboard::send(bool isPress, xcb_keycode_t key)
{
    const auto type = uint8_t(m_firstEvent + (isPress ? deviceKeyPress : deviceKeyRelease));
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(
        m_connection, xcb_test_fake_input_checked(m_connection, type, key, XCB_CURRENT_TIME,
                                                  XCB_WINDOW_NONE, 0, 0, xvfbKeyboard)));
    if (error)
        throw std::runtime_error("the virtual keyboard refused a key");
}

} // namespace kestrova
