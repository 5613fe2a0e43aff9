#pragma once

#include "Platform/Linux/X11/Connection/X11Connection.h"

#include <QObject>
#include <QSocketNotifier>

#include <functional>

namespace kestrova {

/// A connection to the X server whose events the event loop takes, of the thread that made it.
/// Costs nothing while none come, and ends silently with the server.
class X11EventSource final : public QObject
{
public:
    /// Called with each event, in order: whether it is one to be told of.
    using Matters = std::function<bool(const xcb_generic_event_t &event)>;

    /// Calls `occurred` after such events, once for several that come together; it may end this
    /// object. An empty display name means $DISPLAY.
    X11EventSource(const QByteArray &displayName, Matters matters, std::function<void()> occurred,
                   QObject *parent = nullptr);

    /// Answers bring events along, of which the socket does not tell. So requests with answers may
    /// be made before the event loop comes to this object, and while `occurred` is called.
    X11Connection &connection() { return m_connection; }
    /// Takes every event up to now, those that the server has not sent yet too: one round trip.
    void synchronize();

private:
    void takeEvents();
    void takeEventsLater();

    X11Connection m_connection;
    const Matters m_matters;
    const std::function<void()> m_occurred;
    QSocketNotifier m_notifier;
};

} // namespace kestrova
