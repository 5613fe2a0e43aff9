#pragma once

#include "Platform/Linux/X11/Connection/X11Connection.h"

#include <QProcess>

namespace kestrova {

/// Another application, with windows of its own on $DISPLAY. Ends with this object.
class WindowProgram
{
public:
    /// Returns once the window manager has given the keyboard to the last of its windows.
    WindowProgram(X11Connection &connection, const QString &instanceName, const QString &className,
                  int windowCount = 1);
    ~WindowProgram();

    qint32 processIdentifier() const;
    /// In the order of their creation.
    const QList<xcb_window_t> &windows() const { return m_windows; }

    /// All return once the window manager has done it.
    void minimise(xcb_window_t window);
    void moveToDesktop(xcb_window_t window, quint32 desktop);
    void kill();

    void setText(xcb_window_t window, const QByteArray &property, const QByteArray &text);
    void setValue(xcb_window_t window, const QByteArray &property, const QByteArray &type,
                  quint32 value);
    void remove(xcb_window_t window, const QByteArray &property);

private:
    bool isManaged(xcb_window_t window);

    X11Connection &m_connection;
    QProcess m_process;
    QList<xcb_window_t> m_windows;
};

} // namespace kestrova
