#include "Platform/Fake/FakePlatform.h"

namespace kestrova {

namespace {

/// Puts a new fake into the member of the platform and returns it.
template <typename Fake, typename Interface, typename... Arguments>
Fake &install(std::unique_ptr<Interface> &member, Arguments... arguments)
{
    auto fake = std::make_unique<Fake>(arguments...);
    Fake &installed = *fake;
    member = std::move(fake);
    return installed;
}

} // namespace

FakePlatform::FakePlatform()
    : desktop(std::make_shared<FakeDesktop>()),
      directories(install<FakeStandardDirectories>(platform.directories)),
      userDefaults(install<FakeUserDefaults>(platform.userDefaults)),
      processes(install<FakeProcessRunning>(platform.processes)),
      audioInput(install<FakeAudioInput>(platform.audioInput)),
      appearance(install<FakeDesktopAppearance>(platform.appearance)),
      pasteboard(install<FakePasteboard>(platform.pasteboard)),
      keyboard(install<FakeKeyEventMonitoring>(platform.keyMonitoring)),
      access(install<FakeSystemAccess>(platform.systemAccess)),
      terminal(install<FakeTerminalLauncher>(platform.terminal)),
      windowing(install<FakeWindowing>(platform.windowing, desktop))
{
    platform.workspace = std::make_unique<FakeWorkspace>(desktop);
    platform.keyEvents = std::make_unique<FakeKeyEventPosting>(desktop);
    platform.scripts = std::make_unique<FakeScriptRunning>(desktop);
}

FakeGlobalShortcuts &FakePlatform::useNamedShortcuts()
{
    keyboard.setGlobalAvailable(false);
    return install<FakeGlobalShortcuts>(platform.globalShortcuts);
}

} // namespace kestrova
