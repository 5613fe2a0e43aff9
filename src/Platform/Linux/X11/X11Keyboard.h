#pragma once

#include "Platform/Linux/X11/X11Connection.h"

#include <xkbcommon/xkbcommon.h>

#include <memory>
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
    template <auto unreference>
    struct Unreference
    {
        template <typename T>
        void operator()(T *object) const
        {
            unreference(object);
        }
    };

    void readKeymap();
    void readModifierKeys();

    X11Connection &m_connection;
    std::unique_ptr<xkb_context, Unreference<xkb_context_unref>> m_context;
    std::unique_ptr<xkb_keymap, Unreference<xkb_keymap_unref>> m_keymap;
    std::unique_ptr<xkb_state, Unreference<xkb_state_unref>> m_state;
    std::vector<xcb_keycode_t> m_modifierKeys;
};

} // namespace kestrova
