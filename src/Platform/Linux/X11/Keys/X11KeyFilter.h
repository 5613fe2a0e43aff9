#pragma once

#include "Platform/Keys/KeyEventHandlers.h"
#include "Platform/Linux/X11/Keys/PostedKeys.h"
#include "Platform/Linux/X11/Keys/X11KeyTranslation.h"

#include <QAbstractNativeEventFilter>

#include <optional>

namespace kestrova {

/// Reports the key events that Qt receives for our own windows, before Qt handles them. Installs
/// itself in the QCoreApplication. Main thread.
class X11KeyFilter final : public QAbstractNativeEventFilter
{
public:
    /// The connection is to the display that Qt shows its windows on. All three outlive this.
    X11KeyFilter(X11Connection &connection, PostedKeys &postedKeys,
                 const KeyEventHandlers &handlers);

    /// True when a handler has taken the key.
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    bool takePress(const xcb_key_press_event_t &press);
    bool takeRelease(const xcb_key_release_event_t &release);
    X11KeyTranslation &translation();

    X11Connection &m_connection;
    PostedKeys &m_postedKeys;
    const KeyEventHandlers &m_handlers;
    std::optional<X11KeyTranslation> m_translation; // read when it is needed
    xcb_key_release_event_t m_lastRelease = {};
};

} // namespace kestrova
