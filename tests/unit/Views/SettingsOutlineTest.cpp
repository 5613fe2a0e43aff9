#include "Views/Settings/SettingsModel.h"

#include "Views/WindowOutlineTest.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using Microphone = MicrophoneAuthorizationState;

class SettingsOutlineTest : public WindowOutlineTest
{
protected:
    void open(const QString &title)
    {
        show(u"Settings/SettingsView.qml"_s, model);
        press(u"tab "_s + title + (title == u"General"_s ? u" (selected)"_s : u""_s));
    }
    /// What every tab has above its cards.
    static QStringList head(const QString &title)
    {
        QStringList lines;
        for (const QString &tab :
             {u"General"_s, u"Whisper.cpp"_s, u"Model"_s, u"Permissions"_s, u"Diagnostics"_s})
            lines.append(u"tab "_s + tab + (tab == title ? u" (selected)"_s : u""_s));
        return lines +
               QStringList({u"heading Kestrova Settings"_s, u"text "_s + title, u"text Ready"_s});
    }
    QStringList permissions() { return outline().mid(head(u"Permissions"_s).size()); }

    SettingsModel model{*controller, {*fake.platform.keyMonitoring, *fake.platform.windowing}};
};

const QStringList tabSymbols = {u"slider.horizontal.3"_s, u"waveform"_s, u"externaldrive"_s,
                                u"hand.raised"_s, u"wrench.and.screwdriver"_s};

TEST_F(SettingsOutlineTest, General)
{
    open(u"General"_s);
    EXPECT_EQ(
        outline(),
        head(u"General"_s) +
            QStringList({u"heading Global Shortcut"_s, u"text Default is Command + Shift + Space"_s,
                         u"text Current"_s, u"text ⌘⇧Space"_s, u"button Record Shortcut"_s,
                         u"button Reset to Default"_s,
                         u"text Tip: press Escape in the recorder to cancel."_s,
                         u"heading Appearance"_s, u"text Choose a fixed app theme"_s,
                         u"group Theme"_s, u"choice Light (checked)"_s, u"choice Dark"_s,
                         u"heading Navigation"_s,
                         u"text Use Dashboard for hotbar app assignment and usage "
                         "analytics"_s,
                         u"button Open Dashboard"_s}));
    EXPECT_EQ(symbols(), tabSymbols + QStringList{u"checkmark"_s});
}

TEST_F(SettingsOutlineTest, GeneralsButtonsDoWhatTheySay)
{
    open(u"General"_s);
    controller->setGlobalShortcut({3, HotkeyShortcut::command});
    press(u"button Reset to Default"_s);
    EXPECT_EQ(state().settings.get().shortcut, HotkeyShortcut::defaultMain());
    press(u"choice Dark"_s);
    EXPECT_EQ(state().settings.get().theme, AppTheme::dark);

    QStringList opened;
    QObject::connect(&model, &SettingsModel::openWindowRequested,
                     [&](const QString &identifier) { opened.append(identifier); });
    press(u"button Open Dashboard"_s);
    EXPECT_EQ(opened, QStringList{u"dashboard"_s});
}

TEST_F(SettingsOutlineTest, Whisper)
{
    open(u"Whisper.cpp"_s);
    EXPECT_EQ(outline(),
              head(u"Whisper.cpp"_s) +
                  QStringList({u"heading Runtime"_s,
                               u"text Pinned to a deterministic whisper.cpp commit"_s,
                               u"text Runtime status"_s,
                               u"text Ready"_s,
                               u"text Pinned commit"_s,
                               u"text 9f70a352f9c9c4209f3e8f79f4f4f0f6b27f2b7d"_s,
                               u"text Resolved CLI path"_s,
                               u"text "_s + toolPath(),
                               u"heading Configuration"_s,
                               u"text Install tip: brew install whisper-cpp"_s,
                               u"field whisper-cli path"_s,
                               u"heading Accuracy Controls"_s,
                               u"text Fixed language and stronger decoding usually improve "
                               "transcript quality"_s,
                               u"field Language code (auto, en, es, fr...)"_s,
                               u"group Decoding profile"_s,
                               u"choice Balanced (checked)"_s,
                               u"choice Accurate"_s,
                               u"text Default decoding speed and quality."_s,
                               u"button Use Auto Detect"_s,
                               u"button Use English"_s,
                               u"button Install via Homebrew"_s,
                               u"button Re-check CLI"_s}));
    EXPECT_EQ(symbols(), tabSymbols + QStringList({u"checkmark"_s, u"checkmark"_s}));
}

TEST_F(SettingsOutlineTest, WhispersButtonsDoWhatTheySay)
{
    open(u"Whisper.cpp"_s);
    press(u"button Use English"_s);
    EXPECT_EQ(state().settings.get().transcriptionLanguage, u"en"_s);
    press(u"button Use Auto Detect"_s);
    EXPECT_EQ(state().settings.get().transcriptionLanguage, u"auto"_s);
    press(u"choice Accurate"_s);
    EXPECT_EQ(state().settings.get().decodingProfile, WhisperDecodingProfile::accurate);
    EXPECT_TRUE(outline().contains(
        u"text Slower decode with stronger search and non-speech suppression."_s));
    press(u"button Install via Homebrew"_s);
    EXPECT_EQ(fake.terminal.commands(), QStringList{u"brew install whisper-cpp"_s});
}

TEST_F(SettingsOutlineTest, AToolThatHasGoneIsNoticedByCheckingAgain)
{
    open(u"Whisper.cpp"_s);
    isToolHidden = true;
    EXPECT_FALSE(shows(u"text Not Found"_s));
    press(u"button Re-check CLI"_s);
    EXPECT_TRUE(shows(u"text Not Found"_s));
    EXPECT_EQ(symbols().last(), u"exclamationmark"_s);
}

TEST_F(SettingsOutlineTest, Model)
{
    open(u"Model"_s);
    EXPECT_EQ(
        outline(),
        head(u"Model"_s) +
            QStringList(
                {u"text v1 stays fully local: audio and transcripts do not leave your machine."_s,
                 u"heading Model"_s, u"text Model is cached locally for offline transcription"_s,
                 u"field Download URL"_s, u"field SHA256 checksum"_s,
                 u"text Add SHA256 to enforce deterministic model verification."_s,
                 u"text Model Ready"_s, u"button Download / Verify"_s,
                 u"heading Accuracy Presets"_s,
                 u"text Higher quality models trade speed for accuracy"_s, u"button Base"_s,
                 u"button Medium"_s, u"button Large-v3"_s}));
}

TEST_F(SettingsOutlineTest, ModelsButtonsDoWhatTheySay)
{
    open(u"Model"_s);
    const QString repository = u"https://huggingface.co/ggerganov/whisper.cpp/resolve/main/"_s;
    for (const auto &[button, file] :
         {std::pair{u"Base"_s, u"ggml-base.bin"_s}, std::pair{u"Medium"_s, u"ggml-medium.bin"_s},
          std::pair{u"Large-v3"_s, u"ggml-large-v3.bin"_s}}) {
        controller->updateSettings([](AppSettings &settings) { settings.modelSHA256 = u"00"_s; });
        press(u"button "_s + button);
        EXPECT_EQ(state().settings.get().modelDownloadURL, repository + file);
        EXPECT_EQ(state().settings.get().modelSHA256, QString());
    }
    ASSERT_TRUE(pressItem(*window, u"button Download / Verify"_s));
    EXPECT_TRUE(state().isPreparingModel.get());
    EXPECT_TRUE(shows(u"button Downloading... (disabled)"_s));
}

TEST_F(SettingsOutlineTest, AMissingModelIsSaid)
{
    removeModel();
    controller->refreshEnvironmentSnapshot();
    open(u"Model"_s);
    EXPECT_TRUE(shows(u"text Model Missing"_s));
    EXPECT_EQ(symbols().last(), u"exclamationmark"_s);
}

TEST_F(SettingsOutlineTest, PermissionsThatAreGranted)
{
    open(u"Permissions"_s);
    EXPECT_EQ(permissions(),
              QStringList({u"text Microphone"_s, u"text Microphone: Granted"_s, u"button Request"_s,
                           u"text Accessibility"_s, u"text Accessibility: Granted"_s,
                           u"button Open Prompt"_s,
                           u"text Accessibility permission is required for reliable auto-paste "
                           "into your active app."_s}));
    EXPECT_EQ(symbols(), tabSymbols + QStringList(3, u"checkmark"_s));
}

TEST_F(SettingsOutlineTest, APermissionThatIsMissingSaysWhyAndWhatHelps)
{
    const QList<std::pair<Microphone, QString>> messages = {
        {Microphone::denied,
         u"Microphone permission was denied for this app in macOS privacy settings."_s},
        {Microphone::restricted, u"Microphone permission is restricted by system policy (for "
                                 "example Screen Time or MDM)."_s},
        {Microphone::notDetermined,
         u"macOS has not completed the microphone permission flow for this app yet."_s},
        {Microphone::unknown, u"Microphone permission status is unknown."_s},
    };
    fake.access.setAccessibilityTrusted(false);
    open(u"Permissions"_s);
    for (const auto &[status, message] : messages) {
        fake.access.setMicrophoneState(status);
        controller->refreshEnvironmentSnapshot();
        EXPECT_EQ(permissions().mid(0, 5),
                  QStringList({u"text Microphone"_s, u"text Microphone: Not Granted"_s,
                               u"button Request"_s, u"text "_s + message,
                               u"text If Kestrova is missing in Microphone settings: `tccutil "
                               "reset Microphone com.kestrova.app`"_s}));
        EXPECT_TRUE(permissions().contains(u"text Accessibility: Not Granted"_s));
    }
}

TEST_F(SettingsOutlineTest, WhatNoPermissionGivesHasNoButton)
{
    fake.access.setAccessibility(Access::unavailable);
    controller->refreshEnvironmentSnapshot();
    open(u"Permissions"_s);
    EXPECT_EQ(permissions(),
              QStringList({u"text Microphone"_s, u"text Microphone: Granted"_s, u"button Request"_s,
                           u"text Accessibility"_s, u"text Accessibility: Not Available"_s,
                           u"text This desktop does not let programs observe the keyboard and "
                           "paste into other applications."_s}));
}

TEST_F(WindowOutlineTest, WhereTheDesktopDecidesOnShortcutsTheSettingsOfferItsDialog)
{
    FakeGlobalShortcuts &shortcuts = useNamedShortcuts();
    launch();
    shortcuts.accept();
    SettingsModel model{*controller, {*fake.platform.keyMonitoring, *fake.platform.windowing}};
    show(u"Settings/SettingsView.qml"_s, model);
    const QStringList shown = outline();
    const qsizetype card = shown.indexOf(u"heading Global Shortcut"_s);
    EXPECT_EQ(shown.mid(card, 6),
              QStringList({u"heading Global Shortcut"_s, u"text Current"_s,
                           u"text keys of toggle"_s, u"button Configure Shortcuts"_s,
                           u"text On this desktop, the keys of all shortcuts are chosen in its "
                           "settings."_s,
                           u"heading Appearance"_s}));
    press(u"button Configure Shortcuts"_s);
    EXPECT_EQ(shortcuts.configurations(), 1);
    window.reset();
}

TEST_F(SettingsOutlineTest, PermissionsButtonsDoWhatTheySay)
{
    fake.access.setMicrophoneState(Microphone::notDetermined);
    fake.access.setAccessibilityTrusted(false);
    controller->refreshEnvironmentSnapshot();
    open(u"Permissions"_s);
    press(u"button Request"_s);
    EXPECT_EQ(fake.access.microphoneRequestCount(), 1);
    fake.access.answerMicrophoneRequests(true);
    settle();
    EXPECT_TRUE(shows(u"text Microphone: Granted"_s));

    const int before = environmentReadings;
    press(u"button Open Prompt"_s);
    EXPECT_EQ(fake.access.accessibilityPromptCount(), 1);
    EXPECT_EQ(environmentReadings, before + 1);
}

TEST_F(SettingsOutlineTest, Diagnostics)
{
    open(u"Diagnostics"_s);
    EXPECT_EQ(outline(), head(u"Diagnostics"_s) +
                             QStringList({u"heading Support"_s,
                                          u"text Use diagnostics output when reporting setup or "
                                          "insertion issues."_s,
                                          u"text Diagnostics"_s, u"button Print to Console"_s,
                                          u"button Copy JSON"_s}));
    fake.pasteboard.put(u"something else"_s);
    press(u"button Copy JSON"_s);
    EXPECT_EQ(fake.pasteboard.string(), controller->diagnosticsJSON());
}

TEST_F(SettingsOutlineTest, AnErrorIsShownBelowEveryTab)
{
    state().lastError.set(u"It failed."_s);
    open(u"General"_s);
    for (const QString &tab : {u"Whisper.cpp"_s, u"Model"_s, u"Permissions"_s, u"Diagnostics"_s}) {
        EXPECT_TRUE(shows(u"alert It failed."_s));
        press(u"tab "_s + tab);
    }
    EXPECT_TRUE(shows(u"alert It failed."_s));
}

} // namespace
} // namespace kestrova
