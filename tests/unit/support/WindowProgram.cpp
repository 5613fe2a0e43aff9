#include "support/WindowProgram.h"

#include "support/WaitUntil.h"

#include <stdexcept>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr int waitLimit = 10'000;  // ms
constexpr quint32 iconicState = 3; // ICCCM 4.1.3.1
constexpr quint32 fromPager = 2;   // EWMH

void waitOrThrow(const char *what, const std::function<bool()> &condition)
{
    if (!waitUntil(condition))
        throw std::runtime_error(what);
}

} // namespace

WindowProgram::WindowProgram(X11Connection &connection, const QString &instanceName,
                             const QString &className, int windowCount)
    : m_connection(connection)
{
    m_process.start(QString::fromUtf8(KESTROVA_WINDOW_APPLICATION),
                    {instanceName, className, QString::number(windowCount)});
    while (m_windows.size() < windowCount) {
        if (!m_process.canReadLine() && !m_process.waitForReadyRead(waitLimit))
            throw std::runtime_error("no windows");
        m_windows.append(m_process.readLine().trimmed().toUInt());
    }
    waitOrThrow("not in front", [&] {
        return m_connection.value(m_connection.root(), "_NET_ACTIVE_WINDOW") == m_windows.last() &&
               isManaged(m_windows.last());
    });
}

WindowProgram::~WindowProgram()
{
    m_process.kill();
    m_process.waitForFinished(waitLimit);
}

qint32 WindowProgram::processIdentifier() const
{
    return static_cast<qint32>(m_process.processId());
}

bool WindowProgram::isManaged(xcb_window_t window)
{
    return m_connection.values(m_connection.root(), "_NET_CLIENT_LIST").contains(window);
}

void WindowProgram::minimise(xcb_window_t window)
{
    m_connection.sendToRoot(window, "WM_CHANGE_STATE", {iconicState});
    waitOrThrow("not minimised", [&] {
        return m_connection.values(window, "_NET_WM_STATE")
            .contains(m_connection.atom("_NET_WM_STATE_HIDDEN"));
    });
}

void WindowProgram::moveToDesktop(xcb_window_t window, quint32 desktop)
{
    m_connection.sendToRoot(window, "_NET_WM_DESKTOP", {desktop, fromPager});
    waitOrThrow("not moved", [&] {
        return m_connection.value(window, "_NET_WM_DESKTOP") == desktop &&
               m_connection.value(m_connection.root(), "_NET_ACTIVE_WINDOW") != window;
    });
}

void WindowProgram::kill()
{
    m_process.kill();
    m_process.waitForFinished(waitLimit);
    waitOrThrow("still managed", [&] { return !isManaged(m_windows.last()); });
}

void WindowProgram::setText(xcb_window_t window, const QByteArray &property, const QByteArray &text)
{
    xcb_change_property(m_connection.xcb(), XCB_PROP_MODE_REPLACE, window,
                        m_connection.atom(property), m_connection.atom("UTF8_STRING"), 8,
                        static_cast<quint32>(text.size()), text.constData());
}

void WindowProgram::setValue(xcb_window_t window, const QByteArray &property,
                             const QByteArray &type, quint32 value)
{
    xcb_change_property(m_connection.xcb(), XCB_PROP_MODE_REPLACE, window,
                        m_connection.atom(property), m_connection.atom(type), 32, 1, &value);
}

void WindowProgram::remove(xcb_window_t window, const QByteArray &property)
{
    xcb_delete_property(m_connection.xcb(), window, m_connection.atom(property));
}

} // namespace kestrova
