#include "Platform/Linux/X11/Windows/X11Windows.h"

#include "Platform/Linux/Applications/ProcessStatus.h"
#include "Platform/Linux/X11/Connection/X11ClientProcess.h"
#include "Platform/Linux/X11/Connection/X11ServerTime.h"

#include <unistd.h>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 onAllDesktops = 0xFFFFFFFF;
/// The id of our own desktop entry, which our windows have even when it is not installed.
constexpr QLatin1StringView ownBundleIdentifier("com.kestrova.app");
constexpr QLatin1StringView ownName("Kestrova");
/// Source indication of _NET_ACTIVE_WINDOW: pagers act for the user, so they are not refused.
constexpr quint32 fromPager = 2;

DesktopEntry ownEntry()
{
    DesktopEntry entry;
    entry.identifier = ownBundleIdentifier;
    entry.name = ownName;
    return entry;
}

} // namespace

QList<xcb_window_t> X11Windows::stacked()
{
    const auto managed = m_connection.values(m_connection.root(), "_NET_CLIENT_LIST_STACKING");
    return managed.isEmpty() ? m_connection.values(m_connection.root(), "_NET_CLIENT_LIST")
                             : managed;
}

QList<X11Window> X11Windows::all()
{
    QList<X11Window> windows;
    for (const xcb_window_t window : stacked())
        windows.append(describe(window));
    return windows;
}

QList<X11Window> X11Windows::ofProcess(qint32 processIdentifier)
{
    QList<X11Window> windows;
    for (const xcb_window_t window : stacked()) {
        if (windowProcess(m_connection, window) == processIdentifier)
            windows.append(describe(window));
    }
    return windows;
}

std::optional<X11Window> X11Windows::active()
{
    const xcb_window_t window = m_connection.value(m_connection.root(), "_NET_ACTIVE_WINDOW");
    if (window == XCB_WINDOW_NONE ||
        !m_connection.values(m_connection.root(), "_NET_CLIENT_LIST").contains(window))
        return std::nullopt;
    return describe(window);
}

QString X11Windows::title(xcb_window_t window)
{
    const QString title = m_connection.text(window, "_NET_WM_NAME");
    return title.isEmpty() ? m_connection.text(window, "WM_NAME") : title;
}

X11Window X11Windows::describe(xcb_window_t window)
{
    X11Window result;
    result.window = window;
    result.processIdentifier = windowProcess(m_connection, window);
    std::tie(result.instanceName, result.className) = classOf(window);
    const QList<quint32> states = m_connection.values(window, "_NET_WM_STATE");
    result.isInTaskBar = isInTaskBar(window, states);
    result.isMinimised = states.contains(m_connection.atom("_NET_WM_STATE_HIDDEN"));
    identify(result);
    return result;
}

void X11Windows::identify(X11Window &window)
{
    if (const auto entry = application(window)) {
        window.bundleIdentifier = entry->identifier;
        window.localizedName = entry->name;
    } else if (!window.className.isEmpty()) {
        window.localizedName = window.className;
    } else if (const auto process = processStatus(window.processIdentifier)) {
        window.localizedName = process->name;
    }
}

std::optional<DesktopEntry> X11Windows::application(const X11Window &window)
{
    if (window.processIdentifier == getpid())
        return m_entries.application(ownBundleIdentifier).value_or(ownEntry());

    WindowClues clues{m_connection.text(window.window, "_GTK_APPLICATION_ID"), window.instanceName,
                      window.className, executablePath(window.processIdentifier)};
    if (auto entry = m_entries.application(clues))
        return entry;
    // A dialog may have a class of its own but belongs to the application of the window it is for.
    const xcb_window_t leader = m_connection.value(window.window, "WM_TRANSIENT_FOR");
    if (leader == XCB_WINDOW_NONE)
        return std::nullopt;
    clues.gtkApplicationId = m_connection.text(leader, "_GTK_APPLICATION_ID");
    std::tie(clues.instanceName, clues.className) = classOf(leader);
    return m_entries.application(clues);
}

std::pair<QString, QString> X11Windows::classOf(xcb_window_t window)
{
    const QStringList names = m_connection.text(window, "WM_CLASS").split(u'\0');
    return {names.value(0), names.value(1)};
}

bool X11Windows::isInTaskBar(xcb_window_t window, const QList<quint32> &states)
{
    if (states.contains(m_connection.atom("_NET_WM_STATE_SKIP_TASKBAR")))
        return false;
    const QList<quint32> types = m_connection.values(window, "_NET_WM_WINDOW_TYPE");
    if (types.isEmpty())
        return m_connection.value(window, "WM_TRANSIENT_FOR") == XCB_WINDOW_NONE;
    return types.contains(m_connection.atom("_NET_WM_WINDOW_TYPE_NORMAL"));
}

void X11Windows::activate(xcb_window_t window)
{
    const xcb_timestamp_t now = serverTime(m_connection);
    const quint32 current = m_connection.value(m_connection.root(), "_NET_CURRENT_DESKTOP");
    const QList<quint32> desktop = m_connection.values(window, "_NET_WM_DESKTOP");
    if (!desktop.isEmpty() && desktop.first() != onAllDesktops && desktop.first() != current)
        m_connection.sendToRoot(m_connection.root(), "_NET_CURRENT_DESKTOP",
                                {desktop.first(), now});
    m_connection.sendToRoot(window, "_NET_ACTIVE_WINDOW", {fromPager, now});
}

void X11Windows::keepOffTaskBars(xcb_window_t window)
{
    // Whoever shows the window adds to these states.
    replace(window, "_NET_WM_STATE", XCB_ATOM_ATOM,
            {m_connection.atom("_NET_WM_STATE_SKIP_TASKBAR"),
             m_connection.atom("_NET_WM_STATE_SKIP_PAGER")});
}

void X11Windows::declareShadow(xcb_window_t window, int margin)
{
    replace(window, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, QList<quint32>(4, quint32(margin)));
}

void X11Windows::replace(xcb_window_t window, const QByteArray &property, xcb_atom_t type,
                         const QList<quint32> &values)
{
    const auto cookie = xcb_change_property_checked(m_connection.xcb(), XCB_PROP_MODE_REPLACE,
                                                    window, m_connection.atom(property), type, 32,
                                                    quint32(values.size()), values.data());
    XcbPointer<xcb_generic_error_t>(xcb_request_check(m_connection.xcb(), cookie));
}

bool X11Windows::isMinimised(xcb_window_t window)
{
    constexpr quint32 iconicState = 3;
    return m_connection.value(window, "WM_STATE") == iconicState;
}

QList<QRect> X11Windows::panels()
{
    QList<QRect> places;
    for (const xcb_window_t window : stacked()) {
        const QList<quint32> types = m_connection.values(window, "_NET_WM_WINDOW_TYPE");
        if (types.contains(m_connection.atom("_NET_WM_WINDOW_TYPE_DOCK")))
            places.append(place(window));
    }
    return places;
}

QRect X11Windows::place(xcb_window_t window)
{
    xcb_connection_t *xcb = m_connection.xcb();
    const auto size = xcb_get_geometry(xcb, window);
    const auto origin = xcb_translate_coordinates(xcb, window, m_connection.root(), 0, 0);
    const XcbPointer<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(xcb, size, nullptr));
    const XcbPointer<xcb_translate_coordinates_reply_t> corner(
        xcb_translate_coordinates_reply(xcb, origin, nullptr));
    return geometry && corner
               ? QRect(corner->dst_x, corner->dst_y, geometry->width, geometry->height)
               : QRect();
}

} // namespace kestrova
