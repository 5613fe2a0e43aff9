#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

#include <vector>

namespace kestrova {

/// A window that has the keyboard and logs what it gets. It needs no window manager.
class KeyLogWindow
{
public:
    struct Key
    {
        bool isPress;
        xcb_keycode_t code;
        uint16_t modifiers; ///< the state before the event

        bool operator==(const Key &) const = default;
    };

    /// Returns once the window has the keyboard. Throws std::runtime_error.
    explicit KeyLogWindow(const QByteArray &windowClass, const QByteArray &displayName = {});
    ~KeyLogWindow();
    KeyLogWindow(const KeyLogWindow &) = delete;
    KeyLogWindow &operator=(const KeyLogWindow &) = delete;

    xcb_connection_t *xcb() const { return m_connection; }
    xcb_window_t id() const { return m_window; }
    /// What came since the last call. Everything that is in the server by now is in it.
    std::vector<Key> keys();
    /// The modifiers and locks that are on now.
    uint16_t modifiers();

    /// Returns once the window has the keyboard again.
    void takeKeyboard();
    /// Names it as the active window, as a window manager does.
    void becomeActive();
    /// Gives the keyboard to a new window inside of this one, which logs its keys too; its id.
    xcb_window_t focusWindowInside();
    /// Takes every key for the window, as an open menu does; whether that worked.
    bool grabKeyboard();
    void ungrabKeyboard();

private:
    void show();
    void waitFor(int eventType);

    xcb_connection_t *m_connection;
    xcb_window_t m_root = XCB_WINDOW_NONE;
    xcb_window_t m_window;
};

} // namespace kestrova
