#pragma once

#include <QAccessible>
#include <QQuickItem>

namespace kestrova {

/// What a screen reader calls the item; empty for what it does not see.
inline QString accessibleName(QQuickItem *item)
{
    const auto *interface = QAccessible::queryAccessibleInterface(item);
    return interface ? interface->text(QAccessible::Name) : QString();
}

/// The first shown item below the ancestor of this accessible name and, if one is given, role; null
/// when there is none.
inline QQuickItem *findShown(const QString &name, QQuickItem *ancestor,
                             QAccessible::Role role = QAccessible::NoRole)
{
    const auto isWanted = [&](QQuickItem *item) {
        return accessibleName(item) == name &&
               (role == QAccessible::NoRole ||
                QAccessible::queryAccessibleInterface(item)->role() == role);
    };
    for (QQuickItem *item : ancestor->childItems()) {
        if (!item->isVisible())
            continue;
        if (isWanted(item))
            return item;
        if (QQuickItem *found = findShown(name, item, role))
            return found;
    }
    return nullptr;
}

} // namespace kestrova
