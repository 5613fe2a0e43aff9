#include "App/KestrovaApp.h"

#include "App/WindowsLibrary.h"
#include "Concurrency/InlineExecutor.h"
#include "Services/Dictation/AVAudioCaptureService.h"
#include "Services/Dictation/TextInsertionService.h"
#include "Services/PermissionService.h"
#include "ViewModels/DiagnosticsReporter.h"
#include "ViewModels/DictationServices.h"
#include "Views/Tray/FailureNotice.h"

#include <chrono>
#include <cstdlib>

namespace kestrova {

KestrovaApp::KestrovaApp(std::shared_ptr<DesktopSession> session)
    : m_platform(makePlatform(std::move(session)))
{
    auto capture =
        std::make_shared<AVAudioCaptureService>(*m_platform.audioInput, *m_platform.directories);
    auto inserter = std::make_shared<TextInsertionService>(
        *m_platform.workspace, *m_platform.pasteboard, *m_platform.keyEvents, *m_platform.scripts,
        m_main, m_clock);
    m_controller = std::make_unique<AppController>(
        AppEnvironment{m_platform, m_main, m_background, m_tools, m_storage},
        std::make_shared<SettingsStore>(*m_platform.userDefaults, m_storage), capture, inserter);
    m_trayItem = std::make_unique<TrayItem>(*m_platform.appearance, *m_platform.windowing);
    m_windows = std::make_unique<LazyWindows>(
        [this] { return loadWindows(*m_controller, m_platform, *m_trayItem); });
    QObject::connect(m_trayItem.get(), &TrayItem::clicked, m_windows.get(),
                     &Windows::togglePopover);
    QObject::connect(m_windows.get(), &Windows::failed, &tellFailure);
}

KestrovaApp::~KestrovaApp()
{
    m_windows.reset();
    endWork();
}

void KestrovaApp::endAbruptly()
{
    // Nothing is told any more to those who are left behind.
    m_windows.release();
    m_controller->appState().blockSignals(true);
    endWork();
    std::_Exit(EXIT_FAILURE);
}

void KestrovaApp::endWork()
{
    m_controller.reset();
    m_main.shutDown();
    const auto deadline = std::chrono::steady_clock::now() + drainLimit;
    // What is to be stored comes first: it must not pay for a tool that hangs.
    for (BackgroundExecutor *executor : {&m_storage, &m_background, &m_tools}) {
        if (!executor->waitUntilIdle(deadline - std::chrono::steady_clock::now())) {
            qWarning("A task did not end in time.");
            endChildProcesses();
            std::_Exit(EXIT_FAILURE);
        }
    }
}

QString standaloneDiagnosticsJSON()
{
    const Platform platform = makePlatform(findDesktopSession());
    InlineExecutor storage;
    const auto settings = std::make_shared<SettingsStore>(*platform.userDefaults, storage);
    PermissionService permissions(*platform.systemAccess, *platform.workspace);
    return DiagnosticsReporter{.permissions = permissions.currentPermissions(),
                               .modelStatus = makeModelManager(platform, settings)->modelStatus(),
                               .settings = settings->load(),
                               .state = DictationState::idle(),
                               .bundle = platform.bundle}
        .renderJSON();
}

} // namespace kestrova
