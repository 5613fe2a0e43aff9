#pragma once

#include <QSystemTrayIcon>

namespace kestrova {

/// The program's icon among those of the panel. Main thread.
class TrayItem : public QObject
{
    Q_OBJECT

public:
    TrayItem();

    /// Where the icon is on the screen; empty where the panel does not tell.
    QRect geometry() const { return m_icon.geometry(); }
    /// Whether there is a panel that shows the icon.
    static bool isShown() { return QSystemTrayIcon::isSystemTrayAvailable(); }

Q_SIGNALS:
    void clicked();

private:
    QSystemTrayIcon m_icon;
};

} // namespace kestrova
