#include "Platform/Linux/X11/X11KeyRecord.h"

#include <xcb/xcbext.h>

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

std::optional<RecordedKey> keyOf(const uint8_t *bytes, bool isDelivered)
{
    xcb_key_press_event_t event;
    std::memcpy(&event, bytes, sizeof event);
    RecordedKey key{RecordedKey::pressed, event.detail, event.state, event.time, XCB_WINDOW_NONE};
    if (event.response_type == XCB_KEY_RELEASE) {
        key.kind = RecordedKey::released;
    } else if (event.response_type != XCB_KEY_PRESS) {
        return std::nullopt;
    } else if (isDelivered) {
        key.kind = RecordedKey::delivered;
        key.window = event.event;
    }
    return key;
}

} // namespace

X11KeyRecord::X11KeyRecord(X11Connection &control, const QByteArray &displayName)
    : m_data(displayName), m_isEnabled(enable(control))
{
}

bool X11KeyRecord::enable(X11Connection &control)
{
    if (!control.hasExtension(&xcb_record_id))
        return false;
    xcb_record_range_t range = {};
    range.device_events = {XCB_KEY_PRESS, XCB_KEY_RELEASE};
    range.delivered_events = {XCB_KEY_PRESS, XCB_KEY_PRESS};
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

void X11KeyRecord::read(std::vector<RecordedKey> &keys)
{
    void *next = nullptr;
    while (xcb_poll_for_reply(m_data.xcb(), m_cookie.sequence, &next, nullptr) && next) {
        const XcbPointer<xcb_record_enable_context_reply_t> reply(
            static_cast<xcb_record_enable_context_reply_t *>(next));
        if (reply->category != fromServer)
            continue;
        // A device is no client.
        const bool isDelivered = reply->xid_base != 0;
        const uint8_t *const bytes = xcb_record_enable_context_data(reply.get());
        const int length = xcb_record_enable_context_data_length(reply.get());
        for (int begin = 0; begin + eventSize <= length; begin += eventSize) {
            if (const auto key = keyOf(bytes + begin, isDelivered))
                keys.push_back(*key);
        }
    }
}

} // namespace kestrova
