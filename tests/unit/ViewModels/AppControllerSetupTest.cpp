#include "ViewModels/ControllerTest.h"

namespace kestrova {
namespace {

using Microphone = MicrophoneAuthorizationState;

const QString installCommand = u"brew install whisper-cpp"_s;

class AppControllerSetupTest : public ControllerTest
{
protected:
    void failOnce()
    {
        isToolHidden = true;
        toggle();
        isToolHidden = false;
        changes();
    }
};

TEST_F(AppControllerSetupTest, TheToolIsInstalledInATerminal)
{
    failOnce();
    controller->installWhisperCppViaHomebrew();
    EXPECT_EQ(fake.terminal.commands(), QStringList{installCommand});
    EXPECT_EQ(changes(), QStringList{u"no lastError"_s}) << "the state is not touched";
    EXPECT_EQ(state().state.get().kind, DictationState::Kind::error);
    EXPECT_FALSE(fake.pasteboard.string());
}

TEST_F(AppControllerSetupTest, WithoutATerminalTheCommandIsOnThePasteboard)
{
    fake.pasteboard.put(u"something else"_s);
    fake.terminal.failToOpen(u"no terminal"_s);
    controller->installWhisperCppViaHomebrew();
    EXPECT_EQ(fake.pasteboard.string(), installCommand);
    EXPECT_EQ(shownError(), u"Could not open Terminal automatically. Run `brew install "
                            "whisper-cpp` manually (command copied to clipboard)."_s);
    EXPECT_EQ(changes(), QStringList({u"lastError"_s, u"state error"_s}));
}

TEST_F(AppControllerSetupTest, ATerminalThatDiesLaterIsOneThatDidNotOpen)
{
    controller->installWhisperCppViaHomebrew();
    EXPECT_EQ(lastError(), u"none"_s);
    fake.terminal.failLater();
    EXPECT_EQ(fake.pasteboard.string(), installCommand);
    EXPECT_EQ(shownError(), u"Could not open Terminal automatically. Run `brew install "
                            "whisper-cpp` manually (command copied to clipboard)."_s);
    end();
    fake.terminal.failLater();
}

TEST_F(AppControllerSetupTest, ACopyThatFailedIsNotClaimed)
{
    fake.pasteboard.failWriting(u"no pasteboard"_s);
    fake.terminal.failToOpen(u"no terminal"_s);
    controller->installWhisperCppViaHomebrew();
    EXPECT_EQ(shownError(), u"Could not open Terminal automatically. Run `brew install "
                            "whisper-cpp` manually."_s);
}

TEST_F(AppControllerSetupTest, AGrantedMicrophoneClearsTheError)
{
    fake.access.setMicrophoneState(Microphone::notDetermined);
    toggle();
    ASSERT_EQ(shownError(), u"Microphone permission is required."_s);
    changes();
    fake.access.answerMicrophoneRequests(true);
    EXPECT_EQ(changes(), QStringList({u"permissions"_s, u"state idle"_s, u"no lastError"_s}));
}

TEST_F(AppControllerSetupTest, TheRequestIsATaskOfItsOwn)
{
    fake.access.setMicrophoneState(Microphone::notDetermined);
    controller->requestMicrophoneAccess();
    EXPECT_EQ(fake.access.microphoneRequestCount(), 0);
    settle();
    EXPECT_EQ(fake.access.microphoneRequestCount(), 1);
    EXPECT_EQ(changes(), QStringList()) << "nothing is known before the answer";
}

TEST_F(AppControllerSetupTest, AnAuthorisedMicrophoneIsNotAskedFor)
{
    controller->requestMicrophoneAccess();
    settle();
    EXPECT_EQ(fake.access.microphoneRequestCount(), 0);
    EXPECT_EQ(lastError(), u"none"_s);
}

TEST_F(AppControllerSetupTest, ARefusedMicrophoneExplainsItselfAndLeavesTheState)
{
    end();
    fake.platform.bundle.identifier = u"org.example.Kestrova"_s;
    launch();
    fake.access.setMicrophoneState(Microphone::notDetermined);
    controller->requestMicrophoneAccess();
    settle();
    fake.access.answerMicrophoneRequests(false);
    EXPECT_EQ(changes(), QStringList({u"permissions"_s, u"lastError"_s}));
    EXPECT_EQ(state().state.get(), DictationState::idle());
    EXPECT_EQ(
        lastError(),
        u"Microphone access is denied for Kestrova. Enable it in System Settings > Privacy & "
        "Security > Microphone.\nIf Kestrova is missing from that list, run `tccutil reset "
        "Microphone org.example.Kestrova` in Terminal, relaunch Kestrova, and request again."_s);
}

TEST_F(AppControllerSetupTest, AProgramWithoutAnIdentifierNamesTheUsualOne)
{
    fake.access.setMicrophoneState(Microphone::unknown);
    controller->requestMicrophoneAccess();
    settle();
    EXPECT_EQ(lastError(), u"Microphone permission status is unknown.\nOpen System Settings > "
                           "Privacy & Security > Microphone. If Kestrova is missing, run `tccutil "
                           "reset Microphone com.kestrova.app` and relaunch."_s);
}

TEST_F(AppControllerSetupTest, TheSystemsOwnAdviceComesFirst)
{
    fake.access.setMicrophoneState(Microphone::denied);
    fake.access.setMicrophoneAdvice(u"Open the sandbox."_s);
    controller->requestMicrophoneAccess();
    settle();
    EXPECT_EQ(lastError(), u"Open the sandbox."_s);
    EXPECT_EQ(state().state.get(), DictationState::idle());
}

TEST_F(AppControllerSetupTest, PromptingForAccessibilityReadsTheEnvironmentAgain)
{
    fake.access.setAccessibilityTrusted(false);
    controller->promptForAccessibility();
    EXPECT_EQ(fake.access.accessibilityPromptCount(), 1);
    EXPECT_FALSE(state().permissions.get().accessibilityAuthorized);
    EXPECT_EQ(lastError(), u"none"_s);
}

TEST_F(AppControllerSetupTest, AShownTextCanBeCopied)
{
    fake.pasteboard.put(u"something else"_s);
    controller->copy(u"The tool failed."_s);
    EXPECT_EQ(fake.pasteboard.string(), u"The tool failed."_s);
    EXPECT_EQ(lastError(), u"none"_s);
}

TEST_F(AppControllerSetupTest, CopyingThatFailsIsShownAndLeavesTheState)
{
    fake.pasteboard.failWriting(u"no pasteboard"_s);
    controller->copy(u"The tool failed."_s);
    EXPECT_EQ(lastError(), u"no pasteboard"_s);
    EXPECT_EQ(state().state.get(), DictationState::idle());
}

TEST_F(AppControllerSetupTest, WhatTheSystemAllowsIsFollowedWhenItSaysThatItChanged)
{
    fake.access.setAccessibility(Access::notAsked);
    fake.access.announceChange();
    EXPECT_FALSE(state().permissions.get().accessibilityAuthorized);
    EXPECT_EQ(state().accessibility.get(), Access::notAsked);
    fake.access.setAccessibility(Access::granted);
    fake.access.announceChange();
    EXPECT_TRUE(state().permissions.get().accessibilityAuthorized);
    end();
    fake.access.announceChange();
}

} // namespace
} // namespace kestrova
