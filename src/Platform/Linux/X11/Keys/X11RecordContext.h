#pragma once

#include "Platform/Linux/X11/Connection/X11Connection.h"

#include <xcb/record.h>

#include <vector>

namespace kestrova {

/// What the RECORD extension says about a key.
struct RecordedKey
{
    bool isPress;     ///< or a repeat
    bool isDelivered; ///< a client has got it; otherwise it comes from the keyboard
    xcb_keycode_t key;
    uint16_t state; ///< modifiers and locks before the event
    xcb_timestamp_t time;
    xcb_window_t window; ///< that was told, when it was delivered
    uint32_t client;     ///< the resource base of the client that was told, when it was delivered

    bool isDeliveryOf(const RecordedKey &other) const
    {
        return isDelivered && isPress == other.isPress && key == other.key && time == other.time;
    }
};

/// The keys of the whole display, as the RECORD extension sees them: before any client and even
/// under a grab. It takes them from nobody. What it delivers comes in the order in which the server
/// has handled it, a delivery right after what was delivered.
class X11RecordContext
{
public:
    /// Records from the moment when this returns. An empty name means $DISPLAY. The control
    /// connection outlives this. It gets an event at each press that is no repeat; after a request
    /// with an answer the press can then be read.
    X11RecordContext(X11Connection &control, const QByteArray &displayName);

    /// False without the RECORD extension, and once the server has gone.
    bool isOpen() const { return m_isEnabled && m_data.isOpen(); }
    /// Readable when there may be something to read().
    int descriptor() const { return xcb_get_file_descriptor(m_data.xcb()); }
    /// Adds what has come to the list, and does not wait.
    void read(std::vector<RecordedKey> &keys);

private:
    bool enable(X11Connection &control);

    X11Connection m_data; // answers one request for ever
    xcb_record_enable_context_cookie_t m_cookie = {};
    bool m_isEnabled;
};

} // namespace kestrova
