#pragma once

#include "Platform/Windowing.h"

#include <QList>
#include <QRect>

#include <optional>

namespace kestrova {

enum class ScreenEdge { top, bottom, left, right };

/// Where the popover stands, in logical pixels: beside the tray item, off the panel and within the
/// work area.
class PopoverPlacement
{
public:
    /// Between the popover and the panel, and at least to every side of the work area.
    static constexpr int distance = 8;
    /// Of the work area's height.
    static constexpr double largestShare = 0.8;

    /// The tray item counts where it is not empty and on a screen, else the place where it was
    /// clicked, else the far corner of the first panel. There is at least one screen.
    PopoverPlacement(const QRect &trayItem, const std::optional<QPoint> &clicked,
                     const QList<ScreenArea> &screens);

    /// Where the panel is.
    ScreenEdge edge() const { return m_edge; }
    int maximumHeight() const { return int(m_screen.available.height() * largestShare); }
    /// The top left corner of a popover of this size.
    QPoint position(const QSize &popover) const;

private:
    bool standAt(const QRect &anchor, const QList<ScreenArea> &screens);
    void standAtCorner(const QList<ScreenArea> &screens);

    ScreenArea m_screen;
    QRect m_anchor;
    ScreenEdge m_edge = ScreenEdge::top;
};

} // namespace kestrova
