#include "Platform/Platform.h"

#include "Models/ReadableError.h"
#include "Platform/Linux/ApplicationLauncher.h"
#include "Platform/Linux/ChildProcesses.h"
#include "Platform/Linux/FileUserDefaults.h"
#include "Platform/Linux/LinuxScriptRunner.h"
#include "Platform/Linux/LinuxStandardDirectories.h"
#include "Platform/Linux/LinuxSystemAccess.h"
#include "Platform/Linux/LinuxTerminalLauncher.h"
#include "Platform/Linux/NoDesktop.h"
#include "Platform/Linux/PulseAudioInput.h"
#include "Platform/Linux/X11/PostedKeys.h"
#include "Platform/Linux/X11/X11DesktopAppearance.h"
#include "Platform/Linux/X11/X11KeyEventMonitoring.h"
#include "Platform/Linux/X11/X11KeyEventPosting.h"
#include "Platform/Linux/X11/X11Pasteboard.h"
#include "Platform/Linux/X11/X11Workspace.h"

#include <QCoreApplication>

#include <csignal>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

BundleInfo ownBundle()
{
    const QString build = QStringLiteral(KESTROVA_BUILD_VERSION);
    return {.identifier = u"com.kestrova.app"_s,
            .executablePath = QCoreApplication::applicationFilePath(),
            .version = QStringLiteral(KESTROVA_VERSION),
            .buildVersion = build.isEmpty() ? std::nullopt : std::optional(build)};
}

/// Keys are observed through X11 also where Qt could speak Wayland. Applications that we start are
/// free to choose again.
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

/// Lets assistive technology in whenever it comes. Of itself Qt looks only once, when the
/// accessibility bus comes up, whether there is any.
void welcomeAssistiveTechnology()
{
    constexpr auto variable = "QT_LINUX_ACCESSIBILITY_ALWAYS_ON";
    if (!qEnvironmentVariableIsSet(variable))
        setPrivateVariable(variable, "1");
}

struct Session
{
    X11Connection connection;
    DesktopEntries entries;
    X11Windows windows{connection, entries};
    PostedKeys postedKeys;
};

std::unique_ptr<Workspace> makeWorkspace(Session &session)
{
    if (!session.connection.isOpen())
        return std::make_unique<NoDesktop::EmptyWorkspace>();
    return std::make_unique<X11Workspace>(session.connection, session.windows, session.entries);
}

std::unique_ptr<DesktopAppearance> makeAppearance(const Session &session)
{
    if (!session.connection.isOpen())
        return std::make_unique<NoDesktop::PlainAppearance>();
    return std::make_unique<X11DesktopAppearance>();
}

std::unique_ptr<Pasteboard> makePasteboard()
{
    try {
        return std::make_unique<X11Pasteboard>();
    } catch (const PlatformError &) {
        return std::make_unique<NoDesktop::MissingPasteboard>();
    }
}

std::unique_ptr<KeyEventPosting> makeKeyEvents(Session &session)
{
    if (!session.connection.isOpen())
        return std::make_unique<NoDesktop::MissingKeyboard>();
    return std::make_unique<X11KeyEventPosting>(session.postedKeys);
}

std::unique_ptr<KeyEventMonitoring> makeKeyMonitoring(Session &session)
{
    if (!session.connection.isOpen())
        return std::make_unique<NoDesktop::MissingKeyMonitoring>();
    return std::make_unique<X11KeyEventMonitoring>(session.connection, session.postedKeys);
}

} // namespace

std::unique_ptr<StandardDirectories> makeStandardDirectories()
{
    return std::make_unique<LinuxStandardDirectories>();
}

std::shared_ptr<void> prepareDesktopSession()
{
    if (!X11Connection().isOpen()) {
        throw PlatformError(
            u"Kestrova needs an X11 desktop, and there is none at DISPLAY=\"%1\"."_s.arg(
                qEnvironmentVariable("DISPLAY")));
    }
    welcomeAssistiveTechnology();
    return std::make_shared<QtOnX11>();
}

Platform makePlatform()
{
    // Writing to an X server that has just died would otherwise end the program. QProcess and GLib
    // give their children the default back.
    std::signal(SIGPIPE, SIG_IGN);

    const auto session = std::make_shared<Session>();
    Platform platform;
    platform.bundle = ownBundle();
    platform.session = session;
    platform.directories = makeStandardDirectories();
    platform.userDefaults =
        std::make_unique<FileUserDefaults>(FileUserDefaults::standardDirectory());
    platform.processes = std::make_unique<ChildProcesses>();
    platform.audioInput = std::make_unique<PulseAudioInput>();
    platform.workspace = makeWorkspace(*session);
    platform.appearance = makeAppearance(*session);
    platform.pasteboard = makePasteboard();
    platform.keyEvents = makeKeyEvents(*session);
    platform.keyMonitoring = makeKeyMonitoring(*session);
    platform.scripts = std::make_unique<LinuxScriptRunner>(session->windows, *platform.processes);
    platform.systemAccess = std::make_unique<LinuxSystemAccess>(
        sandboxOf(SandboxSigns::ofThisProcess()), qEnvironmentVariable("XDG_CURRENT_DESKTOP"),
        session->connection);
    platform.terminal =
        std::make_unique<LinuxTerminalLauncher>(*platform.directories, session->connection);
    return platform;
}

} // namespace kestrova
