#pragma once

#include "Platform/Linux/X11/Connection/X11Connection.h"

#include <QByteArrayList>
#include <QObject>
#include <QSocketNotifier>

#include <functional>

namespace kestrova {

/// Calls back whenever one of some properties of the root window has changed, by the event loop of
/// the thread that made it; several quick changes may come as one. Costs nothing while nothing
/// changes. Ends silently with the X server.
class X11RootWatcher
{
public:
    /// Changes are noticed from the moment when this returns. An empty display name means $DISPLAY.
    X11RootWatcher(const QByteArray &displayName, const QByteArrayList &properties,
                   std::function<void()> changed);

private:
    void takeEvents();

    // Of its own and without requests: reading a reply could take events off the socket, which
    // would then not become readable.
    X11Connection m_connection;
    QList<xcb_atom_t> m_properties;
    const std::function<void()> m_changed;
    QSocketNotifier m_notifier;
};

} // namespace kestrova
