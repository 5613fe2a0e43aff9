#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>

namespace kestrova {

/// Owns what xcb hands out: replies, events and errors.
struct XcbFree
{
    void operator()(void *memory) const { std::free(memory); }
};
template <typename T>
using XcbPointer = std::unique_ptr<T, XcbFree>;

/// A connection to an X server, usable from any thread. Nothing here throws: without a server, and
/// once the server has gone, readers give empty results and requests do nothing.
///
/// The property and atom names are those of the ICCCM and of the freedesktop.org Extended Window
/// Manager Hints.
class X11Connection
{
public:
    /// Connects to the display of this name, or to the one that $DISPLAY names when it is empty.
    explicit X11Connection(const QByteArray &displayName = {});
    ~X11Connection();
    X11Connection(const X11Connection &) = delete;
    X11Connection &operator=(const X11Connection &) = delete;

    /// False when connecting failed, and from the moment the loss of the server was noticed.
    bool isOpen() const;
    /// The default screen's number, which the names of its managers' selections end with.
    int screenNumber() const { return m_screenNumber; }
    /// For requests that this class does not wrap. Never null; owned by this object.
    xcb_connection_t *xcb() const { return m_connection; }
    /// The default screen; null when connecting failed.
    const xcb_screen_t *screen() const { return m_screen; }
    /// The default screen's root window; XCB_WINDOW_NONE when connecting failed.
    xcb_window_t root() const;
    /// To be asked before an extension's first request: a request of one that the server does not
    /// have closes the connection.
    bool hasExtension(xcb_extension_t *extension) const;

    /// XCB_ATOM_NONE when the server has gone. Asks the server only the first time.
    xcb_atom_t atom(const QByteArray &name);

    /// The values of a 32-bit property (CARDINAL, WINDOW, ATOM, ...); empty when the window or the
    /// property does not exist or has another format.
    QList<quint32> values(xcb_window_t window, const QByteArray &property);
    /// The first of values(), 0 when there is none.
    quint32 value(xcb_window_t window, const QByteArray &property);
    /// An 8-bit property as it is.
    QByteArray bytes(xcb_window_t window, const QByteArray &property);
    /// A text property: UTF8_STRING as UTF-8, any other 8-bit type as Latin-1. The parts of a list
    /// are separated by U+0000, as they are in the property.
    QString text(xcb_window_t window, const QByteArray &property);

    /// Sends a client message about the window to the root window, where the window manager takes
    /// it, and flushes.
    void sendToRoot(xcb_window_t window, const QByteArray &messageType,
                    const std::array<quint32, 5> &data);

private:
    XcbPointer<xcb_get_property_reply_t> property(xcb_window_t window, const QByteArray &name);

    xcb_connection_t *m_connection;
    int m_screenNumber = 0;
    const xcb_screen_t *m_screen = nullptr;
    std::mutex m_mutex;
    std::map<QByteArray, xcb_atom_t> m_atoms;
};

} // namespace kestrova
