#include "Platform/Linux/X11/Windows/X11RootWatcher.h"

#include <QMetaObject>

namespace kestrova {

X11RootWatcher::X11RootWatcher(const QByteArray &displayName, const QByteArrayList &properties,
                               std::function<void()> changed)
    : m_connection(displayName), m_changed(std::move(changed)),
      m_notifier(xcb_get_file_descriptor(m_connection.xcb()), QSocketNotifier::Read)
{
    for (const QByteArray &property : properties)
        m_properties.append(m_connection.atom(property));
    const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    const auto cookie = xcb_change_window_attributes_checked(
        m_connection.xcb(), m_connection.root(), XCB_CW_EVENT_MASK, &mask);
    const XcbPointer<xcb_generic_error_t> error(xcb_request_check(m_connection.xcb(), cookie));

    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier,
                     [this] { takeEvents(); });
    // The answer to the request may have brought the first events along.
    QMetaObject::invokeMethod(
        &m_notifier, [this] { takeEvents(); }, Qt::QueuedConnection);
}

void X11RootWatcher::takeEvents()
{
    bool hasChanged = false;
    while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.xcb())}) {
        // The highest bit marks events that another client has sent.
        if ((event->response_type & 0x7F) != XCB_PROPERTY_NOTIFY)
            continue;
        const auto *change = reinterpret_cast<const xcb_property_notify_event_t *>(event.get());
        hasChanged = hasChanged || m_properties.contains(change->atom);
    }
    // The socket of a lost server would be readable for ever.
    if (!m_connection.isOpen())
        m_notifier.setEnabled(false);
    if (hasChanged)
        m_changed();
}

} // namespace kestrova
