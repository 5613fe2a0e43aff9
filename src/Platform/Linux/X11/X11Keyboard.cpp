#include "Platform/Linux/X11/X11Keyboard.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <iterator>

namespace kestrova {

X11Keyboard::X11Keyboard(X11Connection &connection) : m_connection(connection)
{
    readKeymap();
    readModifierKeys();
}

void X11Keyboard::readKeymap()
{
    xcb_connection_t *const xcb = m_connection.xcb();
    if (!xkb_x11_setup_xkb_extension(
            xcb, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr))
        return;
    const int32_t device = xkb_x11_get_core_keyboard_device_id(xcb);
    m_context.reset(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
    if (device < 0 || !m_context)
        return;
    m_keymap.reset(
        xkb_x11_keymap_new_from_device(m_context.get(), xcb, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (m_keymap)
        m_state.reset(xkb_x11_state_new_from_device(m_keymap.get(), xcb, device));
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
