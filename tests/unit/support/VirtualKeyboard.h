#pragma once

#include <xcb/xcb.h>

namespace kestrova {

/// The "physical" keyboard of an Xvfb server: to every client its keys look like the user's, and
/// not like synthetic ones.
class VirtualKeyboard
{
public:
    /// Uses the connection, which outlives this.
    explicit VirtualKeyboard(xcb_connection_t *connection);

    /// Both return when the server has processed it, and throw std::runtime_error when it
    /// refused.
    void press(xcb_keycode_t key) { send(true, key); }
    void release(xcb_keycode_t key) { send(false, key); }

private:
    void send(bool isPress, xcb_keycode_t key);

    xcb_connection_t *m_connection;
    uint8_t m_firstEvent;
};

} // namespace kestrova
