#pragma once

#include "Platform/Keys/KeyEventPosting.h"

#include "Platform/Linux/X11/Connection/X11Connection.h"

#include <mutex>
#include <vector>

namespace kestrova {

class PostedKeys;
class X11Keyboard;

/// Sends the paste chord of the active window through the XTEST extension. Its conditions are
/// examined and the chord is sent while the X server serves nobody else, so that no window manager
/// gives the keyboard to another window in between. Modifiers that it releases it never presses
/// again, because the XTEST keyboard would keep them down for ever. Caps Lock and Num Lock do not
/// matter. Any thread.
class X11KeyEventPosting final : public KeyEventPosting
{
public:
    /// Without an X server, postCommandV() is unavailable. An empty name means $DISPLAY. The chord
    /// is announced in postedKeys, which outlives this.
    explicit X11KeyEventPosting(PostedKeys &postedKeys, const QByteArray &displayName = {});

    bool areModifiersHeld() override;
    /// A program that takes the keyboard for itself is told from the outside only by trying the
    /// same, which the window with the keyboard sees as a shortcut of the window manager.
    bool isKeyboardTaken() override;
    /// Unavailable without the XTEST extension, and when no key of the present layout can form one
    /// of the application's chords. When it was sent, the chord is in the X server.
    Outcome postCommandV(const Conditions &conditions) override;

private:
    std::vector<xcb_keycode_t> chordKeys(const X11Keyboard &keyboard, xcb_window_t window);
    bool releaseModifiers(quint64 window, const X11Keyboard &keyboard);
    bool sendTo(quint64 window, const X11Keyboard &keyboard,
                const std::vector<xcb_keycode_t> &keys);
    bool wouldGetKeys(quint64 window);
    xcb_window_t activeWindow();
    bool hasKeyboard(xcb_window_t window);
    xcb_window_t parentOf(xcb_window_t window);
    bool isGrabbed();
    void send(const std::vector<xcb_keycode_t> &keys);
    void fake(uint8_t type, xcb_keycode_t key);
    bool waitForServer();
    bool synchronize();

    PostedKeys &m_postedKeys;
    X11Connection m_connection;
    std::mutex m_mutex; // one chord at a time
};

} // namespace kestrova
