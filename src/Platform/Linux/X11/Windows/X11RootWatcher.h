#pragma once

#include "Platform/Linux/X11/Connection/X11EventSource.h"

#include <QByteArrayList>

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
    bool isChange(const xcb_generic_event_t &event) const;

    X11EventSource m_events;
    QList<xcb_atom_t> m_properties;
};

} // namespace kestrova
