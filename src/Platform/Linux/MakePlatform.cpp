#include "Platform/Linux/Applications/EndWithParent.h"
#include "Platform/Linux/Applications/LinuxScriptRunner.h"
#include "Platform/Linux/Audio/PulseAudioInput.h"
#include "Platform/Linux/Files/LinuxStandardDirectories.h"
#include "Platform/Linux/Files/XdgDirectories.h"
#include "Platform/Linux/Sandbox/LinuxSystemAccess.h"
#include "Platform/Linux/Session/DesktopSession.h"
#include "Platform/Linux/Terminal/LinuxTerminalLauncher.h"
#include "Platform/Platform.h"
#include "Platform/Posix/ChildProcesses.h"
#include "Platform/Posix/FileUserDefaults.h"

#include <QCoreApplication>

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

} // namespace

std::unique_ptr<StandardDirectories> makeStandardDirectories()
{
    return std::make_unique<LinuxStandardDirectories>();
}

Platform makePlatform(std::shared_ptr<DesktopSession> session)
{
    DesktopSession &desktop = *session;
    Platform platform;
    platform.bundle = ownBundle();
    platform.session = std::move(session);
    platform.directories = makeStandardDirectories();
    platform.userDefaults = std::make_unique<FileUserDefaults>(documentDirectory());
    platform.processes = std::make_unique<ChildProcesses>(&endWithParent);
    platform.audioInput = std::make_unique<PulseAudioInput>();
    platform.workspace = desktop.makeWorkspace();
    platform.appearance = desktop.makeAppearance();
    platform.windowing = desktop.makeWindowing();
    platform.pasteboard = desktop.makePasteboard();
    platform.keyEvents = desktop.makeKeyEventPosting();
    platform.keyMonitoring = desktop.makeKeyEventMonitoring();
    platform.scripts =
        std::make_unique<LinuxScriptRunner>(desktop.applicationWindows(), *platform.processes);
    platform.systemAccess = std::make_unique<LinuxSystemAccess>(
        sandboxOf(SandboxSigns::ofThisProcess()), qEnvironmentVariable("XDG_CURRENT_DESKTOP"),
        [&desktop] { return desktop.keyboardAccess(); });
    platform.terminal = std::make_unique<LinuxTerminalLauncher>(
        *platform.directories, [&desktop] { return desktop.newStartupId(); });
    return platform;
}

} // namespace kestrova
