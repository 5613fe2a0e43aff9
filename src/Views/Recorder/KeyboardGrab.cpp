#include "Views/Recorder/KeyboardGrab.h"

#include <QGuiApplication>

#include <chrono>

namespace kestrova {

using namespace std::chrono_literals;

namespace {

/// How often to try while another program has the keyboard, as a window manager does while the user
/// switches windows by its keys.
constexpr auto retryInterval = 50ms;

} // namespace

KeyboardGrab::KeyboardGrab(QWindow &window) : m_window(&window)
{
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &KeyboardGrab::follow);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &KeyboardGrab::follow);
    follow();
}

KeyboardGrab::~KeyboardGrab()
{
    if (m_window)
        m_window->setKeyboardGrabEnabled(false);
}

void KeyboardGrab::follow()
{
    if (!m_window)
        return;
    const bool hasFocus = QGuiApplication::focusWindow() == m_window;
    if (!m_window->setKeyboardGrabEnabled(hasFocus) && hasFocus)
        m_retry.start(retryInterval);
}

} // namespace kestrova
