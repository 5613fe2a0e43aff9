#include "Platform/Linux/X11/X11KeyEventPosting.h"

#include "Platform/Linux/X11/PasteChords.h"
#include "Platform/Linux/X11/PostedKeys.h"
#include "Platform/Linux/X11/X11Keyboard.h"
#include "Platform/Linux/X11/X11ServerTime.h"

#include <xcb/xtest.h>

#include <thread>

namespace kestrova {

namespace {

// All the keys of the chord, the modifiers first; empty when the keyboard lacks one of them.
std::vector<xcb_keycode_t> keysOf(const PasteChord &chord, const X11Keyboard &keyboard)
{
    std::vector<xkb_keysym_t> symbols = chord.modifiers;
    symbols.push_back(chord.key);
    std::vector<xcb_keycode_t> keys;
    for (const xkb_keysym_t symbol : symbols) {
        const std::optional<xcb_keycode_t> key = keyboard.keyCode(symbol);
        if (!key)
            return {};
        keys.push_back(*key);
    }
    return keys;
}

} // namespace

X11KeyEventPosting::X11KeyEventPosting(PostedKeys &postedKeys, const QByteArray &displayName)
    : m_postedKeys(postedKeys), m_connection(displayName)
{
}

bool X11KeyEventPosting::postCommandV()
{
    const std::lock_guard lock(m_mutex);
    if (!m_connection.isOpen() ||
        !xcb_get_extension_data(m_connection.xcb(), &xcb_test_id)->present)
        return false;
    const X11Keyboard keyboard(m_connection);
    const std::vector<xcb_keycode_t> keys = chordKeys(keyboard);
    if (keys.empty())
        return false;

    waitForModifiers(keyboard);
    for (const xcb_keycode_t key : keyboard.heldModifiers())
        fake(XCB_KEY_RELEASE, key);
    for (const xcb_keycode_t key : keyboard.held(keys))
        fake(XCB_KEY_RELEASE, key);
    send(keys);
    return waitForServer();
}

std::vector<xcb_keycode_t> X11KeyEventPosting::chordKeys(const X11Keyboard &keyboard)
{
    const xcb_window_t window = m_connection.value(m_connection.root(), "_NET_ACTIVE_WINDOW");
    const QString windowClass = m_connection.text(window, "WM_CLASS").section(QChar(0), 1, 1);
    for (const PasteChord &chord : pasteChords(windowClass)) {
        if (std::vector<xcb_keycode_t> keys = keysOf(chord, keyboard); !keys.empty())
            return keys;
    }
    return {};
}

void X11KeyEventPosting::waitForModifiers(const X11Keyboard &keyboard)
{
    const auto end = std::chrono::steady_clock::now() + modifierLimit;
    while (!keyboard.heldModifiers().empty() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(modifierPollInterval);
}

void X11KeyEventPosting::send(const std::vector<xcb_keycode_t> &keys)
{
    std::vector<PostedKeys::Event> events;
    for (const xcb_keycode_t key : keys)
        events.push_back({true, key});
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        events.push_back({false, *key});
    synchronize(); // so that a held shortcut has lost its modifiers before its grab is ended
    m_postedKeys.announce(events);
    for (const auto &[isPress, key] : events)
        fake(isPress ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key);
}

void X11KeyEventPosting::fake(uint8_t type, xcb_keycode_t key)
{
    xcb_test_fake_input(m_connection.xcb(), type, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

bool X11KeyEventPosting::waitForServer()
{
    // The server answers in order.
    const xcb_timestamp_t now = serverTime(m_connection);
    if (now != XCB_CURRENT_TIME)
        m_postedKeys.finish(now);
    return synchronize();
}

bool X11KeyEventPosting::synchronize()
{
    const XcbPointer<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
        m_connection.xcb(), xcb_get_input_focus(m_connection.xcb()), nullptr));
    return reply != nullptr;
}

} // namespace kestrova
