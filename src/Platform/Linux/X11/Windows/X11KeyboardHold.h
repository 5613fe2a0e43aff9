#pragma once

#include "Platform/Windowing.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWindow>

#include <chrono>

namespace kestrova {

/// A grab of the keyboard, tried again while another program has it.
class X11KeyboardHold final : public QObject, public Windowing::KeyboardHold
{
public:
    static constexpr std::chrono::seconds standardIdleLimit{30};

    explicit X11KeyboardHold(QWindow &window,
                             std::chrono::milliseconds idleLimit = standardIdleLimit);
    ~X11KeyboardHold() override;

    void renew() override;

private:
    void follow();
    void release();

    const QPointer<QWindow> m_window;
    QTimer m_idle; // runs while the window may have the keyboard
    QTimer m_retry;
};

} // namespace kestrova
