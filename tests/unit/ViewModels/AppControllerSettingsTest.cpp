#include "ViewModels/ControllerTest.h"

namespace kestrova {
namespace {

const HotkeyShortcut commandF{3, HotkeyShortcut::command};

HotkeyShortcut defaultOf(int slotIndex)
{
    return HotkeyShortcut::defaultHotbarNumber(slotIndex).value();
}

class AppControllerSettingsTest : public ControllerTest
{
protected:
    AppSettings settings() { return state().settings.get(); }
    void failOnce()
    {
        removeModel();
        toggle();
        putModel();
    }
    /// That a command was refused with the message, and nothing else happened.
    void expectRefusal(const QString &message, const std::function<void()> &command)
    {
        const AppSettings before = settings();
        const auto storedBefore = fake.userDefaults.stored(SettingsStore::key());
        changes();
        command();
        EXPECT_EQ(shownError(), message);
        EXPECT_EQ(changes(), QStringList({u"lastError"_s, u"state error"_s}));
        EXPECT_EQ(settings(), before);
        EXPECT_EQ(fake.userDefaults.stored(SettingsStore::key()), storedBefore);
        state().clearErrorIfNeeded();
    }
};

TEST_F(AppControllerSettingsTest, AChangeIsShownThenStoredThenArmedThenTheEnvironmentIsRead)
{
    const QString otherTool = fake.directories.temporaryDirectory() + u"/other"_s;
    installTool(otherTool);
    QStringList steps;
    QObject context;
    const auto note = [&](const QString &step) {
        const bool isStored = settingsStore->load().whisperCLIPath == otherTool;
        press(commandF);
        const bool isArmed = !main.isIdle();
        steps.append(step + (isStored ? u", stored"_s : u""_s) + (isArmed ? u", armed"_s : u""_s));
    };
    QObject::connect(&state(), &AppState::settingsChanged, &context, [&] { note(u"shown"_s); });
    QObject::connect(&state(), &AppState::resolvedWhisperCLIPathChanged, &context,
                     [&] { note(u"read"_s); });
    controller->updateSettings([&](AppSettings &changed) {
        changed.whisperCLIPath = otherTool;
        changed.shortcut = commandF;
    });
    EXPECT_EQ(steps, QStringList({u"shown"_s, u"read, stored, armed"_s}));
    EXPECT_EQ(state().resolvedWhisperCLIPath.get(), otherTool);
    EXPECT_EQ(settingsStore->load(), settings());
}

TEST_F(AppControllerSettingsTest, AChangeOutlivesTheProgram)
{
    controller->updateSettings([](AppSettings &changed) {
        changed.theme = AppTheme::dark;
        changed.transcriptionLanguage = u"de"_s;
    });
    const AppSettings changed = settings();
    launch();
    EXPECT_EQ(settings(), changed);
    EXPECT_EQ(settings().theme, AppTheme::dark);
}

TEST_F(AppControllerSettingsTest, TheSlotsAreAlwaysNormalised)
{
    controller->updateSettings([](AppSettings &changed) {
        changed.hotbarAssignments = {
            {12, u"gone"_s, {}, {}}, {2, u"a"_s, {}, {}}, {2, u"b"_s, {}, {}}};
    });
    AppSettings expected = settings();
    expected.hotbarAssignments = AppSettings::defaultHotbarAssignments();
    expected.setHotbarAssignment(2, u"b"_s, {});
    EXPECT_EQ(settings(), expected);
    EXPECT_EQ(settingsStore->load(), expected);
}

TEST_F(AppControllerSettingsTest, APlainChangeKeepsTheLastError)
{
    failOnce();
    const QString message = shownError();
    controller->updateSettings([](AppSettings &changed) { changed.theme = AppTheme::dark; });
    EXPECT_EQ(shownError(), message);
}

TEST_F(AppControllerSettingsTest, ClearingASlotLooksForNoConflict)
{
    controller->setHotbarShortcut(1, commandF);
    controller->setHotbarShortcut(2, defaultOf(1));
    controller->updateSettings(
        [](AppSettings &changed) { changed.setHotbarShortcut(1, std::nullopt); });
    EXPECT_EQ(settings().hotbarShortcut(1), settings().hotbarShortcut(2));
    EXPECT_EQ(lastError(), u"none"_s);
}

TEST_F(AppControllerSettingsTest, TheMainShortcutIsSetAndTheErrorForgotten)
{
    failOnce();
    controller->setGlobalShortcut(commandF);
    EXPECT_EQ(settings().shortcut, commandF);
    EXPECT_EQ(settingsStore->load().shortcut, commandF);
    EXPECT_EQ(state().state.get(), DictationState::idle());
    EXPECT_EQ(lastError(), u"none"_s);
}

TEST_F(AppControllerSettingsTest, AMainShortcutOfASlotIsRefused)
{
    expectRefusal(u"That shortcut conflicts with hotbar slot 9."_s,
                  [&] { controller->setGlobalShortcut(defaultOf(9)); });
    press(HotkeyShortcut::defaultMain());
    settle();
    EXPECT_EQ(capture->starts, 1) << "the old one still works";
}

TEST_F(AppControllerSettingsTest, ASlotsShortcutIsSetAndTheErrorForgotten)
{
    failOnce();
    assign(2, editor.bundleIdentifier, u"Editor"_s);
    controller->setHotbarShortcut(2, commandF);
    EXPECT_EQ(settingsStore->load().assignment(2),
              (HotbarSlotAssignment{2, editor.bundleIdentifier, u"Editor"_s, commandF}));
    EXPECT_EQ(state().state.get(), DictationState::idle());
    EXPECT_EQ(lastError(), u"none"_s);

    controller->setHotbarShortcut(2, defaultOf(2));
    EXPECT_EQ(settings().assignment(2).shortcut, defaultOf(2));
}

TEST_F(AppControllerSettingsTest, ASlotsShortcutInUseIsRefused)
{
    expectRefusal(u"That shortcut conflicts with the main recording shortcut."_s,
                  [&] { controller->setHotbarShortcut(2, settings().shortcut); });
    expectRefusal(u"That shortcut is already used by slot 1."_s,
                  [&] { controller->setHotbarShortcut(2, defaultOf(1)); });
}

/// Where it is known which application is in front.
class AppControllerAssignmentTest : public AppControllerSettingsTest
{
};

TEST_F(AppControllerAssignmentTest, TheApplicationInFrontIsAssignedAndTheErrorForgotten)
{
    controller->setHotbarShortcut(5, commandF);
    failOnce();
    controller->assignHotbarSlotFromFrontmost(5);
    EXPECT_EQ(settingsStore->load().assignment(5),
              (HotbarSlotAssignment{5, editor.bundleIdentifier, u"Editor"_s, commandF}))
        << "the slot keeps its shortcut";
    EXPECT_EQ(settings(), settingsStore->load());
    EXPECT_EQ(state().state.get(), DictationState::idle());
    EXPECT_EQ(lastError(), u"none"_s);
}

TEST_F(AppControllerAssignmentTest, BehindOurOwnWindowTheLastApplicationIsAssigned)
{
    fake.desktop->bringToFront(browser.processIdentifier);
    fake.desktop->bringToFront(ownProgram.processIdentifier);
    controller->assignHotbarSlotFromFrontmost(1);
    EXPECT_EQ(settings().assignment(1).bundleIdentifier, browser.bundleIdentifier);
}

TEST_F(AppControllerAssignmentTest, AnApplicationWithoutANameIsCalledByItsIdentifier)
{
    RunningApplication nameless = editor;
    nameless.localizedName.reset();
    fake.desktop->setRunning({nameless});
    fake.desktop->bringToFront(nameless.processIdentifier);
    controller->assignHotbarSlotFromFrontmost(1);
    EXPECT_EQ(settings().assignment(1).appName, editor.bundleIdentifier);
}

TEST_F(AppControllerSettingsTest, WithoutAnotherApplicationNothingIsAssigned)
{
    fake.desktop->bringToFront(ownProgram.processIdentifier);
    launch();
    expectRefusal(u"Switch to the app you want, then try assigning the slot again."_s,
                  [&] { controller->assignHotbarSlotFromFrontmost(1); });
}

TEST_F(AppControllerAssignmentTest, AnApplicationWithoutAnIdentifierIsNotAssigned)
{
    for (const std::optional<QString> &identifier :
         {std::optional<QString>(), std::optional(u""_s)}) {
        RunningApplication unknown = editor;
        unknown.bundleIdentifier = identifier;
        fake.desktop->setRunning({unknown});
        fake.desktop->bringToFront(unknown.processIdentifier);
        expectRefusal(u"Could not resolve a bundle identifier for the selected application."_s,
                      [&] { controller->assignHotbarSlotFromFrontmost(1); });
    }
}

TEST_F(AppControllerSettingsTest, SlotsOutsideOneToNineAreIgnored)
{
    const AppSettings before = settings();
    for (const int slot : {-1, 0, 10}) {
        controller->setHotbarShortcut(slot, commandF);
        controller->setHotbarShortcut(slot, settings().shortcut);
        controller->assignHotbarSlotFromFrontmost(slot);
    }
    EXPECT_EQ(changes(), QStringList());
    EXPECT_EQ(settings(), before);
    EXPECT_EQ(settingsStore->load(), before);
}

TEST_F(AppControllerSettingsTest, ASlotShowsItsShortcut)
{
    EXPECT_EQ(controller->hotbarShortcutDisplay(9), u"⌘⌥9"_s);
    controller->setHotbarShortcut(9, commandF);
    EXPECT_EQ(controller->hotbarShortcutDisplay(9), u"⌘F"_s);
    EXPECT_EQ(controller->hotbarShortcutDisplay(0), u"Unavailable"_s);
    EXPECT_EQ(controller->hotbarShortcutDisplay(10), u"Unavailable"_s);
}

} // namespace
} // namespace kestrova
