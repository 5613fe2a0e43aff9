#include "Platform/Linux/X11/X11KeyFilter.h"

#include "Platform/Linux/X11/XkbKeymap.h"

#include <QCoreApplication>

namespace kestrova {

X11KeyFilter::X11KeyFilter(X11Connection &connection, PostedKeys &postedKeys,
                           const KeyDownHandlers &handlers)
    : m_connection(connection), m_postedKeys(postedKeys), m_handlers(handlers)
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

bool X11KeyFilter::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto &event = *static_cast<const xcb_generic_event_t *>(message);
    const int type = event.response_type & 0x7F;
    if (type == XCB_KEY_PRESS)
        return takeKeyPress(reinterpret_cast<const xcb_key_press_event_t &>(event));
    if (type == XCB_KEY_RELEASE)
        m_lastRelease = reinterpret_cast<const xcb_key_release_event_t &>(event);
    else if (isKeymapChange(m_connection, event))
        m_translation.reset();
    return false;
}

bool X11KeyFilter::takeKeyPress(const xcb_key_press_event_t &press)
{
    if (m_postedKeys.take(PostedKeys::ofOwnWindows, press.detail, press.time))
        return false;
    if (!m_translation)
        m_translation.emplace(m_connection);
    auto event = m_translation->keyDown(press.detail, press.state);
    if (!event)
        return false;
    // A repeat comes to Qt as a release and a press of the same time.
    event->isRepeat = m_lastRelease.detail == press.detail && m_lastRelease.time == press.time;
    return m_handlers.call(*event);
}

} // namespace kestrova
