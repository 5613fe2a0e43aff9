#pragma once

#include "Platform/DesktopAppearance.h"
#include "Platform/Linux/X11/Connection/X11EventSource.h"

namespace kestrova {

/// What an X11 desktop tells through the owners of three selections: its compositing manager
/// (_NET_WM_CM_Sn), its settings manager (_XSETTINGS_Sn) and its tray (_NET_SYSTEM_TRAY_Sn). A
/// desktop without them wants nothing. Costs nothing while nothing changes; once the X server has
/// gone, the answers stay.
class X11DesktopAppearance final : public DesktopAppearance
{
public:
    /// Changes are noticed from the moment when this returns, if the server has the XFIXES
    /// extension. An empty display name means $DISPLAY, whose server is needed.
    explicit X11DesktopAppearance(const QByteArray &displayName = {});

    bool isCompositing() const override { return m_answers.isCompositing; }
    bool reducesMotion() const override { return m_answers.reducesMotion; }
    bool isHighContrast() const override { return m_answers.isHighContrast; }
    std::optional<quint32> trayTextColor() const override { return m_answers.trayTextColor; }

private:
    struct Answers
    {
        bool isCompositing = false;
        bool reducesMotion = false;
        bool isHighContrast = false;
        xcb_window_t tray = XCB_WINDOW_NONE;
        std::optional<quint32> trayTextColor;

        bool operator==(const Answers &) const = default;
    };

    xcb_atom_t managerSelection(const QByteArray &name);
    void watchManagers();
    xcb_window_t owner(xcb_atom_t selection);
    Answers read();
    void readSettings(Answers &answers);
    void readTray(Answers &answers);
    void watchProperties(xcb_window_t manager);
    void lookAgain();

    X11EventSource m_events;
    X11Connection &m_connection = m_events.connection();
    const xcb_atom_t m_compositor;
    const xcb_atom_t m_settings;
    const xcb_atom_t m_tray;
    Answers m_answers;
};

} // namespace kestrova
