#pragma once

#include "Platform/Linux/X11/Connection/X11Connection.h"

namespace kestrova {

/// A manager of the desktop, such as a compositing or a settings manager, which is known by the
/// selection that its window owns. It ends with this object. What it does is done when the call
/// returns.
class SelectionManager
{
public:
    explicit SelectionManager(const QByteArray &selection, const QByteArray &displayName = {});

    /// A property of the window; its type has the same name.
    void publish(const QByteArray &property, const QByteArray &bytes);
    void publishNumbers(const QByteArray &property, const QList<quint32> &numbers);

private:
    void waitForServer();

    X11Connection m_connection;
    xcb_window_t m_window;
};

} // namespace kestrova
