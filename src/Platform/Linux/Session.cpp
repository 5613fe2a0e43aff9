#include "Models/ReadableError.h"
#include "Platform/Linux/Applications/ApplicationLauncher.h"
#include "Platform/Linux/Session/NoSession.h"
#include "Platform/Linux/X11/X11Session.h"
#include "Platform/Platform.h"

#include <csignal>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// Lets assistive technology in whenever it comes. Of itself Qt looks only once, when the
/// accessibility bus comes up, whether there is any.
void welcomeAssistiveTechnology()
{
    constexpr auto variable = "QT_LINUX_ACCESSIBILITY_ALWAYS_ON";
    if (!qEnvironmentVariableIsSet(variable))
        setPrivateVariable(variable, "1");
}

} // namespace

std::shared_ptr<DesktopSession> findDesktopSession()
{
    // Writing to an X server that has just died would otherwise end the program. QProcess and GLib
    // give their children the default back.
    std::signal(SIGPIPE, SIG_IGN);

    if (auto session = X11Session::open())
        return session;
    return std::make_shared<NoSession>(
        u"Kestrova needs an X11 desktop, and there is none at DISPLAY=\"%1\"."_s.arg(
            qEnvironmentVariable("DISPLAY")));
}

std::shared_ptr<void> prepareDesktopApplication(DesktopSession &session)
{
    auto preparation = session.prepareApplication();
    welcomeAssistiveTechnology();
    return preparation;
}

} // namespace kestrova
