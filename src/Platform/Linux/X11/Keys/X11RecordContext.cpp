#include "Platform/Linux/X11/Keys/X11RecordContext.h"

#include <xcb/xcbext.h>
#include <xcb/xinput.h>

#include <cstring>
#include <optional>

namespace kestrova {

namespace {

// Categories of the replies, from the protocol.
constexpr uint8_t fromServer = 0;
constexpr uint8_t startOfData = 4;

// Every event of the core protocol has this size.
constexpr int eventSize = 32;
static_assert(sizeof(xcb_key_press_event_t) == eventSize);

// A device is no client and has no resources.
std::optional<RecordedKey> keyOf(const uint8_t *bytes, uint32_t client)
{
    xcb_key_press_event_t event;
    std::memcpy(&event, bytes, sizeof event);
    if (event.response_type != XCB_KEY_PRESS && event.response_type != XCB_KEY_RELEASE)
        return std::nullopt;
    const bool isDelivered = client != 0;
    RecordedKey key{event.response_type == XCB_KEY_PRESS,
                    isDelivered,
                    event.detail,
                    event.state,
                    event.time,
                    XCB_WINDOW_NONE,
                    client};
    if (isDelivered)
        key.window = event.event;
    return key;
}

// The server may hold back what RECORD has to say until it has something to write for others.
// These events come even under a grab and tell that there is something, except for repeats.
void selectRawKeyPresses(X11Connection &connection)
{
    if (!connection.hasExtension(&xcb_input_id))
        return;
    // 2.1: also while another client has grabbed the keyboard.
    const XcbPointer<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        connection.xcb(), xcb_input_xi_query_version(connection.xcb(), 2, 1), nullptr));
    const struct
    {
        xcb_input_event_mask_t head;
        uint32_t mask;
    } events = {{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS};
    xcb_input_xi_select_events(connection.xcb(), connection.root(), 1, &events.head);
}

} // namespace

X11RecordContext::X11RecordContext(X11Connection &control, const QByteArray &displayName)
    : m_data(displayName), m_isEnabled(enable(control))
{
}

bool X11RecordContext::enable(X11Connection &control)
{
    if (!control.hasExtension(&xcb_record_id))
        return false;
    selectRawKeyPresses(control);
    xcb_record_range_t range = {};
    range.device_events = {XCB_KEY_PRESS, XCB_KEY_RELEASE};
    range.delivered_events = {XCB_KEY_PRESS, XCB_KEY_RELEASE};
    const xcb_record_client_spec_t clients = XCB_RECORD_CS_ALL_CLIENTS;
    const xcb_record_context_t context = xcb_generate_id(control.xcb());
    // The other connection may use it once the answer to this is there.
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(
        control.xcb(),
        xcb_record_create_context_checked(control.xcb(), context, /*header=*/0,
                                          /*clients=*/1, /*ranges=*/1, &clients, &range)));
    if (error)
        return false;
    m_cookie = xcb_record_enable_context(m_data.xcb(), context);
    const XcbPointer<xcb_record_enable_context_reply_t> start(
        xcb_record_enable_context_reply(m_data.xcb(), m_cookie, nullptr));
    return start && start->category == startOfData;
}

void X11RecordContext::read(std::vector<RecordedKey> &keys)
{
    void *next = nullptr;
    while (xcb_poll_for_reply(m_data.xcb(), m_cookie.sequence, &next, nullptr) && next) {
        const XcbPointer<xcb_record_enable_context_reply_t> reply(
            static_cast<xcb_record_enable_context_reply_t *>(next));
        if (reply->category != fromServer)
            continue;
        const uint8_t *const bytes = xcb_record_enable_context_data(reply.get());
        const int length = xcb_record_enable_context_data_length(reply.get());
        for (int begin = 0; begin + eventSize <= length; begin += eventSize) {
            if (const auto key = keyOf(bytes + begin, reply->xid_base))
                keys.push_back(*key);
        }
    }
}

} // namespace kestrova
