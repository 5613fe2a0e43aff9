#include "ViewModels/ControllerTest.h"

#include "Models/ReadableError.h"

namespace kestrova {
namespace {

const HotkeyShortcut commandF{3, HotkeyShortcut::command};

/// A keyboard that cannot be observed.
class BrokenKeyMonitoring final : public KeyEventMonitoring
{
public:
    std::unique_ptr<Monitor> addGlobalMonitor(KeyEvent::Types, GlobalHandler) override
    {
        throw PlatformError(u"No keyboard."_s);
    }
    std::unique_ptr<Monitor> addLocalMonitor(KeyEvent::Types, LocalHandler) override
    {
        return nullptr;
    }
    std::unique_ptr<Monitor> grab(const QList<HotkeyShortcut> &) override { return nullptr; }
    bool canType(const HotkeyShortcut &) override { return true; }
};

/// Tells when shortcuts are armed.
class ObservedKeyMonitoring final : public KeyEventMonitoring
{
public:
    explicit ObservedKeyMonitoring(std::function<void()> onArming) : m_onArming(std::move(onArming))
    {
    }
    std::unique_ptr<Monitor> addGlobalMonitor(KeyEvent::Types, GlobalHandler) override
    {
        m_onArming();
        return nullptr;
    }
    std::unique_ptr<Monitor> addLocalMonitor(KeyEvent::Types, LocalHandler) override
    {
        return nullptr;
    }
    std::unique_ptr<Monitor> grab(const QList<HotkeyShortcut> &) override { return nullptr; }
    bool canType(const HotkeyShortcut &) override { return true; }

private:
    const std::function<void()> m_onArming;
};

class AppControllerHotkeysTest : public ControllerTest
{
protected:
    bool startsRecording(const HotkeyShortcut &shortcut)
    {
        const int before = capture->starts;
        press(shortcut);
        settle();
        return capture->starts > before;
    }
};

/// Where keys are observed.
using AppControllerKeyMonitoringTest = ControllerTest;

TEST_F(AppControllerHotkeysTest, TheMainShortcutStartsAndEndsADictation)
{
    press(HotkeyShortcut::defaultMain());
    EXPECT_FALSE(main.isIdle()) << "its command is a task of its own";
    EXPECT_EQ(environmentReadings, 2) << "no command has run yet";
    settle();
    EXPECT_EQ(state().state.get(), DictationState::recording());
    press(HotkeyShortcut::defaultMain());
    settle();
    EXPECT_EQ(inserter->insertions.size(), 1U);
}

TEST_F(AppControllerHotkeysTest, ASlotsShortcutDictatesIntoTheSlot)
{
    assign(9, browser.bundleIdentifier, u"Browser"_s);
    press(HotkeyShortcut::defaultHotbarNumber(9).value());
    settle();
    toggle();
    EXPECT_EQ(inserter->insertions.at(0).target, targetOfSlot(browser, u"Browser"_s));
}

TEST_F(AppControllerHotkeysTest, AnUnassignedSlotAnswersItsShortcutWithTheMessage)
{
    press(HotkeyShortcut::defaultHotbarNumber(1).value());
    settle();
    EXPECT_EQ(shownError(),
              u"Hotbar slot 1 is unassigned. Assign an app in Dashboard > Hotbar Apps."_s);
}

TEST_F(AppControllerHotkeysTest, EveryCommitArmsTheShortcutsOfTheNewSettings)
{
    controller->setGlobalShortcut(commandF);
    EXPECT_FALSE(startsRecording(HotkeyShortcut::defaultMain()));
    EXPECT_TRUE(startsRecording(commandF));
    toggle();

    controller->updateSettings(
        [](AppSettings &settings) { settings.shortcut = HotkeyShortcut::defaultMain(); });
    EXPECT_FALSE(startsRecording(commandF));
    EXPECT_TRUE(startsRecording(HotkeyShortcut::defaultMain()));
    toggle();

    assign(2, editor.bundleIdentifier, {});
    controller->setHotbarShortcut(2, commandF);
    EXPECT_TRUE(startsRecording(commandF));
}

TEST_F(AppControllerKeyMonitoringTest, ACommitLeavesOneMonitorOfEachKind)
{
    controller->setGlobalShortcut(commandF);
    EXPECT_EQ(fake.keyboard.globalMonitorCount(), 1);
    EXPECT_EQ(fake.keyboard.localMonitorCount(), 1);
    controller->unregisterHotkeys();
    EXPECT_EQ(fake.keyboard.globalMonitorCount(), 0);
}

TEST_F(AppControllerKeyMonitoringTest, ACommitThatChangesNoShortcutAsksNothingOfTheKeyboard)
{
    const int before = fake.keyboard.requestCount();
    for (const QString &path : {u"/w"_s, u"/wh"_s, toolPath()}) {
        controller->updateSettings([&](AppSettings &settings) { settings.whisperCLIPath = path; });
    }
    EXPECT_EQ(fake.keyboard.requestCount(), before);
    press(HotkeyShortcut::defaultMain());
    settle();
    EXPECT_EQ(capture->starts, 1);

    assign(2, editor.bundleIdentifier, {});
    EXPECT_GT(fake.keyboard.requestCount(), before) << "slot 2 is other programs' no more";
}

TEST_F(AppControllerKeyMonitoringTest, AChangeIsStoredBeforeItIsArmed)
{
    end();
    HotkeyShortcut storedWhenArmed;
    fake.platform.keyMonitoring = std::make_unique<ObservedKeyMonitoring>(
        [&] { storedWhenArmed = settingsStore->load().shortcut; });
    launch();
    EXPECT_EQ(storedWhenArmed, HotkeyShortcut::defaultMain());
    controller->setGlobalShortcut(commandF);
    EXPECT_EQ(storedWhenArmed, commandF);
    end();
}

TEST_F(AppControllerHotkeysTest, UnregisteredShortcutsDoNothingUntilTheyAreRegisteredAgain)
{
    controller->unregisterHotkeys();
    EXPECT_FALSE(startsRecording(HotkeyShortcut::defaultMain()));
    controller->registerHotkeys();
    EXPECT_TRUE(startsRecording(HotkeyShortcut::defaultMain()));
}

TEST_F(AppControllerHotkeysTest, SuspendedShortcutsStayDisarmedWhateverIsChanged)
{
    auto suspension = controller->suspendHotkeys();
    const auto another = controller->suspendHotkeys();
    EXPECT_FALSE(startsRecording(HotkeyShortcut::defaultMain()));
    controller->setGlobalShortcut(commandF);
    controller->registerHotkeys();
    EXPECT_FALSE(startsRecording(commandF));
    EXPECT_EQ(state().settings.get().shortcut, commandF) << "changed all the same";
    suspension.reset();
    EXPECT_FALSE(startsRecording(commandF)) << "the other one still lasts";
}

TEST_F(AppControllerHotkeysTest, TheEndOfASuspensionArmsThePresentShortcuts)
{
    auto suspension = controller->suspendHotkeys();
    controller->setGlobalShortcut(commandF);
    suspension.reset();
    EXPECT_TRUE(startsRecording(commandF));
    suspension = controller->suspendHotkeys();
    end();
    suspension.reset();
}

TEST_F(AppControllerHotkeysTest, WhereTheDesktopBindsShortcutsByNameThoseDictate)
{
    end();
    FakeGlobalShortcuts &shortcuts = useNamedShortcuts();
    launch();
    EXPECT_EQ(shortcuts.requests().last().size(), 10);
    shortcuts.accept();
    assign(9, browser.bundleIdentifier, u"Browser"_s);
    EXPECT_EQ(shortcuts.requests().size(), 1) << "nobody is asked again";

    shortcuts.press(u"hotbar-9"_s);
    settle();
    EXPECT_EQ(state().state.get(), DictationState::recording());
    shortcuts.press(u"toggle"_s);
    settle();
    EXPECT_EQ(inserter->insertions.at(0).target, targetOfSlot(browser, u"Browser"_s));

    controller->unregisterHotkeys();
    shortcuts.press(u"toggle"_s);
    settle();
    EXPECT_EQ(state().state.get(), DictationState::idle());
    end();
}

TEST_F(AppControllerHotkeysTest, TheStateFollowsWhatTheDesktopDoesWithTheShortcuts)
{
    end();
    FakeGlobalShortcuts &shortcuts = useNamedShortcuts();
    launch();
    const auto hotkey = [this](const QString &id) { return state().hotkeys.get().value(id); };
    EXPECT_EQ(hotkey(u"toggle"_s).state, HotkeyStatus::pending);
    shortcuts.accept();
    EXPECT_EQ(changes(), QStringList{u"hotkeys"_s});
    EXPECT_EQ(hotkey(u"toggle"_s), (HotkeyStatus{.keys = u"keys of toggle"_s}));
    EXPECT_EQ(controller->hotbarShortcutDisplay(9), u"keys of hotbar-9"_s);

    shortcuts.change(u"hotbar-9"_s, {});
    EXPECT_EQ(hotkey(u"hotbar-9"_s).state, HotkeyStatus::refused);
    EXPECT_EQ(controller->hotbarShortcutDisplay(9), u"None"_s);
    controller->configureShortcuts();
    EXPECT_EQ(shortcuts.configurations(), 1);
    end();
}

TEST_F(AppControllerKeyMonitoringTest, AFailedRegistrationIsShown)
{
    end();
    fake.platform.keyMonitoring = std::make_unique<BrokenKeyMonitoring>();
    launch();
    EXPECT_EQ(shownError(), u"Failed to register hotkeys: No keyboard."_s);
    EXPECT_TRUE(state().isModelReady.get()) << "the rest of the start goes on";
}

} // namespace
} // namespace kestrova
