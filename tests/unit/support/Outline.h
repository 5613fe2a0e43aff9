#pragma once

#include <QQuickWindow>

namespace kestrova {

/// What a screen reader finds in a window, in its order, a line each: the role, the name, and
/// "(disabled)", "(checked)" or "(selected)" where it is so. What has no name is left out.
QStringList outline(QQuickWindow &window);

/// The names of the symbols that are drawn, in the same order.
QStringList symbols(QQuickWindow &window);

/// The visible item of this line of the outline; null when there is none.
QQuickItem *findItem(QQuickWindow &window, const QString &line);

/// Presses it as assistive technology does; false when there is nothing to press.
bool pressItem(QQuickWindow &window, const QString &line);

} // namespace kestrova
