#pragma once

#include "Models/Settings/HotkeyShortcut.h"
#include "Platform/Keys/KeyEventMonitoring.h"
#include "Platform/Linux/X11/Connection/X11Connection.h"

#include <array>
#include <bitset>
#include <compare>
#include <optional>
#include <set>

namespace kestrova {

/// A key event as a grab names it.
struct X11KeyCombination
{
    xcb_keycode_t key = 0;
    uint16_t modifiers = 0;

    auto operator<=>(const X11KeyCombination &) const = default;
};

/// Puts the X server's key codes and modifiers into the numbers of shortcuts, by the keymap of the
/// moment when it was made.
class X11KeyTranslation
{
public:
    /// Reads the keymap, which takes a few round trips. Without XKB it translates no key.
    explicit X11KeyTranslation(X11Connection &connection);

    /// A press. The state is that of the key event, locks included. None for a key that is no
    /// modifier and has no virtual key code.
    std::optional<KeyEvent> pressed(xcb_keycode_t key, uint16_t state) const;
    /// None for a key that is no modifier.
    std::optional<KeyEvent> released(xcb_keycode_t key) const;
    /// The presses that pressed() puts into this shortcut: one for each state of the locks. None
    /// when no key carries one of the modifiers.
    std::set<X11KeyCombination> combinations(const HotkeyShortcut &shortcut) const;

    bool operator==(const X11KeyTranslation &) const = default;

private:
    std::bitset<256> m_modifierKeys; // and lock keys
    std::array<std::optional<quint32>, 256> m_virtualKeyCodes;
    uint16_t m_commandMask = 0;
    uint16_t m_optionMask = 0;
};

} // namespace kestrova
