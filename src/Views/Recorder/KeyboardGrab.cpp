#include "Views/Recorder/KeyboardGrab.h"

#include <QGuiApplication>

namespace kestrova {

using namespace std::chrono_literals;

namespace {

/// How often to try while another program has the keyboard, as a window manager does while the user
/// switches windows by its keys.
constexpr auto retryInterval = 50ms;

} // namespace

KeyboardGrab::KeyboardGrab(QWindow &window, std::chrono::milliseconds idleLimit) : m_window(&window)
{
    m_idle.setSingleShot(true);
    m_idle.setInterval(idleLimit);
    connect(&m_idle, &QTimer::timeout, this, [this] {
        follow();
        QGuiApplication::sync(); // Qt sends it only with the next event
    });
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &KeyboardGrab::follow);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &KeyboardGrab::follow);
    renew();
}

KeyboardGrab::~KeyboardGrab()
{
    if (m_window)
        m_window->setKeyboardGrabEnabled(false);
}

void KeyboardGrab::renew()
{
    m_idle.start();
    follow();
}

void KeyboardGrab::follow()
{
    if (!m_window)
        return;
    const bool wantsKeys = QGuiApplication::focusWindow() == m_window && m_idle.isActive();
    if (!m_window->setKeyboardGrabEnabled(wantsKeys) && wantsKeys)
        m_retry.start(retryInterval);
}

} // namespace kestrova
