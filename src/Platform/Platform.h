#pragma once

#include "Models/BundleInfo.h"
#include "Platform/AudioRecorder.h"
#include "Platform/DesktopAppearance.h"
#include "Platform/KeyEventMonitoring.h"
#include "Platform/KeyEventPosting.h"
#include "Platform/Pasteboard.h"
#include "Platform/ProcessRunning.h"
#include "Platform/ScriptRunning.h"
#include "Platform/StandardDirectories.h"
#include "Platform/SystemAccess.h"
#include "Platform/TerminalLauncher.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"

#include <memory>

namespace kestrova {

/// One of each platform service. Built and destroyed on the main thread; outlives every service
/// that was given a reference to one of its members.
struct Platform
{
    BundleInfo bundle;
    std::shared_ptr<void> session; ///< what the services below share; ends after them
    std::unique_ptr<StandardDirectories> directories;
    std::unique_ptr<UserDefaults> userDefaults;
    std::unique_ptr<ProcessRunning> processes;
    std::unique_ptr<AudioInput> audioInput;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<DesktopAppearance> appearance;
    std::unique_ptr<Pasteboard> pasteboard;
    std::unique_ptr<KeyEventPosting> keyEvents;
    std::unique_ptr<KeyEventMonitoring> keyMonitoring;
    std::unique_ptr<ScriptRunning> scripts;
    std::unique_ptr<SystemAccess> systemAccess;
    std::unique_ptr<TerminalLauncher> terminal;
};

/// Where the program keeps its files, for use before there is a whole platform.
std::unique_ptr<StandardDirectories> makeStandardDirectories();

/// Gets the process ready for a desktop application object: called before it is made, the result
/// destroyed afterwards, before anything is launched. Throws PlatformError when there is no desktop
/// session that it could run in.
[[nodiscard]] std::shared_ptr<void> prepareDesktopSession();

/// The services of the system and session that the program finds itself in. Needs a
/// QCoreApplication. Without a desktop session the members that need one report that nothing is
/// running and nothing can be sent; nothing throws.
Platform makePlatform();

} // namespace kestrova
