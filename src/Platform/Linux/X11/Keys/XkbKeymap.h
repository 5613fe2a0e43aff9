#pragma once

#include "Platform/Linux/X11/Connection/X11Connection.h"

#include <xkbcommon/xkbcommon.h>

#include <memory>

namespace kestrova {

template <auto unreference>
struct XkbUnreference
{
    template <typename T>
    void operator()(T *object) const
    {
        unreference(object);
    }
};
using XkbKeymapPointer = std::unique_ptr<xkb_keymap, XkbUnreference<xkb_keymap_unref>>;
using XkbStatePointer = std::unique_ptr<xkb_state, XkbUnreference<xkb_state_unref>>;

/// The X server's keymap as it is now; null without XKB.
XkbKeymapPointer readKeymap(X11Connection &connection);
/// Which modifiers and which layout of the keymap are on now; null when the server has gone.
XkbStatePointer readKeyboardState(X11Connection &connection, xkb_keymap &keymap);

/// Makes the server tell this connection when the keymap changes.
void selectKeymapChanges(X11Connection &connection);
/// Whether the event, which may have come over another connection, tells that.
bool isKeymapChange(const X11Connection &connection, const xcb_generic_event_t &event);

} // namespace kestrova
