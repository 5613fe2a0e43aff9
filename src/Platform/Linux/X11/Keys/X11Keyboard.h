#pragma once

#include "Platform/Linux/X11/Keys/XkbKeymap.h"

#include <optional>
#include <vector>

namespace kestrova {

/// The X server's keyboard: which key carries what at the moment, and which are down.
class X11Keyboard
{
public:
    /// Reads keymap and layout as they are now. Without XKB, no key carries anything.
    explicit X11Keyboard(X11Connection &connection);

    /// The key that gives this symbol in the present layout when no modifier is down.
    std::optional<xcb_keycode_t> keyCode(xkb_keysym_t symbol) const;

    /// The modifier keys that are down now, a Caps Lock key excepted. Asks the server.
    std::vector<xcb_keycode_t> heldModifiers() const;
    /// Those of the keys that are down now. Asks the server.
    std::vector<xcb_keycode_t> held(const std::vector<xcb_keycode_t> &keys) const;

private:
    void readModifierKeys();

    X11Connection &m_connection;
    XkbKeymapPointer m_keymap;
    XkbStatePointer m_state;
    std::vector<xcb_keycode_t> m_modifierKeys;
};

} // namespace kestrova
