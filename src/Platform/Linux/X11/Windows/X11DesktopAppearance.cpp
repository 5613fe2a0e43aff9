#include "Platform/Linux/X11/Windows/X11DesktopAppearance.h"

#include "Platform/Linux/X11/Windows/XSettings.h"

#include <xcb/xfixes.h>

#include <utility>

namespace kestrova {

namespace {

// HighContrast is GNOME's and Xfce's theme, ContrastHigh MATE's; both have variants.
bool isHighContrastTheme(const QByteArray &name)
{
    return name.contains("HighContrast") || name.contains("ContrastHigh");
}

} // namespace

X11DesktopAppearance::X11DesktopAppearance(const QByteArray &displayName)
    : m_events(
          displayName, [](const auto &) { return true; }, [this] { lookAgain(); }, this),
      m_compositor(managerSelection("_NET_WM_CM_S")), m_settings(managerSelection("_XSETTINGS_S")),
      m_tray(managerSelection("_NET_SYSTEM_TRAY_S"))
{
    watchManagers();
    m_answers = read();
}

xcb_atom_t X11DesktopAppearance::managerSelection(const QByteArray &name)
{
    return m_connection.atom(name + QByteArray::number(m_connection.screenNumber()));
}

void X11DesktopAppearance::watchManagers()
{
    if (!m_connection.hasExtension(&xcb_xfixes_id))
        return;
    // The server refuses the extension to clients that have not told their version.
    xcb_xfixes_query_version(m_connection.xcb(), XCB_XFIXES_MAJOR_VERSION,
                             XCB_XFIXES_MINOR_VERSION);
    for (const xcb_atom_t selection : {m_compositor, m_settings, m_tray}) {
        xcb_xfixes_select_selection_input(
            m_connection.xcb(), m_connection.root(), selection,
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
}

xcb_window_t X11DesktopAppearance::owner(xcb_atom_t selection)
{
    const XcbPointer<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        m_connection.xcb(), xcb_get_selection_owner(m_connection.xcb(), selection), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

X11DesktopAppearance::Answers X11DesktopAppearance::read()
{
    Answers answers;
    answers.isCompositing = owner(m_compositor) != XCB_WINDOW_NONE;
    readSettings(answers);
    readTray(answers);
    return answers;
}

void X11DesktopAppearance::readSettings(Answers &answers)
{
    const xcb_window_t manager = owner(m_settings);
    if (manager == XCB_WINDOW_NONE)
        return;
    watchProperties(manager);
    const auto settings = xSettings(m_connection.bytes(manager, "_XSETTINGS_SETTINGS"));
    answers.reducesMotion = settings.value("Gtk/EnableAnimations", 1) == 0;
    answers.isHighContrast = isHighContrastTheme(settings.value("Net/ThemeName").toByteArray());
}

void X11DesktopAppearance::readTray(Answers &answers)
{
    answers.tray = owner(m_tray);
    if (answers.tray == XCB_WINDOW_NONE)
        return;
    watchProperties(answers.tray);
    // Red, green and blue of the text, 16 bits each, and then of three more colours.
    const QList<quint32> colors = m_connection.values(answers.tray, "_NET_SYSTEM_TRAY_COLORS");
    const auto byte = [&](qsizetype part) { return (colors[part] >> 8) & 0xff; };
    if (colors.size() >= 3)
        answers.trayTextColor = byte(0) << 16 | byte(1) << 8 | byte(2);
}

void X11DesktopAppearance::watchProperties(xcb_window_t manager)
{
    const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection.xcb(), manager, XCB_CW_EVENT_MASK, &mask);
}

void X11DesktopAppearance::lookAgain()
{
    const Answers answers = read();
    if (m_connection.isOpen() && std::exchange(m_answers, answers) != answers)
        Q_EMIT changed();
}

} // namespace kestrova
