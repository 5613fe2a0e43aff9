#pragma once

#include "Platform/Keys/KeyEventMonitoring.h"
#include "support/VirtualKeyboard.h"

#include <ostream>
#include <vector>

namespace kestrova {

/// X key codes of a PC keyboard, the same in every layout.
namespace key {
constexpr xcb_keycode_t digit1 = 10;
constexpr xcb_keycode_t q = 24;
constexpr xcb_keycode_t leftControl = 37;
constexpr xcb_keycode_t a = 38;
constexpr xcb_keycode_t leftShift = 50;
constexpr xcb_keycode_t leftAlt = 64;
constexpr xcb_keycode_t space = 65;
constexpr xcb_keycode_t capsLock = 66;
constexpr xcb_keycode_t f4 = 70;
constexpr xcb_keycode_t numLock = 77;
constexpr xcb_keycode_t f12 = 96;
constexpr xcb_keycode_t rightControl = 105;
constexpr xcb_keycode_t rightAlt = 108;
constexpr xcb_keycode_t insert = 118;
constexpr xcb_keycode_t leftSuper = 133;
constexpr xcb_keycode_t rightSuper = 134;
constexpr xcb_keycode_t period = 60;
} // namespace key

inline void tap(VirtualKeyboard &keyboard, xcb_keycode_t key)
{
    keyboard.press(key);
    keyboard.release(key);
}

/// Taps the last of the keys while the others are held.
inline void tapChord(VirtualKeyboard &keyboard, const std::vector<xcb_keycode_t> &keys)
{
    for (const xcb_keycode_t key : keys)
        keyboard.press(key);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        keyboard.release(*key);
}

inline std::ostream &operator<<(std::ostream &stream, const KeyEvent &event)
{
    if (event.type == KeyEvent::flagsChanged)
        return stream << "flags";
    return stream << "key " << event.keyCode << " modifiers " << event.modifiers
                  << (event.isRepeat ? " repeat" : "");
}

} // namespace kestrova
