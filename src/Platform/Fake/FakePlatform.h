#pragma once

#include "Platform/Fake/Audio/FakeAudioInput.h"
#include "Platform/Fake/FakeDesktop.h"
#include "Platform/Fake/FakeDesktopAppearance.h"
#include "Platform/Fake/FakePasteboard.h"
#include "Platform/Fake/FakeProcessRunning.h"
#include "Platform/Fake/FakeStandardDirectories.h"
#include "Platform/Fake/FakeSystemAccess.h"
#include "Platform/Fake/FakeTerminalLauncher.h"
#include "Platform/Fake/FakeUserDefaults.h"
#include "Platform/Fake/FakeWindowing.h"
#include "Platform/Fake/Keys/FakeGlobalShortcuts.h"
#include "Platform/Fake/Keys/FakeKeyEventMonitoring.h"
#include "Platform/Platform.h"

namespace kestrova {

/// A whole platform of fakes. At first nothing runs, nothing is
/// stored, and everything is allowed and works.
struct FakePlatform
{
    FakePlatform();

    /// From now on the desktop binds shortcuts by name, and shows the program no keys. Called
    /// before a service asks for either.
    FakeGlobalShortcuts &useNamedShortcuts();

    Platform platform;

    std::shared_ptr<FakeDesktop> desktop;
    FakeStandardDirectories &directories;
    FakeUserDefaults &userDefaults;
    FakeProcessRunning &processes;
    FakeAudioInput &audioInput;
    FakeDesktopAppearance &appearance;
    FakePasteboard &pasteboard;
    FakeKeyEventMonitoring &keyboard;
    FakeSystemAccess &access;
    FakeTerminalLauncher &terminal;
    FakeWindowing &windowing;
};

} // namespace kestrova
