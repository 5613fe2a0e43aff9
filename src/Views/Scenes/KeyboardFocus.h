#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>

namespace kestrova {

/// Keeps the keys of a window from what cannot be used: when the item that has the keyboard is
/// hidden or disabled, the nearest item around it that is still there gets it. That one does
/// nothing of its own, and Tab goes on from there. Belongs to the window.
class KeyboardFocus : public QObject
{
public:
    explicit KeyboardFocus(QQuickWindow &window);

private:
    void follow();
    void leaveUnusable();
    static void leave(QQuickItem &item);

    QQuickWindow &m_window;
    QPointer<QQuickItem> m_item;
};

} // namespace kestrova
