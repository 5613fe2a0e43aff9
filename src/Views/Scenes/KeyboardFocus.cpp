#include "Views/Scenes/KeyboardFocus.h"

#include <utility>

namespace kestrova {

namespace {

bool isUsable(const QQuickItem &item)
{
    return item.isVisible() && item.isEnabled();
}

} // namespace

KeyboardFocus::KeyboardFocus(QQuickWindow &window) : QObject(&window), m_window(window)
{
    connect(&window, &QQuickWindow::activeFocusItemChanged, this, &KeyboardFocus::follow);
}

void KeyboardFocus::follow()
{
    const QPointer<QQuickItem> last = std::exchange(m_item, m_window.activeFocusItem());
    if (last)
        disconnect(last, &QQuickItem::visibleChanged, this, nullptr);
    if (m_item)
        connect(m_item, &QQuickItem::visibleChanged, this, &KeyboardFocus::leaveUnusable);
    // Qt itself takes the keyboard off a disabled item, and gives it to the whole scope.
    const bool isDropped = last && m_item && !last->isEnabled() && m_item->isAncestorOf(last);
    if (isDropped)
        leave(*last);
    else
        leaveUnusable();
}

void KeyboardFocus::leaveUnusable()
{
    if (m_item && !isUsable(*m_item))
        leave(*m_item);
}

void KeyboardFocus::leave(QQuickItem &item)
{
    QQuickItem *around = item.parentItem();
    while (around && !isUsable(*around))
        around = around->parentItem();
    item.setFocus(false);
    if (around)
        around->forceActiveFocus();
}

} // namespace kestrova
