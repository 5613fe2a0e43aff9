#include "Platform/Linux/X11/Keys/X11Keyboard.h"

#include <algorithm>
#include <iterator>

namespace kestrova {

X11Keyboard::X11Keyboard(X11Connection &connection)
    : m_connection(connection), m_keymap(readKeymap(connection))
{
    if (m_keymap)
        m_state = readKeyboardState(connection, *m_keymap);
    readModifierKeys();
}

void X11Keyboard::readModifierKeys()
{
    const XcbPointer<xcb_get_modifier_mapping_reply_t> reply(xcb_get_modifier_mapping_reply(
        m_connection.xcb(), xcb_get_modifier_mapping(m_connection.xcb()), nullptr));
    if (!reply)
        return;
    const xcb_keycode_t *keys = xcb_get_modifier_mapping_keycodes(reply.get());
    const int length = xcb_get_modifier_mapping_keycodes_length(reply.get());
    for (int i = 0; i < length; ++i) {
        const bool isLock = i / reply->keycodes_per_modifier == XCB_MAP_INDEX_LOCK;
        if (keys[i] != 0 && !isLock)
            m_modifierKeys.push_back(keys[i]);
    }
}

std::optional<xcb_keycode_t> X11Keyboard::keyCode(xkb_keysym_t symbol) const
{
    if (!m_state)
        return std::nullopt;
    const xkb_keycode_t last = std::min<xkb_keycode_t>(xkb_keymap_max_keycode(m_keymap.get()), 255);
    for (xkb_keycode_t key = xkb_keymap_min_keycode(m_keymap.get()); key <= last; ++key) {
        const xkb_keysym_t *symbols = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(
            m_keymap.get(), key, xkb_state_key_get_layout(m_state.get(), key), 0, &symbols);
        if (count == 1 && symbols[0] == symbol)
            return xcb_keycode_t(key);
    }
    return std::nullopt;
}

std::vector<xcb_keycode_t> X11Keyboard::heldModifiers() const
{
    return held(m_modifierKeys);
}

std::vector<xcb_keycode_t> X11Keyboard::held(const std::vector<xcb_keycode_t> &keys) const
{
    const XcbPointer<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(m_connection.xcb(), xcb_query_keymap(m_connection.xcb()), nullptr));
    std::vector<xcb_keycode_t> down;
    if (reply) {
        std::copy_if(keys.begin(), keys.end(), std::back_inserter(down),
                     [&](xcb_keycode_t key) { return (reply->keys[key / 8] >> (key % 8)) & 1; });
    }
    return down;
}

} // namespace kestrova
