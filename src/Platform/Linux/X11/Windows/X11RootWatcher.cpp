#include "Platform/Linux/X11/Windows/X11RootWatcher.h"

namespace kestrova {

X11RootWatcher::X11RootWatcher(const QByteArray &displayName, const QByteArrayList &properties,
                               std::function<void()> changed)
    : m_events(
          displayName, [this](const auto &event) { return isChange(event); }, std::move(changed))
{
    X11Connection &connection = m_events.connection();
    for (const QByteArray &property : properties)
        m_properties.append(connection.atom(property));
    const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    const auto cookie = xcb_change_window_attributes_checked(connection.xcb(), connection.root(),
                                                             XCB_CW_EVENT_MASK, &mask);
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(connection.xcb(), cookie));
}

bool X11RootWatcher::isChange(const xcb_generic_event_t &event) const
{
    // The highest bit marks events that another client has sent.
    return (event.response_type & 0x7F) == XCB_PROPERTY_NOTIFY &&
           m_properties.contains(reinterpret_cast<const xcb_property_notify_event_t &>(event).atom);
}

} // namespace kestrova
