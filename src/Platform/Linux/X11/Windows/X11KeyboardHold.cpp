#include "Platform/Linux/X11/Windows/X11KeyboardHold.h"

#include <QCursor>
#include <QGuiApplication>

namespace kestrova {

using namespace std::chrono_literals;

namespace {

/// How often to try while another program has the keyboard, as a window manager does while the user
/// switches windows by its keys.
constexpr auto retryInterval = 50ms;

} // namespace

X11KeyboardHold::X11KeyboardHold(QWindow &window, std::chrono::milliseconds idleLimit)
    : m_window(&window)
{
    m_idle.setSingleShot(true);
    m_idle.setInterval(idleLimit);
    connect(&m_idle, &QTimer::timeout, this, &X11KeyboardHold::follow);
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &X11KeyboardHold::follow);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &X11KeyboardHold::follow);
    renew();
}

X11KeyboardHold::~X11KeyboardHold()
{
    if (m_window)
        release();
}

void X11KeyboardHold::renew()
{
    m_idle.start();
    follow();
}

void X11KeyboardHold::follow()
{
    if (!m_window)
        return;
    if (QGuiApplication::focusWindow() != m_window || !m_idle.isActive())
        release();
    else if (!m_window->setKeyboardGrabEnabled(true))
        m_retry.start(retryInterval);
}

void X11KeyboardHold::release()
{
    m_window->setKeyboardGrabEnabled(false);
    // Qt would send that with the next event only; a question makes it go at once.
    QCursor::pos();
}

} // namespace kestrova
