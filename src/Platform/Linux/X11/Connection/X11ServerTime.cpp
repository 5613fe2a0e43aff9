#include "Platform/Linux/X11/Connection/X11ServerTime.h"

#include <xcb/sync.h>

#include <cstddef>

namespace kestrova {

namespace {

// The name begins right after its length. xcb_sync_systemcounter_name() gives the end of the
// struct, which the compiler has padded by two bytes.
QByteArrayView nameOf(const xcb_sync_systemcounter_t &counter)
{
    const auto *bytes = reinterpret_cast<const char *>(&counter);
    return {bytes + offsetof(xcb_sync_systemcounter_t, name_len) + sizeof(counter.name_len),
            counter.name_len};
}

// SYNC's SERVERTIME counter counts what time stamps are taken from, and unlike the usual detour
// over a property change asking for it needs no event.
xcb_sync_counter_t serverTimeCounter(xcb_connection_t *xcb)
{
    const XcbPointer<xcb_sync_initialize_reply_t> version(xcb_sync_initialize_reply(
        xcb, xcb_sync_initialize(xcb, XCB_SYNC_MAJOR_VERSION, XCB_SYNC_MINOR_VERSION), nullptr));
    const XcbPointer<xcb_sync_list_system_counters_reply_t> counters(
        xcb_sync_list_system_counters_reply(xcb, xcb_sync_list_system_counters(xcb), nullptr));
    if (!version || !counters)
        return XCB_NONE;
    auto counter = xcb_sync_list_system_counters_counters_iterator(counters.get());
    for (; counter.rem > 0; xcb_sync_systemcounter_next(&counter)) {
        if (nameOf(*counter.data) == "SERVERTIME")
            return counter.data->counter;
    }
    return XCB_NONE;
}

} // namespace

xcb_timestamp_t serverTime(X11Connection &connection)
{
    if (!connection.hasExtension(&xcb_sync_id))
        return XCB_CURRENT_TIME;
    xcb_connection_t *const xcb = connection.xcb();
    const auto cookie = xcb_sync_query_counter(xcb, serverTimeCounter(xcb));
    const XcbPointer<xcb_sync_query_counter_reply_t> reply(
        xcb_sync_query_counter_reply(xcb, cookie, nullptr));
    return reply ? reply->counter_value.lo : xcb_timestamp_t{XCB_CURRENT_TIME};
}

} // namespace kestrova
