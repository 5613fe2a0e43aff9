#pragma once

#include "Platform/DesktopAppearance.h"
#include "Platform/Linux/X11/X11Connection.h"

#include <QSocketNotifier>

namespace kestrova {

/// What an X11 desktop tells through the owners of two selections: its compositing manager
/// (_NET_WM_CM_Sn) and its settings manager (_XSETTINGS_Sn). A desktop without them wants nothing.
/// Costs nothing while nothing changes; once the X server has gone, the answers stay.
class X11DesktopAppearance final : public DesktopAppearance
{
public:
    /// Changes are noticed from the moment when this returns, if the server has the XFIXES
    /// extension. An empty display name means $DISPLAY, whose server is needed.
    explicit X11DesktopAppearance(const QByteArray &displayName = {});

    bool isCompositing() const override { return m_answers.isCompositing; }
    bool reducesMotion() const override { return m_answers.reducesMotion; }
    bool isHighContrast() const override { return m_answers.isHighContrast; }

private:
    struct Answers
    {
        bool isCompositing = false;
        bool reducesMotion = false;
        bool isHighContrast = false;

        bool operator==(const Answers &) const = default;
    };

    xcb_atom_t managerSelection(const QByteArray &name);
    void watchManagers();
    xcb_window_t owner(xcb_atom_t selection);
    Answers read();
    bool dropEvents();
    void takeEvents();

    X11Connection m_connection; // of its own: its events are for this object
    const xcb_atom_t m_compositor;
    const xcb_atom_t m_settings;
    Answers m_answers;
    QSocketNotifier m_notifier;
};

} // namespace kestrova
