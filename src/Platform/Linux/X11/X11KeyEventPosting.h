#pragma once

#include "Platform/KeyEventPosting.h"

#include "Platform/Linux/X11/X11Connection.h"

#include <chrono>
#include <mutex>
#include <vector>

namespace kestrova {

class PostedKeys;
class X11Keyboard;

/// Sends the paste chord of the focused application through the XTEST extension, to whatever
/// window has the keyboard. Modifiers that the user holds would turn the chord into another one:
/// it waits until they are up and in the end releases them itself. It never presses them again,
/// because the XTEST keyboard would keep them down for ever. Caps Lock and Num Lock do not matter.
/// Any thread.
class X11KeyEventPosting final : public KeyEventPosting
{
public:
    /// How long to wait for the user to let go of the modifier keys.
    static constexpr std::chrono::milliseconds modifierLimit{1000};
    /// How often to look meanwhile.
    static constexpr std::chrono::milliseconds modifierPollInterval{10};

    /// Without an X server, postCommandV() is false. An empty name means $DISPLAY. The chord
    /// is announced in postedKeys, which outlives this.
    explicit X11KeyEventPosting(PostedKeys &postedKeys, const QByteArray &displayName = {});

    /// False without the XTEST extension, and when no key of the present layout can form one of
    /// the application's chords. When it returns true, the chord is in the X server.
    bool postCommandV() override;

private:
    std::vector<xcb_keycode_t> chordKeys(const X11Keyboard &keyboard);
    void waitForModifiers(const X11Keyboard &keyboard);
    void send(const std::vector<xcb_keycode_t> &keys);
    void fake(uint8_t type, xcb_keycode_t key);
    bool waitForServer();
    bool synchronize();

    PostedKeys &m_postedKeys;
    X11Connection m_connection;
    std::mutex m_mutex; // one chord at a time
};

} // namespace kestrova
