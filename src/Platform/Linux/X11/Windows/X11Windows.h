#pragma once

#include "Platform/Linux/Applications/DesktopEntries.h"
#include "Platform/Linux/X11/Connection/X11Connection.h"

#include <QRect>

#include <optional>
#include <utility>

namespace kestrova {

/// A window that the window manager manages, as seen at one moment.
struct X11Window
{
    xcb_window_t window = XCB_WINDOW_NONE;
    qint32 processIdentifier = 0; ///< of a live process; 0 when not known, as on another machine
    std::optional<QString> bundleIdentifier; ///< none when no installed application matches
    std::optional<QString> localizedName;    ///< of the application
    QString instanceName;                    ///< first part of WM_CLASS
    QString className;                       ///< second part of WM_CLASS
    bool isInTaskBar = false;                ///< an ordinary window that task bars show
    bool isMinimised = false;
};

/// The windows of the desktop and the applications that they belong to. Usable from any thread;
/// every answer costs a few round trips to the X server per window. The hints are those of the
/// freedesktop.org Extended Window Manager Hints.
class X11Windows
{
public:
    /// Both outlive this.
    X11Windows(X11Connection &connection, DesktopEntries &entries)
        : m_connection(connection), m_entries(entries)
    {
    }

    /// Every managed window, the topmost last.
    QList<X11Window> all();
    /// The managed windows of this process, the topmost last.
    QList<X11Window> ofProcess(qint32 processIdentifier);
    /// The window that has the keyboard; none when no managed window has it. A window manager may
    /// go on naming a window that is gone.
    std::optional<X11Window> active();
    /// The title as window managers show it.
    QString title(xcb_window_t window);

    /// Asks the window manager to show the window on top with the keyboard: on its own desktop,
    /// which is switched to, and also when it is minimised.
    void activate(xcb_window_t window);
    /// Before the window is shown: asks the window manager to leave it out of task bars and window
    /// switchers. The server knows when this returns.
    void keepOffTaskBars(xcb_window_t window);
    /// Tells the window manager how many pixels of the window are a shadow on every side, as GTK
    /// does (_GTK_FRAME_EXTENTS). The server knows when this returns.
    void declareShadow(xcb_window_t window, int margin);
    /// Whether the window manager has made it an icon (ICCCM 4.1.3.1).
    bool isMinimised(xcb_window_t window);
    /// Where the windows of the type "dock" are.
    QList<QRect> panels();

private:
    void replace(xcb_window_t window, const QByteArray &property, xcb_atom_t type,
                 const QList<quint32> &values);
    QList<xcb_window_t> stacked();
    X11Window describe(xcb_window_t window);
    void identify(X11Window &window);
    std::optional<DesktopEntry> application(const X11Window &window);
    std::pair<QString, QString> classOf(xcb_window_t window);
    QRect place(xcb_window_t window);
    bool isInTaskBar(xcb_window_t window, const QList<quint32> &states);

    X11Connection &m_connection;
    DesktopEntries &m_entries;
};

} // namespace kestrova
