#include "Platform/Linux/X11/Windows/X11Windowing.h"

#include "Platform/Linux/X11/Windows/X11KeyboardHold.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QWindow>

#include <algorithm>

namespace kestrova {

namespace {

xcb_window_t idOf(const QWindow &window)
{
    return static_cast<xcb_window_t>(window.winId());
}

/// From the pixels of all screens together to the logical ones of this screen.
QRect logical(const QRect &place, const QScreen &screen)
{
    const QPoint origin = screen.geometry().topLeft();
    const qreal scale = screen.devicePixelRatio();
    return {origin + (place.topLeft() - origin) / scale, place.size() / scale};
}

void cutHorizontally(QRect &rest, const QRect &screen, const QRect &panel)
{
    if (panel.top() - screen.top() <= screen.bottom() - panel.bottom())
        rest.setTop(std::max(rest.top(), panel.bottom() + 1));
    else
        rest.setBottom(std::min(rest.bottom(), panel.top() - 1));
}

void cutVertically(QRect &rest, const QRect &screen, const QRect &panel)
{
    if (panel.left() - screen.left() <= screen.right() - panel.right())
        rest.setLeft(std::max(rest.left(), panel.right() + 1));
    else
        rest.setRight(std::min(rest.right(), panel.left() - 1));
}

} // namespace

ScreenArea withoutPanel(const ScreenArea &screen, const QRect &panel)
{
    ScreenArea left = screen;
    if (!screen.geometry.contains(panel.center()))
        return left;
    if (panel.width() >= panel.height())
        cutHorizontally(left.available, screen.geometry, panel);
    else
        cutVertically(left.available, screen.geometry, panel);
    return left;
}

QList<ScreenArea> X11Windowing::screenAreas()
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    // The work area is that of all screens together, so that it tells something of a single one.
    const QList<QRect> panels = screens.size() > 1 ? m_windows.panels() : QList<QRect>();
    QList<ScreenArea> areas;
    for (const QScreen *screen : screens) {
        ScreenArea area{screen->geometry(), screen->availableGeometry()};
        for (const QRect &panel : panels)
            area = withoutPanel(area, logical(panel, *screen));
        areas.append(area);
    }
    return areas;
}

void X11Windowing::keepOffTaskBars(QWindow &window)
{
    m_windows.keepOffTaskBars(idOf(window));
}

void X11Windowing::declareShadow(QWindow &window, int margin)
{
    m_windows.declareShadow(idOf(window), qRound(margin * window.devicePixelRatio()));
}

bool X11Windowing::isMinimised(QWindow &window)
{
    return m_windows.isMinimised(idOf(window));
}

std::unique_ptr<Windowing::KeyboardHold> X11Windowing::holdKeyboard(QWindow &window)
{
    return std::make_unique<X11KeyboardHold>(window);
}

std::optional<quint32> X11Windowing::colorBehind(const QRect &icon)
{
    QScreen *screen = QGuiApplication::screenAt(icon.topLeft());
    if (icon.isEmpty() || !screen)
        return std::nullopt;
    const QPoint corner = icon.topLeft() - screen->geometry().topLeft();
    const QImage pixel = screen->grabWindow(0, corner.x(), corner.y(), 1, 1).toImage();
    if (pixel.isNull())
        return std::nullopt;
    return pixel.pixel(0, 0) & 0xFFFFFF;
}

} // namespace kestrova
