#include "Views/Tray/TrayItem.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// The panel's colour behind the icon, in a corner of which there is nothing drawn.
std::optional<QColor> panelColor(const QRect &icon)
{
    QScreen *screen = QGuiApplication::screenAt(icon.topLeft());
    if (icon.isEmpty() || !screen)
        return std::nullopt;
    const QPoint corner = icon.topLeft() - screen->geometry().topLeft();
    const QImage pixel = screen->grabWindow(0, corner.x(), corner.y(), 1, 1).toImage();
    return pixel.isNull() ? std::nullopt : std::optional(pixel.pixelColor(0, 0));
}

std::optional<QColor> trayTextColor(const DesktopAppearance &desktop)
{
    const auto color = desktop.trayTextColor();
    return color ? std::optional(QColor::fromRgb(*color)) : std::nullopt;
}

} // namespace

TrayItem::TrayItem(const DesktopAppearance &desktop) : m_desktop(desktop)
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
    const auto colors =
        MenuBarIconColors::on(trayTextColor(m_desktop), panelColor(m_icon.geometry()));
    if (colors == m_colors)
        return;
    m_colors = colors;
    m_icon.setIcon(menuBarIcon(colors));
}

} // namespace kestrova
