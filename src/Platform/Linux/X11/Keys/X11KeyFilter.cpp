#include "Platform/Linux/X11/Keys/X11KeyFilter.h"

#include "Platform/Linux/X11/Keys/XkbKeymap.h"

#include <QCoreApplication>

namespace kestrova {

X11KeyFilter::X11KeyFilter(X11Connection &connection, PostedKeys &postedKeys,
                           const KeyEventHandlers &handlers)
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
        return takePress(reinterpret_cast<const xcb_key_press_event_t &>(event));
    if (type == XCB_KEY_RELEASE)
        return takeRelease(reinterpret_cast<const xcb_key_release_event_t &>(event));
    if (isKeymapChange(m_connection, event))
        m_translation.reset();
    return false;
}

bool X11KeyFilter::takePress(const xcb_key_press_event_t &press)
{
    if (m_postedKeys.take(PostedKeys::ofOwnWindows, {true, press.detail}, press.time))
        return false;
    auto event = translation().pressed(press.detail, press.state);
    if (!event)
        return false;
    // A repeat comes to Qt as a release and a press of the same time.
    event->isRepeat = m_lastRelease.detail == press.detail && m_lastRelease.time == press.time;
    return m_handlers.call(*event);
}

bool X11KeyFilter::takeRelease(const xcb_key_release_event_t &release)
{
    m_lastRelease = release;
    if (m_postedKeys.take(PostedKeys::ofOwnWindows, {false, release.detail}, release.time))
        return false;
    const auto event = translation().released(release.detail);
    return event && m_handlers.call(*event);
}

X11KeyTranslation &X11KeyFilter::translation()
{
    if (!m_translation)
        m_translation.emplace(m_connection);
    return *m_translation;
}

} // namespace kestrova
