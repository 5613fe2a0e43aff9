#include "Views/Settings/SettingsModel.h"

#include "ViewModels/ControllerTest.h"
#include "Views/AnnouncedTopics.h"

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class SettingsModelTest : public ControllerTest
{
protected:
    SettingsModelTest()
    {
        QObject::connect(&model, &SettingsModel::openWindowRequested, &model,
                         [this](const QString &identifier) { opened.append(identifier); });
    }

    const AppSettings &settings() { return state().settings.get(); }
    void setMicrophone(MicrophoneAuthorizationState status)
    {
        fake.access.setMicrophoneState(status);
        controller->refreshEnvironmentSnapshot();
    }

    SettingsModel model{*controller, {*fake.platform.keyMonitoring, *fake.platform.windowing}};
    AnnouncedTopics topics{model};
    QStringList opened;
};

using NamedShortcutsInSettingsTest = ControllerTest;

TEST_F(SettingsModelTest, TheStatusIsThatOfTheDictation)
{
    EXPECT_EQ(model.status().text, u"Ready"_s);
    EXPECT_EQ(model.status().tone, StatusPillTone::Neutral);
    EXPECT_THAT(topics.announcedBy([&] { toggle(); }), Contains("statusChanged"));
    EXPECT_EQ(model.status().text, u"Recording..."_s);
    EXPECT_EQ(model.status().tone, StatusPillTone::Recording);
}

TEST_F(SettingsModelTest, AnErrorIsShownAndCopied)
{
    EXPECT_EQ(model.lastError(), QString());
    state().lastError.set(u"No."_s);
    EXPECT_EQ(model.lastError(), u"No."_s);
    model.copyError();
    EXPECT_EQ(fake.platform.pasteboard->string(), u"No."_s);
}

TEST_F(SettingsModelTest, OfAnEndlessErrorTheBeginningIsShownAndAllOfItCopied)
{
    const QString endless(1'000'000, u'x');
    state().lastError.set(endless);
    EXPECT_LT(model.lastError().size(), 30'000);
    model.copyError();
    EXPECT_EQ(fake.pasteboard.string(), endless);
}

TEST_F(SettingsModelTest, AShortcutThatTheKeyboardCannotTypeIsExplainedAsLongAsItIsSo)
{
    EXPECT_EQ(model.shortcutHint(), QString());
    EXPECT_THAT(
        topics.announcedBy([&] { fake.keyboard.setMissingModifiers(HotkeyShortcut::command); }),
        ElementsAre("shortcutChanged"));
    EXPECT_EQ(model.shortcutHint(),
              u"⌘⇧Space cannot be typed on this keyboard: it has no Super (⌘) key. Record another "
              "shortcut, or change the keyboard's options."_s);
    controller->setGlobalShortcut({49, HotkeyShortcut::option | HotkeyShortcut::control});
    EXPECT_EQ(model.shortcutHint(), QString());
    fake.keyboard.setMissingModifiers(HotkeyShortcut::option | HotkeyShortcut::control);
    EXPECT_TRUE(model.shortcutHint().contains(u": it has no Alt (⌥) and no Ctrl (⌃) key."_s));
}

TEST_F(SettingsModelTest, WhatNoPermissionGivesIsNotAskedFor)
{
    EXPECT_TRUE(model.isAccessibilityAvailable());
    fake.access.setAccessibility(Access::unavailable);
    controller->refreshEnvironmentSnapshot();
    EXPECT_FALSE(model.isAccessibilityAvailable());
    EXPECT_FALSE(model.isAccessibilityGranted());
}

TEST_F(SettingsModelTest, ShortcutsAreRecordedWhereTheProgramDecidesOnThem)
{
    EXPECT_TRUE(model.recordsShortcuts());
    EXPECT_FALSE(model.configuresShortcuts());
    EXPECT_EQ(model.shortcutTip(), u"Tip: press Escape in the recorder to cancel."_s);
}

TEST_F(NamedShortcutsInSettingsTest, WhereTheDesktopDecidesTheSettingsOfferItsDialog)
{
    FakeGlobalShortcuts &shortcuts = fake.useNamedShortcuts();
    launch();
    SettingsModel model{*controller, {*fake.platform.keyMonitoring, *fake.platform.windowing}};
    EXPECT_FALSE(model.recordsShortcuts());
    EXPECT_TRUE(model.configuresShortcuts());
    EXPECT_EQ(model.shortcut(), u"⌘⇧Space"_s);
    EXPECT_EQ(model.shortcutHint(), u"The desktop has not confirmed this shortcut yet."_s);
    shortcuts.refuse();
    EXPECT_EQ(model.shortcut(), u"None"_s);
    model.configureShortcuts();
    EXPECT_EQ(shortcuts.configurations(), 1);
    shortcuts.change(u"toggle"_s, u"Logo+D"_s);
    EXPECT_EQ(model.shortcut(), u"Logo+D"_s);
    EXPECT_EQ(model.shortcutHint(), QString());
    shortcuts.setCanConfigure(false);
    EXPECT_FALSE(model.configuresShortcuts());
    EXPECT_FALSE(model.recordsShortcuts());
}

TEST_F(SettingsModelTest, TheRecorderSetsTheMainShortcut)
{
    model.recordShortcut();
    EXPECT_TRUE(model.recorder()->isOpen());
    model.recorder()->capture()->start(nullptr);
    fake.keyboard.pressLocally({0, HotkeyShortcut::control});
    model.recorder()->capture()->save();
    EXPECT_FALSE(model.recorder()->isOpen());
    EXPECT_EQ(model.shortcut(), u"⌃A"_s);
    EXPECT_EQ(settingsStore->load().shortcut, (HotkeyShortcut{0, HotkeyShortcut::control}));
}

TEST_F(SettingsModelTest, ARecordedShortcutOfASlotIsRefused)
{
    model.recordShortcut();
    model.recorder()->capture()->start(nullptr);
    fake.keyboard.pressLocally({18, HotkeyShortcut::command | HotkeyShortcut::option});
    model.recorder()->capture()->save();
    EXPECT_EQ(model.lastError(), u"That shortcut conflicts with hotbar slot 1."_s);
    EXPECT_EQ(model.shortcut(), u"⌘⇧Space"_s);
    EXPECT_FALSE(fake.keyboard.grabbed().isEmpty());
}

TEST_F(SettingsModelTest, ResettingTheShortcutRegistersItAgainAlsoWhenItIsTheSame)
{
    controller->setGlobalShortcut({0, HotkeyShortcut::control});
    model.resetShortcut();
    EXPECT_EQ(model.shortcut(), u"⌘⇧Space"_s);
    controller->unregisterHotkeys();
    model.resetShortcut();
    EXPECT_EQ(model.shortcut(), u"⌘⇧Space"_s);
    EXPECT_FALSE(fake.keyboard.grabbed().isEmpty());
}

TEST_F(SettingsModelTest, TheThemeIsStoredAtOnce)
{
    EXPECT_EQ(model.theme(), SettingsModel::Light);
    model.setTheme(SettingsModel::Dark);
    EXPECT_EQ(model.theme(), SettingsModel::Dark);
    EXPECT_EQ(settingsStore->load().theme, AppTheme::dark);
    model.setTheme(SettingsModel::Light);
    EXPECT_EQ(settingsStore->load().theme, AppTheme::light);
}

TEST_F(SettingsModelTest, TheDashboardIsAskedFor)
{
    model.openDashboard();
    EXPECT_EQ(opened, QStringList{u"dashboard"_s});
}

TEST_F(SettingsModelTest, EveryKeystrokeInAFieldIsStored)
{
    for (const QString &text : {u"d"_s, u"de"_s, u""_s}) {
        model.setTranscriptionLanguage(text);
        EXPECT_EQ(settingsStore->load().transcriptionLanguage, text);
        EXPECT_EQ(model.transcriptionLanguage(), text);
    }
    model.setModelDownloadURL(u"https://example.org/m.bin"_s);
    EXPECT_EQ(settingsStore->load().modelDownloadURL, model.modelDownloadURL());
    model.setModelSHA256(u"abc"_s);
    EXPECT_EQ(settingsStore->load().modelSHA256, u"abc"_s);
    model.setDecodingProfile(SettingsModel::Accurate);
    EXPECT_EQ(settingsStore->load().decodingProfile, WhisperDecodingProfile::accurate);
    EXPECT_EQ(model.decodingProfile(), SettingsModel::Accurate);
}

TEST_F(SettingsModelTest, TypingThePathOfAToolThatExistsMakesItReady)
{
    isToolHidden = true;
    model.setWhisperCLIPath(u"/nowhere"_s);
    EXPECT_FALSE(model.isWhisperCLIReady());
    EXPECT_EQ(model.resolvedWhisperCLIPath(), QString());
    isToolHidden = false;
    model.setWhisperCLIPath(toolPath());
    EXPECT_TRUE(model.isWhisperCLIReady());
    EXPECT_EQ(model.resolvedWhisperCLIPath(), toolPath());
}

TEST_F(SettingsModelTest, RefreshingLooksForTheToolAgain)
{
    isToolHidden = true;
    model.refresh();
    EXPECT_FALSE(model.isWhisperCLIReady());
}

TEST_F(SettingsModelTest, TheToolIsInstalledInATerminal)
{
    model.installWhisperCpp();
    EXPECT_EQ(fake.terminal.commands(), QStringList{u"brew install whisper-cpp"_s});
}

TEST_F(SettingsModelTest, APresetIsOneChangeAndClearsTheChecksum)
{
    const QString standard = AppSettings::defaults().modelDownloadURL;
    const QString folder = standard.chopped(qsizetype(sizeof "ggml-base.bin" - 1));
    model.setModelSHA256(u"abc"_s);
    int changesOfSettings = 0;
    QObject::connect(&state(), &AppState::settingsChanged, &model, [&] { ++changesOfSettings; });
    model.usePreset(SettingsModel::BaseModel);
    EXPECT_EQ(changesOfSettings, 1);
    EXPECT_EQ(settings().modelDownloadURL, standard);
    EXPECT_EQ(settings().modelSHA256, u""_s);
    model.usePreset(SettingsModel::MediumModel);
    EXPECT_EQ(settings().modelDownloadURL, folder + u"ggml-medium.bin"_s);
    model.usePreset(SettingsModel::LargeV3Model);
    EXPECT_EQ(settings().modelDownloadURL, folder + u"ggml-large-v3.bin"_s);
    EXPECT_EQ(settingsStore->load(), settings());
}

TEST_F(SettingsModelTest, TheModelIsDownloadedAnewAndItsProgressTold)
{
    EXPECT_TRUE(model.isModelReady());
    EXPECT_EQ(model.download().amount, QString());
    model.downloadModel();
    EXPECT_TRUE(model.isPreparingModel());
    state().modelDownload.set(DownloadProgress{62'000'000, 148'000'000});
    EXPECT_EQ(model.download().amount, u"62 MB of 148 MB"_s);
    EXPECT_EQ(model.download().percentage, u"41%"_s);
    EXPECT_NEAR(model.download().fraction, 0.42, 0.01);
    settle();
    EXPECT_FALSE(model.isPreparingModel());
    EXPECT_NE(model.lastError(), QString()); // nobody serves it
}

TEST_F(SettingsModelTest, WhyTheMicrophoneIsNotGrantedIsSaidWithWhatHelps)
{
    using Status = MicrophoneAuthorizationState;
    EXPECT_TRUE(model.isMicrophoneGranted());
    setMicrophone(Status::denied);
    EXPECT_FALSE(model.isMicrophoneGranted());
    EXPECT_EQ(model.microphoneMessage(),
              u"Microphone permission was denied for this app in macOS privacy settings."_s);
    EXPECT_EQ(model.microphoneHint(), u"If Kestrova is missing in Microphone settings: `tccutil "
                                      "reset Microphone com.kestrova.app`"_s);
}

TEST_F(SettingsModelTest, WhatKeepsAGrantedMicrophoneFromHearingIsSaid)
{
    EXPECT_EQ(model.microphoneNotice(), QString());
    EXPECT_THAT(topics.announcedBy([&] {
        fake.audioInput.setCondition(MicrophoneCondition::noDevice);
        settle();
    }),
                ElementsAre("microphoneChanged"));
    EXPECT_TRUE(model.isMicrophoneGranted());
    EXPECT_EQ(model.microphoneNotice(),
              u"There is no microphone. Connect one, or turn it on in the sound settings."_s);
}

TEST_F(SettingsModelTest, TheSystemsOwnAdviceAboutTheMicrophoneComesFirst)
{
    fake.access.setMicrophoneAdvice(u"Plug it in."_s);
    setMicrophone(MicrophoneAuthorizationState::unknown);
    EXPECT_EQ(model.microphoneMessage(), u"Plug it in."_s);
    EXPECT_EQ(model.microphoneHint(), QString());
}

TEST_F(SettingsModelTest, PermissionsAreAskedFor)
{
    setMicrophone(MicrophoneAuthorizationState::notDetermined);
    model.requestMicrophone();
    settle();
    EXPECT_EQ(fake.access.microphoneRequestCount(), 1);
    model.promptForAccessibility();
    EXPECT_EQ(fake.access.accessibilityPromptCount(), 1);
    EXPECT_TRUE(model.isAccessibilityGranted());
}

TEST_F(SettingsModelTest, ThePillsTellWhatIsThereAndWhatIsMissing)
{
    EXPECT_EQ(model.toolStatus(), PillStatus::success(u"Ready"_s));
    EXPECT_EQ(model.modelStatus(), PillStatus::success(u"Model Ready"_s));
    EXPECT_EQ(model.microphoneStatus(), PillStatus::success(u"Granted"_s));
    EXPECT_EQ(model.accessibilityStatus(), PillStatus::success(u"Granted"_s));
    state().isWhisperCLIReady.set(false);
    state().isModelReady.set(false);
    state().permissions.set({});
    EXPECT_EQ(model.toolStatus(), PillStatus::warning(u"Not Found"_s));
    EXPECT_EQ(model.modelStatus(), PillStatus::warning(u"Model Missing"_s));
    EXPECT_EQ(model.microphoneStatus(), PillStatus::warning(u"Not Granted"_s));
    EXPECT_EQ(model.accessibilityStatus(), PillStatus::warning(u"Not Granted"_s));
    state().accessibility.set(Access::unavailable);
    EXPECT_EQ(model.accessibilityStatus(), PillStatus::warning(u"Not Available"_s));
}

TEST_F(SettingsModelTest, EveryMemberThatItShowsIsAnnouncedByItsTopicsAlone)
{
    const auto announced = [&](auto change) { return topics.announcedBy(change); };
    EXPECT_THAT(announced([&] { model.setTheme(SettingsModel::Dark); }),
                UnorderedElementsAre("settingsChanged", "diagnosticsChanged"));
    EXPECT_THAT(announced([&] { state().state.set(DictationState::recording()); }),
                UnorderedElementsAre("statusChanged", "diagnosticsChanged"));
    EXPECT_THAT(announced([&] { state().lastError.set(u"It failed."_s); }),
                ElementsAre("errorChanged"));
    EXPECT_THAT(announced([&] { state().isModelReady.set(false); }),
                UnorderedElementsAre("modelChanged", "diagnosticsChanged"));
    EXPECT_THAT(announced([&] { state().isPreparingModel.set(true); }),
                ElementsAre("modelChanged"));
    EXPECT_THAT(announced([&] {
                    state().modelDownload.set(DownloadProgress{1, 2});
                }),
                ElementsAre("downloadChanged"));
    EXPECT_THAT(announced([&] { state().isWhisperCLIReady.set(false); }),
                ElementsAre("toolChanged"));
    EXPECT_THAT(announced([&] { state().resolvedWhisperCLIPath.set(u"/bin/tool"_s); }),
                ElementsAre("toolChanged"));
    EXPECT_THAT(
        announced([&] { state().permissions.set({}); }),
        UnorderedElementsAre("permissionsChanged", "microphoneChanged", "diagnosticsChanged"));
    EXPECT_THAT(announced([&] { state().accessibility.set(Access::unavailable); }),
                ElementsAre("permissionsChanged"));
    EXPECT_THAT(announced([&] { state().hotkeys.set({}); }), ElementsAre("shortcutChanged"));
}

TEST_F(SettingsModelTest, NothingIsAnnouncedThatIsTheSameOrNotShown)
{
    EXPECT_THAT(topics.announcedBy([&] {
        state().state.set(state().state.get());
        state().lastTranscript.set(u"Hello"_s);
        state().sessionWordCount.set(7);
    }),
                IsEmpty());
}

TEST_F(SettingsModelTest, TheReportIsPrintedAndCopied)
{
    fake.platform.pasteboard->setString(u"before"_s);
    model.copyDiagnostics();
    EXPECT_EQ(fake.platform.pasteboard->string(), controller->diagnosticsJSON());
    testing::internal::CaptureStdout();
    model.printDiagnostics();
    EXPECT_EQ(QString::fromStdString(testing::internal::GetCapturedStdout()),
              controller->diagnosticsJSON() + u'\n');
    EXPECT_EQ(model.diagnostics(), controller->diagnosticsJSON());
}

TEST_F(SettingsModelTest, AClipboardThatRefusesIsAnError)
{
    fake.pasteboard.failWriting(u"No clipboard."_s);
    model.copyDiagnostics();
    EXPECT_EQ(model.lastError(), u"No clipboard."_s);
}

} // namespace
} // namespace kestrova
