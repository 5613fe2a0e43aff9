#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWindow>

#include <chrono>

namespace kestrova {

/// Gives a window every key while it has the focus, also those that the window manager or another
/// program has taken for its shortcuts. It ends when no key comes, because nothing else could have
/// the keyboard meanwhile, not even a screen locker; the X server ends it with the process at the
/// latest. Main thread.
class KeyboardGrab final : public QObject
{
public:
    static constexpr std::chrono::seconds standardIdleLimit{30};

    explicit KeyboardGrab(QWindow &window, std::chrono::milliseconds idleLimit = standardIdleLimit);
    ~KeyboardGrab() override;

    /// A key has come: starts the limit, and the grab, anew.
    void renew();

private:
    void follow();
    void release();

    const QPointer<QWindow> m_window;
    QTimer m_idle; // runs while the window may have the keyboard
    QTimer m_retry;
};

} // namespace kestrova
