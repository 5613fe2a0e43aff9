#include "Platform/Linux/X11/Keys/X11KeyTranslation.h"

#include "Platform/Linux/X11/Keys/VirtualKeyCodes.h"
#include "Platform/Linux/X11/Keys/XkbKeymap.h"

namespace kestrova {

namespace {

/// What pressing a key in one of the layouts does to the modifiers.
struct Press
{
    bool changesState = false; ///< modifiers, locks or the layout
    uint16_t modifiers = 0;
};

Press press(xkb_keymap *keymap, xkb_keycode_t key, xkb_layout_index_t layout)
{
    const XkbStatePointer state(xkb_state_new(keymap));
    xkb_state_update_mask(state.get(), 0, 0, 0, 0, 0, layout);
    const bool changesState = xkb_state_update_key(state.get(), key, XKB_KEY_DOWN) != 0;
    // The bits above the eight of the X protocol are XKB's virtual modifiers.
    const xkb_mod_mask_t modifiers =
        xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_EFFECTIVE) & 0xFF;
    return {changesState, uint16_t(modifiers)};
}

/// Which modifiers the keys of each kind set. Keymaps are free in that.
class ModifierMasks
{
public:
    void add(xkb_keysym_t symbol, uint16_t modifiers)
    {
        if (symbol == XKB_KEY_Super_L || symbol == XKB_KEY_Super_R)
            m_super |= modifiers;
        else if (symbol == XKB_KEY_Meta_L || symbol == XKB_KEY_Meta_R)
            m_meta |= modifiers;
        else if (symbol == XKB_KEY_Alt_L || symbol == XKB_KEY_Alt_R)
            m_alt |= modifiers;
    }
    // Meta is the Super key of some keyboards, and on most only another name for Alt.
    uint16_t command() const { return uint16_t((m_super | (m_meta & ~m_alt)) & ~fixed); }
    uint16_t option() const { return uint16_t(m_alt & ~fixed); }

private:
    static constexpr int fixed = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_CONTROL;

    uint16_t m_super = 0;
    uint16_t m_meta = 0;
    uint16_t m_alt = 0;
};

constexpr uint16_t allModifiers = 0xFF;

} // namespace

X11KeyTranslation::X11KeyTranslation(X11Connection &connection)
{
    const XkbKeymapPointer keymap = readKeymap(connection);
    if (!keymap)
        return;
    ModifierMasks masks;
    for (xkb_keycode_t key = 0; key < m_virtualKeyCodes.size(); ++key) {
        const xkb_layout_index_t layouts = xkb_keymap_num_layouts_for_key(keymap.get(), key);
        for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
            const Press pressed = press(keymap.get(), key, layout);
            m_modifierKeys[key] = m_modifierKeys[key] || pressed.changesState;
            const xkb_keysym_t *symbols = nullptr;
            if (xkb_keymap_key_get_syms_by_level(keymap.get(), key, layout, 0, &symbols) == 1)
                masks.add(symbols[0], pressed.modifiers);
        }
        if (!m_modifierKeys[key])
            m_virtualKeyCodes[key] = virtualKeyCode(xkb_keymap_key_get_name(keymap.get(), key));
    }
    m_commandMask = masks.command();
    m_optionMask = masks.option();
}

std::optional<KeyEvent> X11KeyTranslation::released(xcb_keycode_t key) const
{
    if (!m_modifierKeys[key])
        return std::nullopt;
    return KeyEvent{.type = KeyEvent::flagsChanged};
}

std::optional<KeyEvent> X11KeyTranslation::pressed(xcb_keycode_t key, uint16_t state) const
{
    if (m_modifierKeys[key])
        return KeyEvent{.type = KeyEvent::flagsChanged};
    if (!m_virtualKeyCodes[key])
        return std::nullopt;
    KeyEvent event{*m_virtualKeyCodes[key]};
    const auto translate = [&](int mask, HotkeyShortcut::Modifier modifier) {
        if (state & mask)
            event.modifiers |= modifier;
    };
    translate(m_commandMask, HotkeyShortcut::command);
    translate(XCB_MOD_MASK_SHIFT, HotkeyShortcut::shift);
    translate(m_optionMask, HotkeyShortcut::option);
    translate(XCB_MOD_MASK_CONTROL, HotkeyShortcut::control);
    return event;
}

std::set<X11KeyCombination> X11KeyTranslation::combinations(const HotkeyShortcut &shortcut) const
{
    // Through pressed(), so that what is held back is what would be observed, and nothing else: a
    // modifier that no key carries, or that no key carries alone, matches no state.
    const KeyEvent wanted{shortcut.keyCode, shortcut.modifiers & HotkeyShortcut::allModifiers};
    std::set<X11KeyCombination> found;
    for (std::size_t key = 0; key < m_virtualKeyCodes.size(); ++key) {
        if (m_virtualKeyCodes[key] != shortcut.keyCode)
            continue;
        for (int state = 0; state <= allModifiers; ++state) {
            if (pressed(xcb_keycode_t(key), uint16_t(state)) == wanted)
                found.insert({xcb_keycode_t(key), uint16_t(state)});
        }
    }
    return found;
}

} // namespace kestrova
