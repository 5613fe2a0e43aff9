#pragma once

#include <QColor>
#include <QIcon>

#include <optional>

namespace kestrova {

/// In which colours the tray item's lines are drawn.
struct MenuBarIconColors
{
    QColor line;
    QColor outline; ///< not valid: none

    /// The tray's own text colour if it tells one, else what contrasts with the panel; where the
    /// panel is not known either, lines with an outline, which can be made out on any.
    static MenuBarIconColors on(const std::optional<QColor> &trayText,
                                const std::optional<QColor> &panel);

    bool operator==(const MenuBarIconColors &) const = default;
};

/// The four lines of the program's sign in the middle of a square, sharp at any size.
QIcon menuBarIcon(const MenuBarIconColors &colors);

} // namespace kestrova
