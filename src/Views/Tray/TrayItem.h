#pragma once

#include "Platform/DesktopAppearance.h"
#include "Views/Tray/MenuBarIcon.h"

#include <QSystemTrayIcon>
#include <QTimer>

namespace kestrova {

/// The program's icon among those of the panel, in a colour that can be seen there. Main thread.
class TrayItem : public QObject
{
    Q_OBJECT

public:
    /// A panel takes the icon in and draws itself in its own time: how often to look at its colour
    /// meanwhile, and how many times.
    static constexpr std::chrono::milliseconds lookInterval{250};
    static constexpr int lookCount = 40;

    /// The desktop outlives this.
    explicit TrayItem(const DesktopAppearance &desktop);

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

    const DesktopAppearance &m_desktop;
    QSystemTrayIcon m_icon;
    std::optional<MenuBarIconColors> m_colors; ///< in which the icon was drawn
    QTimer m_looking;
    int m_looksLeft = 0;
};

} // namespace kestrova
