#pragma once

#include "Concurrency/BackgroundExecutor.h"
#include "Concurrency/Clock.h"
#include "Concurrency/QtMainExecutor.h"
#include "Platform/Platform.h"
#include "ViewModels/AppController.h"
#include "Views/Tray/LazyWindows.h"
#include "Views/Tray/TrayItem.h"

#include <limits>
#include <memory>

namespace kestrova {

/// The running program: the platform, the threads, the one controller over them and what it shows.
/// Needs a QApplication. Main thread.
class KestrovaApp
{
public:
    /// When this returns, the shortcuts work.
    explicit KestrovaApp(std::shared_ptr<DesktopSession> session);
    /// Ends a running dictation with its child process and waits for it. A worker that does not
    /// end in time takes the process with it, so that no session has to wait.
    ~KestrovaApp();
    Q_DISABLE_COPY_MOVE(KestrovaApp)

    /// The rest of an end that has begun without us: by exit(), as Qt does when the X server goes.
    /// The libraries of the windows may have been torn down by then, so that nothing that is shown
    /// is touched any more. Ends the process with EXIT_FAILURE.
    [[noreturn]] void endAbruptly();

    AppController &controller() { return *m_controller; }
    Windows &windows() { return *m_windows; }

private:
    /// How long the end of the program waits for its workers.
    static constexpr std::chrono::seconds drainLimit{2};

    void endWork();

    Platform m_platform;
    SystemClock m_clock;
    QtMainExecutor m_main;
    BackgroundExecutor m_background;
    BackgroundExecutor m_tools{std::numeric_limits<std::size_t>::max()};
    BackgroundExecutor m_storage{2}; // documents
    std::unique_ptr<AppController> m_controller;
    std::unique_ptr<TrayItem> m_trayItem;
    std::unique_ptr<LazyWindows> m_windows;
};

/// What "--diagnostics" prints. Reads only: neither a desktop nor the lock is needed, and the
/// documents of a copy that is running stay as they are.
QString standaloneDiagnosticsJSON();

} // namespace kestrova
