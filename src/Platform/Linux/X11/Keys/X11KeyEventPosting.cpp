#include "Platform/Linux/X11/Keys/X11KeyEventPosting.h"

#include "Platform/Linux/Keys/PostedKeys.h"
#include "Platform/Linux/X11/Connection/X11ServerTime.h"
#include "Platform/Linux/X11/Keys/PasteChords.h"
#include "Platform/Linux/X11/Keys/X11Keyboard.h"

#include <xcb/xtest.h>

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

/// While it exists, the X server serves this connection alone.
class ServerGrab
{
public:
    explicit ServerGrab(X11Connection &connection) : m_connection(connection)
    {
        xcb_grab_server(m_connection.xcb());
    }
    ~ServerGrab()
    {
        xcb_ungrab_server(m_connection.xcb());
        xcb_flush(m_connection.xcb());
    }
    ServerGrab(const ServerGrab &) = delete;
    ServerGrab &operator=(const ServerGrab &) = delete;

private:
    X11Connection &m_connection;
};

} // namespace

X11KeyEventPosting::X11KeyEventPosting(PostedKeys &postedKeys, const QByteArray &displayName)
    : m_postedKeys(postedKeys), m_connection(displayName)
{
}

bool X11KeyEventPosting::areModifiersHeld()
{
    const std::lock_guard lock(m_mutex);
    return m_connection.isOpen() && !X11Keyboard(m_connection).heldModifiers().empty();
}

bool X11KeyEventPosting::isKeyboardTaken()
{
    const std::lock_guard lock(m_mutex);
    return m_connection.isOpen() && isGrabbed();
}

KeyEventPosting::Outcome X11KeyEventPosting::postCommandV(const Conditions &conditions)
{
    const std::lock_guard lock(m_mutex);
    if (!m_connection.isOpen() || !m_connection.hasExtension(&xcb_test_id))
        return Outcome::unavailable;
    const X11Keyboard keyboard(m_connection);
    const std::vector<xcb_keycode_t> keys = chordKeys(
        keyboard, conditions.window == 0 ? activeWindow() : xcb_window_t(conditions.window));
    if (keys.empty())
        return Outcome::unavailable;
    if (conditions.releasesModifiers && !releaseModifiers(conditions.window, keyboard))
        return Outcome::notSent;
    if (!sendTo(conditions.window, keyboard, keys))
        return Outcome::notSent;
    return waitForServer() ? Outcome::sent : Outcome::unavailable;
}

bool X11KeyEventPosting::releaseModifiers(quint64 window, const X11Keyboard &keyboard)
{
    const std::vector<xcb_keycode_t> modifiers = keyboard.heldModifiers();
    if (modifiers.empty())
        return true;
    m_postedKeys.prepare();
    const ServerGrab grab(m_connection);
    if (!wouldGetKeys(window))
        return false;
    for (const xcb_keycode_t key : modifiers)
        fake(XCB_KEY_RELEASE, key);
    return true;
}

bool X11KeyEventPosting::sendTo(quint64 window, const X11Keyboard &keyboard,
                                const std::vector<xcb_keycode_t> &keys)
{
    // The modifiers are up: a held shortcut is no longer one.
    synchronize();
    m_postedKeys.prepare();
    // From here on, waiting for another connection would be waiting for ever.
    const ServerGrab grab(m_connection);
    if (!wouldGetKeys(window) || !keyboard.heldModifiers().empty())
        return false;
    for (const xcb_keycode_t key : keyboard.held(keys))
        fake(XCB_KEY_RELEASE, key);
    send(keys);
    return true;
}

bool X11KeyEventPosting::wouldGetKeys(quint64 window)
{
    return (window == 0 || hasKeyboard(xcb_window_t(window))) && !isGrabbed();
}

xcb_window_t X11KeyEventPosting::activeWindow()
{
    return m_connection.value(m_connection.root(), "_NET_ACTIVE_WINDOW");
}

std::vector<xcb_keycode_t> X11KeyEventPosting::chordKeys(const X11Keyboard &keyboard,
                                                         xcb_window_t window)
{
    const QString windowClass = m_connection.text(window, "WM_CLASS").section(QChar(0), 1, 1);
    for (const PasteChord &chord : pasteChords(windowClass)) {
        if (std::vector<xcb_keycode_t> keys = keysOf(chord, keyboard); !keys.empty())
            return keys;
    }
    return {};
}

// The window manager tells of a change before or after it happens. Many programs let a window
// inside of the one that the window manager knows have the keyboard.
bool X11KeyEventPosting::hasKeyboard(xcb_window_t window)
{
    if (activeWindow() != window)
        return false;
    const XcbPointer<xcb_get_input_focus_reply_t> focus(xcb_get_input_focus_reply(
        m_connection.xcb(), xcb_get_input_focus(m_connection.xcb()), nullptr));
    xcb_window_t inner = focus ? focus->focus : xcb_window_t{XCB_WINDOW_NONE};
    while (inner != window && inner > XCB_INPUT_FOCUS_POINTER_ROOT)
        inner = parentOf(inner);
    return inner == window;
}

xcb_window_t X11KeyEventPosting::parentOf(xcb_window_t window)
{
    const XcbPointer<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(
        m_connection.xcb(), xcb_query_tree(m_connection.xcb(), window), nullptr));
    return tree ? tree->parent : xcb_window_t{XCB_WINDOW_NONE};
}

bool X11KeyEventPosting::isGrabbed()
{
    xcb_connection_t *const xcb = m_connection.xcb();
    const auto cookie =
        xcb_grab_keyboard(xcb, /*owner_events=*/1, m_connection.root(), XCB_CURRENT_TIME,
                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    // At once: what the user types meanwhile is not for us.
    xcb_ungrab_keyboard(xcb, XCB_CURRENT_TIME);
    const XcbPointer<xcb_grab_keyboard_reply_t> reply(
        xcb_grab_keyboard_reply(xcb, cookie, nullptr));
    return reply && reply->status != XCB_GRAB_STATUS_SUCCESS;
}

void X11KeyEventPosting::send(const std::vector<xcb_keycode_t> &keys)
{
    std::vector<PostedKeys::Event> events;
    for (const xcb_keycode_t key : keys)
        events.push_back({true, key});
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        events.push_back({false, *key});
    m_postedKeys.announce(events);
    for (const auto &[isPress, key] : events)
        fake(isPress ? XCB_KEY_PRESS : XCB_KEY_RELEASE, xcb_keycode_t(key));
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
