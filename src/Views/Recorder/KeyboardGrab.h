#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWindow>

namespace kestrova {

/// Gives a window every key while it has the focus, also those that the window manager or another
/// program has taken for its shortcuts. The X server ends it with the process at the latest. Main
/// thread.
class KeyboardGrab final : public QObject
{
public:
    explicit KeyboardGrab(QWindow &window);
    ~KeyboardGrab() override;

private:
    void follow();

    const QPointer<QWindow> m_window;
    QTimer m_retry;
};

} // namespace kestrova
