#include "Views/Popover/PopoverPlacement.h"

#include <algorithm>
#include <array>

namespace kestrova {

namespace {

using Distances = std::array<int, 4>; // to each edge, in the order of ScreenEdge

/// From the sides of the outer rectangle to those of the inner one.
Distances distances(const QRect &outer, const QRect &inner)
{
    return {inner.top() - outer.top(), outer.bottom() - inner.bottom(), inner.left() - outer.left(),
            outer.right() - inner.right()};
}

bool hasPanel(const ScreenArea &screen)
{
    return screen.available != screen.geometry;
}

ScreenEdge thickestPanel(const ScreenArea &screen)
{
    const Distances panels = distances(screen.geometry, screen.available);
    return ScreenEdge(std::ranges::max_element(panels) - panels.begin());
}

/// The panel under the point, else the nearest edge: on several screens the work area often does
/// not tell of panels.
ScreenEdge edgeAt(const QPoint &point, const ScreenArea &screen)
{
    const QRect spot(point, QSize(1, 1));
    const Distances inward = distances(screen.available, spot);
    if (const auto panel = std::ranges::find_if(inward, [](int d) { return d < 0; });
        panel != inward.end())
        return ScreenEdge(panel - inward.begin());
    const Distances toEdges = distances(screen.geometry, spot);
    return ScreenEdge(std::ranges::min_element(toEdges) - toEdges.begin());
}

/// Keeps a length within its bounds; at their start when it is longer.
int kept(int start, int length, int lower, int upper)
{
    return std::max(lower, std::min(start, upper - length));
}

} // namespace

PopoverPlacement::PopoverPlacement(const QRect &trayItem, const std::optional<QPoint> &clicked,
                                   const QList<ScreenArea> &screens)
{
    if (!trayItem.isEmpty() && standAt(trayItem, screens))
        return;
    if (clicked && standAt(QRect(*clicked, QSize(1, 1)), screens))
        return;
    standAtCorner(screens);
}

bool PopoverPlacement::standAt(const QRect &anchor, const QList<ScreenArea> &screens)
{
    const QPoint centre = anchor.center();
    const auto screen = std::ranges::find_if(
        screens, [&](const ScreenArea &area) { return area.geometry.contains(centre); });
    if (screen == screens.end())
        return false;
    m_screen = *screen;
    m_anchor = anchor;
    m_edge = edgeAt(centre, m_screen);
    return true;
}

void PopoverPlacement::standAtCorner(const QList<ScreenArea> &screens)
{
    const auto withPanel = std::ranges::find_if(screens, hasPanel);
    m_screen = withPanel != screens.end() ? *withPanel : screens.first();
    m_edge = thickestPanel(m_screen);
    const QRect &all = m_screen.geometry;
    const QPoint corner = m_edge == ScreenEdge::top    ? all.topRight()
                          : m_edge == ScreenEdge::left ? all.bottomLeft()
                                                       : all.bottomRight();
    m_anchor = QRect(corner, QSize(0, 0));
}

QPoint PopoverPlacement::position(const QSize &popover) const
{
    const QRect within = m_screen.available.adjusted(distance, distance, -distance, -distance);
    QPoint place = m_anchor.center() - QPoint(popover.width() / 2, popover.height() / 2);
    switch (m_edge) {
    case ScreenEdge::top:
        place.setY(m_anchor.bottom() + 1 + distance);
        break;
    case ScreenEdge::bottom:
        place.setY(m_anchor.top() - distance - popover.height());
        break;
    case ScreenEdge::left:
        place.setX(m_anchor.right() + 1 + distance);
        break;
    case ScreenEdge::right:
        place.setX(m_anchor.left() - distance - popover.width());
        break;
    }
    return {kept(place.x(), popover.width(), within.left(), within.right() + 1),
            kept(place.y(), popover.height(), within.top(), within.bottom() + 1)};
}

} // namespace kestrova
