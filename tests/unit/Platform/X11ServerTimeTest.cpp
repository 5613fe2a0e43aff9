#include "Platform/Linux/X11/Connection/X11ServerTime.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

// The server's own time stamp, by way of a property change.
xcb_timestamp_t timeOfAnEvent(X11Connection &connection)
{
    xcb_connection_t *const xcb = connection.xcb();
    const xcb_window_t window = xcb_generate_id(xcb);
    constexpr uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(xcb, 0, window, connection.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    xcb_change_property(xcb, XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                        nullptr);
    xcb_flush(xcb);
    const XcbPointer<xcb_generic_event_t> event(xcb_wait_for_event(xcb));
    return event ? reinterpret_cast<const xcb_property_notify_event_t *>(event.get())->time : 0;
}

TEST(X11ServerTime, ItIsTheClockThatEventsAreStampedWith)
{
    X11Connection connection;
    const xcb_timestamp_t before = timeOfAnEvent(connection);
    const xcb_timestamp_t now = serverTime(connection);
    const xcb_timestamp_t after = timeOfAnEvent(connection);
    ASSERT_NE(before, xcb_timestamp_t{XCB_CURRENT_TIME});
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

TEST(X11ServerTime, WithoutAServerItIsUnknown)
{
    X11Connection none(":4096");
    EXPECT_EQ(serverTime(none), xcb_timestamp_t{XCB_CURRENT_TIME});
}

} // namespace
} // namespace kestrova
