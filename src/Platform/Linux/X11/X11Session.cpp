#include "Platform/Linux/X11/X11Session.h"

#include "Models/ReadableError.h"
#include "Platform/Linux/Applications/ApplicationLauncher.h"
#include "Platform/Linux/Session/NoSession.h"
#include "Platform/Linux/X11/Clipboard/X11Pasteboard.h"
#include "Platform/Linux/X11/Connection/X11ServerTime.h"
#include "Platform/Linux/X11/Keys/X11KeyEventMonitoring.h"
#include "Platform/Linux/X11/Keys/X11KeyEventPosting.h"
#include "Platform/Linux/X11/Windows/X11DesktopAppearance.h"
#include "Platform/Linux/X11/Windows/X11Windowing.h"
#include "Platform/Linux/X11/Windows/X11Workspace.h"

#include <xcb/record.h>
#include <xcb/xtest.h>

namespace kestrova {

namespace {

class QtOnX11
{
public:
    QtOnX11()
    {
        if (m_isOurChoice)
            qputenv(variable, "xcb");
    }
    ~QtOnX11()
    {
        if (m_isOurChoice)
            qunsetenv(variable);
    }
    Q_DISABLE_COPY_MOVE(QtOnX11)

private:
    static constexpr auto variable = "QT_QPA_PLATFORM";
    const bool m_isOurChoice = !qEnvironmentVariableIsSet(variable);
};

} // namespace

std::shared_ptr<X11Session> X11Session::open(const QByteArray &displayName)
{
    std::shared_ptr<X11Session> session(new X11Session(displayName));
    return session->m_connection.isOpen() ? session : nullptr;
}

std::shared_ptr<void> X11Session::prepareApplication()
{
    return std::make_shared<QtOnX11>();
}

std::unique_ptr<Workspace> X11Session::makeWorkspace()
{
    return std::make_unique<X11Workspace>(m_connection, m_windows, m_entries, m_displayName);
}

std::unique_ptr<DesktopAppearance> X11Session::makeAppearance()
{
    return std::make_unique<X11DesktopAppearance>(m_displayName);
}

std::unique_ptr<Windowing> X11Session::makeWindowing()
{
    return std::make_unique<X11Windowing>(m_windows);
}

std::unique_ptr<Pasteboard> X11Session::makePasteboard()
{
    try {
        return std::make_unique<X11Pasteboard>(m_displayName);
    } catch (const PlatformError &) {
        return makeMissingPasteboard();
    }
}

std::unique_ptr<KeyEventPosting> X11Session::makeKeyEventPosting()
{
    return std::make_unique<X11KeyEventPosting>(m_postedKeys, m_displayName);
}

std::unique_ptr<KeyEventMonitoring> X11Session::makeKeyEventMonitoring()
{
    return std::make_unique<X11KeyEventMonitoring>(m_postedKeys, m_displayName);
}

Access X11Session::keyboardAccess()
{
    const bool isOpen = m_connection.isOpen() && m_connection.hasExtension(&xcb_test_id) &&
                        m_connection.hasExtension(&xcb_record_id);
    return isOpen ? Access::granted : Access::unavailable;
}

QByteArray X11Session::newStartupId()
{
    return startupId(serverTime(m_connection));
}

} // namespace kestrova
