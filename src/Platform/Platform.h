#pragma once

#include "Models/BundleInfo.h"
#include "Platform/Audio/AudioRecorder.h"
#include "Platform/DesktopAppearance.h"
#include "Platform/Keys/GlobalShortcuts.h"
#include "Platform/Keys/KeyEventMonitoring.h"
#include "Platform/Keys/KeyEventPosting.h"
#include "Platform/Pasteboard.h"
#include "Platform/ProcessRunning.h"
#include "Platform/ScriptRunning.h"
#include "Platform/StandardDirectories.h"
#include "Platform/SystemAccess.h"
#include "Platform/TerminalLauncher.h"
#include "Platform/UserDefaults.h"
#include "Platform/Windowing.h"
#include "Platform/Workspace.h"

#include <memory>

namespace kestrova {

class DesktopSession; // each back end has its own

/// One of each platform service. Built and destroyed on the main thread; outlives every service
/// that was given a reference to one of its members.
struct Platform
{
    BundleInfo bundle;
    std::shared_ptr<DesktopSession> session; ///< what the services below share; ends after them
    std::unique_ptr<StandardDirectories> directories;
    std::unique_ptr<UserDefaults> userDefaults;
    std::unique_ptr<ProcessRunning> processes;
    std::unique_ptr<AudioInput> audioInput;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<DesktopAppearance> appearance;
    std::unique_ptr<Windowing> windowing;
    std::unique_ptr<Pasteboard> pasteboard;
    std::unique_ptr<KeyEventPosting> keyEvents;
    std::unique_ptr<KeyEventMonitoring> keyMonitoring;
    std::unique_ptr<GlobalShortcuts> globalShortcuts; ///< null where keys are observed instead
    std::unique_ptr<ScriptRunning> scripts;
    std::unique_ptr<SystemAccess> systemAccess;
    std::unique_ptr<TerminalLauncher> terminal;
};

/// Where the program keeps its files, for use before there is a whole platform.
std::unique_ptr<StandardDirectories> makeStandardDirectories();

/// The desktop session that the program finds itself in, chosen now and for good. Never null:
/// without a desktop it is one in which nothing is running and nothing can be sent. Main thread;
/// nothing throws.
std::shared_ptr<DesktopSession> findDesktopSession();

/// Gets the process ready for a desktop application object in this session: called before that is
/// made, the result destroyed afterwards, before anything is launched. Throws PlatformError when
/// the session is none that could show windows.
[[nodiscard]] std::shared_ptr<void> prepareDesktopApplication(DesktopSession &session);

/// The services of the system and of this session. Needs a QCoreApplication. Nothing throws.
Platform makePlatform(std::shared_ptr<DesktopSession> session);

} // namespace kestrova
