#include "Platform/Linux/X11/Connection/X11EventSource.h"

#include <QMetaObject>

namespace kestrova {

X11EventSource::X11EventSource(const QByteArray &displayName, Matters matters,
                               std::function<void()> occurred, QObject *parent)
    : QObject(parent), m_connection(displayName), m_matters(std::move(matters)),
      m_occurred(std::move(occurred)),
      m_notifier(xcb_get_file_descriptor(m_connection.xcb()), QSocketNotifier::Read, this)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &X11EventSource::takeEvents);
    takeEventsLater();
}

void X11EventSource::synchronize()
{
    const XcbPointer<xcb_get_input_focus_reply_t> answer(xcb_get_input_focus_reply(
        m_connection.xcb(), xcb_get_input_focus(m_connection.xcb()), nullptr));
    takeEvents();
}

void X11EventSource::takeEvents()
{
    bool hasOccurred = false;
    while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.xcb())})
        hasOccurred = m_matters(*event) || hasOccurred;
    // The socket of a lost server would be readable for ever.
    if (!m_connection.isOpen())
        m_notifier.setEnabled(false);
    if (!hasOccurred)
        return;
    takeEventsLater();
    m_occurred();
}

void X11EventSource::takeEventsLater()
{
    QMetaObject::invokeMethod(this, &X11EventSource::takeEvents, Qt::QueuedConnection);
}

} // namespace kestrova
