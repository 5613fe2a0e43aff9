#include "ViewModels/ControllerTest.h"

namespace kestrova {
namespace {

using Microphone = MicrophoneAuthorizationState;

const QString noModel = u"Model is not ready. Download ggml-base.bin before recording."_s;
const QString noTool = u"whisper-cli not found. Install whisper.cpp and update Settings."_s;
const QString noMicrophone = u"Microphone permission is required."_s;
const QString noAccessibility = u"Accessibility permission is required for text insertion."_s;

/// The checks before a dictation: each command makes them alike.
class AppControllerStartTest : public ControllerTest, public testing::WithParamInterface<bool>
{
protected:
    void start()
    {
        changes();
        if (GetParam())
            toggleSlot(1);
        else
            toggle();
    }
};

TEST_P(AppControllerStartTest, TheFirstCheckThatFailsIsReported)
{
    assign(1, u"org.example.Editor"_s, {});
    removeModel();
    isToolHidden = true;
    fake.access.setMicrophoneState(Microphone::notDetermined);
    fake.access.setAccessibilityTrusted(false);
    start();
    EXPECT_EQ(shownError(), noModel);
    EXPECT_EQ(fake.access.microphoneRequestCount(), 0);

    putModel();
    start();
    EXPECT_EQ(shownError(), noTool);
    EXPECT_EQ(fake.access.microphoneRequestCount(), 0);

    isToolHidden = false;
    start();
    EXPECT_EQ(shownError(), noMicrophone);
    EXPECT_EQ(fake.access.microphoneRequestCount(), 1);
    EXPECT_EQ(fake.access.accessibilityPromptCount(), 0) << "not examined in that call";

    fake.access.setMicrophoneState(Microphone::authorized);
    start();
    EXPECT_EQ(shownError(), noAccessibility);
    EXPECT_EQ(fake.access.accessibilityPromptCount(), 1);
    EXPECT_EQ(capture->starts, 0) << "a failed check starts nothing";

    fake.access.setAccessibilityTrusted(true);
    start();
    EXPECT_EQ(state().state.get(), DictationState::recording());
    EXPECT_EQ(capture->starts, 1);
}

TEST_P(AppControllerStartTest, TheLastErrorIsSetBeforeTheState)
{
    removeModel();
    start();
    EXPECT_EQ(changes(), QStringList({u"isModelReady"_s, u"lastError"_s, u"state error"_s}));
}

TEST_P(AppControllerStartTest, WithoutTheMicrophoneTheUserIsAskedAndCanThenStart)
{
    fake.access.setMicrophoneState(Microphone::notDetermined);
    start();
    fake.access.answerMicrophoneRequests(true);
    EXPECT_EQ(state().state.get(), DictationState::idle());
    EXPECT_EQ(lastError(), u"none"_s);
    EXPECT_TRUE(state().permissions.get().microphoneAuthorized);

    assign(1, u"org.example.Editor"_s, {});
    start();
    EXPECT_EQ(capture->starts, 1);
}

TEST_P(AppControllerStartTest, TheEnvironmentIsReadAgainAfterTheAccessibilityPrompt)
{
    fake.access.setAccessibilityTrusted(false);
    environmentReadings = 0;
    start();
    EXPECT_EQ(environmentReadings, 2);
    EXPECT_FALSE(state().permissions.get().accessibilityAuthorized);
}

TEST_P(AppControllerStartTest, WhatTheAccessibilityPromptBringsIsSeenAtOnce)
{
    fake.access.setAccessibilityTrusted(false);
    fake.access.grantAccessibilityWhenPrompted();
    start();
    EXPECT_EQ(shownError(), noAccessibility);
    EXPECT_TRUE(state().permissions.get().accessibilityAuthorized);
}

TEST_P(AppControllerStartTest, AnErrorIsNoObstacle)
{
    assign(1, u"org.example.Editor"_s, {});
    removeModel();
    start();
    putModel();
    start();
    EXPECT_EQ(state().state.get(), DictationState::recording());
    EXPECT_EQ(lastError(), noModel) << "a recording leaves an earlier error in place";
}

INSTANTIATE_TEST_SUITE_P(Commands, AppControllerStartTest, testing::Values(false, true),
                         [](const auto &tested) {
                             return std::string(tested.param ? "HotbarSlot" : "DefaultTarget");
                         });

TEST_F(ControllerTest, TheChecksComeBeforeTheSlotIsLookedUp)
{
    removeModel();
    toggleSlot(4);
    EXPECT_EQ(shownError(), noModel);
}

TEST_F(ControllerTest, AtItsStartTheControllerReadsTheEnvironmentTwice)
{
    environmentReadings = 0;
    launch();
    EXPECT_EQ(environmentReadings, 2);
    EXPECT_TRUE(state().isModelReady.get());
    EXPECT_TRUE(state().isWhisperCLIReady.get());
    EXPECT_EQ(state().resolvedWhisperCLIPath.get(), toolPath());
    EXPECT_EQ(state().permissions.get(), (PermissionSnapshot{true, Microphone::authorized, true}));
    EXPECT_EQ(state().state.get(), DictationState::idle());
    EXPECT_EQ(state().settings.get(), settingsStore->load());
}

TEST_F(ControllerTest, AtItsStartEverythingIsReadBeforeAndAfterTheShortcutsAreArmed)
{
    end();
    if (isReticent())
        useNamedShortcuts(); // anew: nothing is armed
    QStringList steps;
    const auto note = [&](const QString &reading) {
        const bool isArmed = areShortcutsArmed();
        const QString step = isArmed ? reading + u" when armed"_s : reading;
        if (steps.isEmpty() || steps.last() != step)
            steps.append(step);
    };
    const AppController started(AppEnvironment{.platform = fake.platform,
                                               .main = main,
                                               .background = background,
                                               .tools = tools,
                                               .storage = storage,
                                               .calendar = calendar,
                                               .now =
                                                   [&] {
                                                       note(u"usage"_s);
                                                       return now;
                                                   },
                                               .resolveTool =
                                                   [&](const QString &) {
                                                       note(u"environment"_s);
                                                       return std::nullopt;
                                                   }},
                                settingsStore, capture, inserter);
    EXPECT_EQ(steps, QStringList({u"usage"_s, // its log is loaded
                                  u"environment"_s, u"usage"_s, u"environment when armed"_s,
                                  u"usage when armed"_s}));
}

TEST_F(ControllerTest, UnlessToldOtherwiseItCountsByTheUsersOwnTimeZoneAndLocale)
{
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "Pacific/Kiritimati");
    const AppController started(AppEnvironment{fake.platform, main, background, tools, storage},
                                settingsStore, capture, inserter);
    if (zone.isNull())
        qunsetenv("TZ");
    else
        qputenv("TZ", zone);
    const Date day = date("2024-03-16T00:00:00+14:00");
    EXPECT_EQ(started.calendar().startOf(Calendar::Unit::day, date("2024-03-15T12:00:00Z")), day);
    EXPECT_EQ(started.calendar().label(day, u"dddd"),
              QLocale::system().toString(QDate(2024, 3, 16), u"dddd"));
}

TEST_F(ControllerTest, RefreshingShowsWhatIsMissingNow)
{
    removeModel();
    isToolHidden = true;
    fake.access.setMicrophoneState(Microphone::restricted);
    fake.access.setAccessibilityTrusted(false);
    controller->refreshEnvironmentSnapshot();
    EXPECT_FALSE(state().isModelReady.get());
    EXPECT_FALSE(state().isWhisperCLIReady.get());
    EXPECT_EQ(state().resolvedWhisperCLIPath.get(), u""_s);
    EXPECT_EQ(state().permissions.get(),
              (PermissionSnapshot{false, Microphone::restricted, false}));
    EXPECT_EQ(changes(), QStringList({u"permissions"_s, u"isModelReady"_s, u"isWhisperCLIReady"_s,
                                      u"resolvedWhisperCLIPath"_s, u"accessibility"_s}));
    EXPECT_EQ(state().state.get(), DictationState::idle()) << "what is missing is no error yet";
}

} // namespace
} // namespace kestrova
