#include "Views/Tray/TrayItem.h"

#include <QColor>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

std::optional<QColor> colorOf(const std::optional<quint32> &rgb)
{
    return rgb ? std::optional(QColor::fromRgb(*rgb)) : std::nullopt;
}

} // namespace

TrayItem::TrayItem(const DesktopAppearance &desktop, Windowing &windowing)
    : m_desktop(desktop), m_windowing(windowing)
{
    m_icon.setToolTip(u"Kestrova"_s);
    connect(&m_icon, &QSystemTrayIcon::activated, this, &TrayItem::activate);
    connect(&m_desktop, &DesktopAppearance::changed, this, &TrayItem::startLooking);
    connect(&m_looking, &QTimer::timeout, this, &TrayItem::lookAgain);
    startLooking();
    m_icon.show();
}

void TrayItem::activate(QSystemTrayIcon::ActivationReason reason)
{
    look();
    // The second of two quick clicks comes as a double one.
    if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick ||
        reason == QSystemTrayIcon::Context)
        Q_EMIT clicked();
}

void TrayItem::startLooking()
{
    m_looking.start(firstWait);
    look();
}

void TrayItem::lookAgain()
{
    const auto wait = 2 * m_looking.intervalAsDuration();
    if (wait <= longestWait)
        m_looking.start(wait);
    else
        m_looking.stop();
    look();
}

void TrayItem::look()
{
    // In a corner of the icon there is nothing drawn.
    const auto colors = MenuBarIconColors::on(colorOf(m_desktop.trayTextColor()),
                                              colorOf(m_windowing.colorBehind(m_icon.geometry())));
    if (colors == m_colors)
        return;
    m_colors = colors;
    m_icon.setIcon(menuBarIcon(colors));
}

} // namespace kestrova
