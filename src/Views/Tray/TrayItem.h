#pragma once

#include "Platform/DesktopAppearance.h"
#include "Platform/Windowing.h"
#include "Views/Tray/MenuBarIcon.h"

#include <QSystemTrayIcon>
#include <QTimer>

namespace kestrova {

/// The program's icon among those of the panel, in a colour that can be seen there. Main thread.
class TrayItem : public QObject
{
    Q_OBJECT

public:
    /// A panel takes the icon in and draws itself in its own time: how soon to look at its colour,
    /// and how long at most to wait for another look. Each wait is twice the one before.
    static constexpr std::chrono::milliseconds firstWait{100};
    static constexpr std::chrono::milliseconds longestWait{6400};

    /// Both outlive this.
    TrayItem(const DesktopAppearance &desktop, Windowing &windowing);

    /// Where the icon is on the screen; empty where the panel does not tell.
    QRect geometry() const { return m_icon.geometry(); }
    /// Whether there is a panel that shows the icon.
    static bool isShown() { return QSystemTrayIcon::isSystemTrayAvailable(); }

Q_SIGNALS:
    void clicked();

private:
    void activate(QSystemTrayIcon::ActivationReason reason);
    void startLooking();
    void look();
    void lookAgain();

    const DesktopAppearance &m_desktop;
    Windowing &m_windowing;
    QSystemTrayIcon m_icon;
    std::optional<MenuBarIconColors> m_colors; ///< in which the icon was drawn
    QTimer m_looking;
};

} // namespace kestrova
