#include "Views/Popover/PopoverModel.h"

#include "ViewModels/ControllerTest.h"
#include "ViewModels/Texts/MicrophoneHints.h"
#include "Views/AnnouncedTopics.h"

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class PopoverModelTest : public ControllerTest
{
protected:
    PopoverModelTest()
    {
        QObject::connect(&*model, &PopoverModel::dismissRequested,
                         [this] { calls.append(u"dismiss in "_s + model->status().text); });
        QObject::connect(&*model, &PopoverModel::openWindowRequested,
                         [this](const QString &window) { calls.append(u"open "_s + window); });
    }
    ~PopoverModelTest() override { model.reset(); }

    void revokePermissions(bool microphone, bool accessibility)
    {
        if (microphone)
            fake.access.setMicrophoneState(MicrophoneAuthorizationState::denied);
        if (accessibility)
            fake.access.setAccessibilityTrusted(false);
        model->refresh();
    }
    void hideTool()
    {
        isToolHidden = true;
        model->refresh();
    }
    void loseModel()
    {
        removeModel();
        model->refresh();
    }

    std::optional<PopoverModel> model{std::in_place, *controller};
    QStringList calls;
};

TEST_F(PopoverModelTest, WithModelAndToolTheDictationFaceIsShown)
{
    EXPECT_FALSE(model->showsSetupExperience());
}

TEST_F(PopoverModelTest, EachStepIsCompleteOnItsOwn)
{
    EXPECT_EQ(model->modelStep(), (SetupStep{u"Model"_s, u"ggml-base.bin ready"_s, true}));
    EXPECT_EQ(model->toolStep(), (SetupStep{u"Whisper CLI"_s, u"Found at "_s + toolPath(), true}));
    EXPECT_EQ(model->microphoneStep(), (SetupStep{u"Microphone"_s, u"Permission granted"_s, true}));
    EXPECT_EQ(model->accessibilityStep(),
              (SetupStep{u"Accessibility"_s, u"Permission granted"_s, true}));

    loseModel();
    EXPECT_EQ(model->modelStep(), (SetupStep{u"Model"_s, u"Download ggml-base.bin"_s, false}));
    hideTool();
    EXPECT_EQ(
        model->toolStep(),
        (SetupStep{u"Whisper CLI"_s, u"Install whisper.cpp and configure whisper-cli"_s, false}));
    revokePermissions(true, false);
    EXPECT_EQ(model->microphoneStep(),
              (SetupStep{u"Microphone"_s, u"Permission required"_s, false}));
    EXPECT_TRUE(model->accessibilityStep().isComplete);
    revokePermissions(false, true);
    EXPECT_EQ(model->accessibilityStep(),
              (SetupStep{u"Accessibility"_s, u"Permission needed for auto paste"_s, false}));
}

TEST_F(PopoverModelTest, WhatKeepsTheMicrophoneFromHearingIsToldBesideItsPermission)
{
    EXPECT_EQ(model->microphoneNotice(), QString());
    fake.audioInput.setCondition(MicrophoneCondition::muted);
    EXPECT_THAT(AnnouncedTopics(*model).announcedBy([&] { settle(); }),
                ElementsAre("microphoneChanged"));
    EXPECT_EQ(model->microphoneNotice(), microphoneHint(state()));
    EXPECT_FALSE(model->microphoneNotice().isEmpty());
    EXPECT_EQ(model->microphoneStep(), (SetupStep{u"Microphone"_s, u"Permission granted"_s, true}));
}

TEST_F(PopoverModelTest, WhyARecordingIsNotWholeIsTold)
{
    EXPECT_EQ(model->recordingNotice(), QString());
    toggle();
    fake.audioInput.tellProblem(RecordingProblem::fileNotWritten);
    toggle();
    EXPECT_EQ(model->recordingNotice(), recordingProblemText(RecordingProblem::fileNotWritten));
    EXPECT_EQ(model->lastTranscript(), u"Hello world"_s);
}

TEST_F(PopoverModelTest, AMissingToolShowsTheSetupFaceAndIsOfferedForInstallation)
{
    hideTool();
    EXPECT_TRUE(model->showsSetupExperience());
    EXPECT_TRUE(model->modelStep().isComplete);
    model->installWhisperCpp();
    EXPECT_EQ(fake.terminal.commands(), QStringList{u"brew install whisper-cpp"_s});
}

TEST_F(PopoverModelTest, AMissingModelShowsTheSetupFaceAsLongAsItIsMissing)
{
    loseModel();
    EXPECT_TRUE(model->showsSetupExperience());
    putModel();
    EXPECT_THAT(AnnouncedTopics(*model).announcedBy([&] { model->refresh(); }),
                Contains("setupChanged"));
    EXPECT_FALSE(model->showsSetupExperience());
}

TEST_F(PopoverModelTest, PermissionsDoNotDecideTheFace)
{
    revokePermissions(true, true);
    EXPECT_FALSE(model->showsSetupExperience());
    EXPECT_TRUE(model->lacksPermission());
}

TEST_F(PopoverModelTest, EitherMissingPermissionWarns)
{
    EXPECT_FALSE(model->lacksPermission());
    revokePermissions(false, true);
    EXPECT_TRUE(model->lacksPermission());
    fake.access.setAccessibilityTrusted(true);
    revokePermissions(true, false);
    EXPECT_TRUE(model->lacksPermission());
}

TEST_F(PopoverModelTest, WhatNoPermissionGivesIsNotAskedFor)
{
    EXPECT_FALSE(model->canGrantAccessibility()) << "it is granted";
    for (const Access access : {Access::denied, Access::notAsked}) {
        fake.access.setAccessibility(access);
        controller->refreshEnvironmentSnapshot();
        EXPECT_TRUE(model->canGrantAccessibility());
        EXPECT_EQ(model->accessibilityStep().detail, u"Permission needed for auto paste"_s);
    }
    fake.access.setAccessibility(Access::unavailable);
    controller->refreshEnvironmentSnapshot();
    EXPECT_FALSE(model->canGrantAccessibility());
    EXPECT_TRUE(model->lacksPermission());
    EXPECT_EQ(model->accessibilityStep().detail, u"Not possible on this desktop"_s);
}

TEST_F(PopoverModelTest, TheGrantsAskTheSystem)
{
    revokePermissions(true, true);
    model->grantAccessibility();
    EXPECT_EQ(fake.access.accessibilityPromptCount(), 1);
    fake.access.setMicrophoneState(MicrophoneAuthorizationState::authorized);
    fake.access.setAccessibilityTrusted(true);
    model->grantMicrophone();
    settle();
    EXPECT_FALSE(model->lacksPermission());
}

TEST_F(PopoverModelTest, ADownloadIsBusyUntilItHasFailedAndCanThenBeTriedAgain)
{
    EXPECT_EQ(model->modelButtonTitle(), u"Download ggml-base.bin"_s);
    for (int attempt = 1; attempt <= 2; ++attempt) {
        model->downloadModel();
        EXPECT_TRUE(model->isPreparingModel());
        EXPECT_EQ(model->modelButtonTitle(), u"Downloading model..."_s);
        settle();
        EXPECT_FALSE(model->isPreparingModel());
        EXPECT_EQ(model->modelButtonTitle(), u"Download ggml-base.bin"_s);
        EXPECT_NE(model->lastError(), QString());
    }
}

TEST_F(PopoverModelTest, ADownloadTellsHowFarItIs)
{
    state().modelDownload.set(DownloadProgress{62'312'345, 147'951'465});
    EXPECT_EQ(model->download().amount, u"62 MB of 148 MB"_s);
    EXPECT_EQ(model->download().percentage, u"42%"_s);
    EXPECT_NEAR(model->download().fraction, 0.42, 0.01);
    state().modelDownload.set(std::nullopt);
    EXPECT_EQ(model->download().amount, QString());
}

TEST_F(PopoverModelTest, TheStatusFollowsTheDictation)
{
    EXPECT_EQ(model->status().text, u"Ready"_s);
    toggle();
    EXPECT_EQ(model->status().text, u"Recording..."_s);
    EXPECT_EQ(model->status().tone, StatusPillTone::Recording);
    EXPECT_EQ(model->status().icon, u"waveform"_s);
}

TEST_F(PopoverModelTest, ADictationAddsItsWordsAndItsTranscript)
{
    EXPECT_EQ(model->wordsProcessed(), u"0"_s);
    EXPECT_EQ(model->lastTranscript(), QString());
    toggle();
    toggle();
    EXPECT_EQ(model->wordsProcessed(), u"2"_s);
    EXPECT_EQ(model->lastTranscript(), u"Hello world"_s);
}

TEST_F(PopoverModelTest, TheShortcutIsThatOfTheSettings)
{
    EXPECT_EQ(model->shortcut(), u"⌘⇧Space"_s);
    controller->setGlobalShortcut({.keyCode = 0, .modifiers = HotkeyShortcut::control});
    EXPECT_EQ(model->shortcut(), u"⌃A"_s);
}

TEST_F(PopoverModelTest, ThePrimaryButtonFollowsTheState)
{
    const auto button = [this] {
        return QStringList{model->primaryButtonTitle(), model->primaryButtonIcon()};
    };
    const QStringList start{u"Start Recording"_s, u"record.circle"_s};
    EXPECT_EQ(button(), start);
    EXPECT_EQ(model->primaryButtonLook(), PopoverModel::IdleLook);
    state().state.set(DictationState::recording());
    EXPECT_EQ(button(), QStringList({u"Stop & Insert"_s, u"stop.fill"_s}));
    EXPECT_EQ(model->primaryButtonLook(), PopoverModel::RecordingLook);
    state().state.set(DictationState::processing());
    EXPECT_EQ(button(), QStringList({u"Cancel"_s, u"xmark"_s}));
    EXPECT_EQ(model->primaryButtonLook(), PopoverModel::ProcessingLook);
    state().state.set(DictationState::error(u"It failed."_s));
    EXPECT_EQ(button(), start);
    EXPECT_EQ(model->primaryButtonLook(), PopoverModel::IdleLook);
}

TEST_F(PopoverModelTest, WhatADictationNeedsEnablesThePrimaryButton)
{
    EXPECT_FALSE(model->primaryButtonDisabled());
    loseModel();
    EXPECT_TRUE(model->primaryButtonDisabled());
    EXPECT_EQ(model->primaryButtonLook(), PopoverModel::DisabledLook);
    putModel();
    hideTool();
    EXPECT_TRUE(model->primaryButtonDisabled());
    isToolHidden = false;
    revokePermissions(true, false);
    EXPECT_TRUE(model->primaryButtonDisabled());
    fake.access.setMicrophoneState(MicrophoneAuthorizationState::authorized);
    revokePermissions(false, true);
    EXPECT_TRUE(model->primaryButtonDisabled());
    fake.access.setAccessibilityTrusted(true);
    model->refresh();
    EXPECT_FALSE(model->primaryButtonDisabled());
}

TEST_F(PopoverModelTest, ADictationUnderWayCanAlwaysBeEnded)
{
    revokePermissions(true, true);
    hideTool();
    for (const DictationState &underWay :
         {DictationState::recording(), DictationState::processing()}) {
        state().state.set(underWay);
        EXPECT_FALSE(model->primaryButtonDisabled());
        EXPECT_NE(model->primaryButtonLook(), PopoverModel::DisabledLook);
    }
    state().state.set(DictationState::error(u"It failed."_s));
    EXPECT_TRUE(model->primaryButtonDisabled());
}

TEST_F(PopoverModelTest, StartingDismissesThePopoverFirst)
{
    model->handlePrimaryAction();
    settle();
    EXPECT_EQ(calls, QStringList{u"dismiss in Ready"_s});
    EXPECT_EQ(model->status().text, u"Recording..."_s);
}

TEST_F(PopoverModelTest, StoppingLeavesThePopoverOpen)
{
    toggle();
    model->handlePrimaryAction();
    settle();
    EXPECT_EQ(calls, QStringList());
    EXPECT_EQ(model->lastTranscript(), u"Hello world"_s);
}

TEST_F(PopoverModelTest, CancellingLeavesThePopoverOpen)
{
    toggleIntoProcessing();
    ASSERT_EQ(model->status().text, u"AI Processing..."_s);
    model->handlePrimaryAction();
    settle();
    EXPECT_EQ(calls, QStringList());
    EXPECT_EQ(model->status().text, u"Ready"_s);
    EXPECT_EQ(model->lastTranscript(), QString());
}

TEST_F(PopoverModelTest, StartingAfterAnErrorLeavesThePopoverOpen)
{
    state().state.set(DictationState::error(u"It failed."_s));
    model->handlePrimaryAction();
    settle();
    EXPECT_EQ(calls, QStringList());
    EXPECT_EQ(model->status().text, u"Recording..."_s);
}

TEST_F(PopoverModelTest, AnErrorIsShownUntilItIsCleared)
{
    EXPECT_EQ(model->lastError(), QString());
    state().lastError.set(u""_s);
    EXPECT_EQ(model->lastError(), QString());
    state().lastError.set(u"The tool failed."_s);
    EXPECT_EQ(model->lastError(), u"The tool failed."_s);
    model->copyError();
    EXPECT_EQ(fake.pasteboard.string(), u"The tool failed."_s);
    state().clearErrorIfNeeded();
    EXPECT_EQ(model->lastError(), QString());
}

TEST_F(PopoverModelTest, OnlyADeliveryThatWasNotAskedForIsSpokenOf)
{
    const auto noticeOf = [this](DeliveryOutcome outcome) {
        state().lastDelivery.set({outcome, 1});
        return model->deliveryNotice();
    };
    EXPECT_EQ(model->deliveryNotice(), QString());
    EXPECT_EQ(noticeOf(DeliveryOutcome::leftOnClipboard), u"Not pasted: left on the clipboard."_s);
    EXPECT_EQ(noticeOf(DeliveryOutcome::unknown), u"Not confirmed: left on the clipboard."_s);
    EXPECT_EQ(noticeOf(DeliveryOutcome::replaced),
              u"Not confirmed: another program took the clipboard."_s);
    EXPECT_EQ(noticeOf(DeliveryOutcome::requested), QString());
}

TEST_F(PopoverModelTest, TextsThatMayNotHaveArrivedCanBeCopied)
{
    inserter->delivery = {DeliveryOutcome::leftOnClipboard, 1};
    for (const char *text : {"first", "second", "third"}) {
        hear(text);
        toggle();
        toggle();
        ++inserter->delivery.number;
    }
    EXPECT_EQ(model->unconfirmedTranscripts(), QStringList({u"second"_s, u"first"_s}));
    model->copyTranscript();
    EXPECT_EQ(fake.pasteboard.string(), u"third"_s);
    EXPECT_FALSE(model->deliveryNotice().isEmpty()) << "copying does not make it arrive";
    model->copyUnconfirmedTranscript(1);
    EXPECT_EQ(fake.pasteboard.string(), u"first"_s);
    EXPECT_EQ(model->unconfirmedTranscripts(), QStringList{u"second"_s});
    model->copyUnconfirmedTranscript(1);
    model->copyUnconfirmedTranscript(-1);
    EXPECT_EQ(fake.pasteboard.string(), u"first"_s);

    fake.pasteboard.failWriting(u"no clipboard"_s);
    model->copyUnconfirmedTranscript(0);
    EXPECT_EQ(model->lastError(), u"no clipboard"_s);
    EXPECT_EQ(model->unconfirmedTranscripts(), QStringList{u"second"_s});
}

TEST_F(PopoverModelTest, ALateRequestWithdrawsTheNotice)
{
    inserter->delivery = {DeliveryOutcome::leftOnClipboard, 7};
    toggle();
    toggle();
    EXPECT_FALSE(model->deliveryNotice().isEmpty());
    inserter->lateRequest(7);
    EXPECT_EQ(model->deliveryNotice(), QString());

    model.reset();
    end();
    inserter->lateRequest(7); // nobody is there to be told
}

TEST_F(PopoverModelTest, TheEmptyLinesAtAnErrorsEndAreNotShown)
{
    state().lastError.set(u"The tool failed.\n\n"_s);
    EXPECT_EQ(model->lastError(), u"The tool failed."_s);
}

TEST_F(PopoverModelTest, AWindowIsOpenedBeforeThePopoverGoes)
{
    model->openDashboard();
    model->openSettings();
    model->openSettings();
    EXPECT_EQ(calls,
              QStringList({u"open dashboard"_s, u"dismiss in Ready"_s, u"open settings"_s,
                           u"dismiss in Ready"_s, u"open settings"_s, u"dismiss in Ready"_s}));
}

TEST_F(PopoverModelTest, OfAnEndlessTextTheBeginningIsShownAndAllOfItCopied)
{
    const QString endless(1'000'000, u'x');
    state().lastTranscript.set(endless);
    state().lastError.set(endless);
    for (const QString &shown : {model->lastTranscript(), model->lastError()}) {
        EXPECT_LT(shown.size(), 30'000);
        EXPECT_TRUE(shown.startsWith(endless.first(20'000)));
        EXPECT_TRUE(shown.endsWith(u'…'));
    }
    model->copyError();
    EXPECT_EQ(fake.pasteboard.string(), endless);
}

TEST_F(PopoverModelTest, NoCharacterOfAnEndlessTextIsCutAndBlanksAtItsEndDoNotCount)
{
    state().lastError.set(u'x' + u"😀"_s.repeated(20'000));
    EXPECT_EQ(model->lastError(), u'x' + u"😀"_s.repeated(9'999) + u'…');
    state().lastError.set(u'x' + QString(30'000, u'\n'));
    EXPECT_EQ(model->lastError(), u"x"_s);
}

TEST_F(PopoverModelTest, EveryMemberThatItShowsIsAnnouncedByItsTopicsAlone)
{
    const AnnouncedTopics topics(*model);
    const auto announced = [&](auto change) { return topics.announcedBy(change); };
    EXPECT_THAT(announced([&] { state().state.set(DictationState::recording()); }),
                UnorderedElementsAre("statusChanged", "primaryButtonChanged"));
    EXPECT_THAT(announced([&] { state().sessionWordCount.set(7); }),
                ElementsAre("wordsProcessedChanged"));
    EXPECT_THAT(announced([&] { state().lastTranscript.set(u"Hello"_s); }),
                ElementsAre("transcriptChanged"));
    EXPECT_THAT(announced([&] {
                    state().lastDelivery.set({DeliveryOutcome::unknown, 1});
                }),
                ElementsAre("transcriptChanged"));
    EXPECT_THAT(announced([&] {
                    state().unconfirmedTranscripts.set({{1, u"Hello"_s}});
                }),
                ElementsAre("transcriptChanged"));
    EXPECT_THAT(announced([&] { state().recordingProblem.set(RecordingProblem::fileNotWritten); }),
                ElementsAre("transcriptChanged"));
    EXPECT_THAT(announced([&] { state().lastError.set(u"It failed."_s); }),
                ElementsAre("errorChanged"));
    EXPECT_THAT(announced([&] { state().isModelReady.set(false); }),
                UnorderedElementsAre("setupChanged", "primaryButtonChanged"));
    EXPECT_THAT(announced([&] { state().isPreparingModel.set(true); }),
                ElementsAre("setupChanged"));
    EXPECT_THAT(announced([&] {
                    state().modelDownload.set(DownloadProgress{1, 2});
                }),
                ElementsAre("downloadChanged"));
    EXPECT_THAT(announced([&] { state().isWhisperCLIReady.set(false); }),
                UnorderedElementsAre("setupChanged", "primaryButtonChanged"));
    EXPECT_THAT(announced([&] { state().resolvedWhisperCLIPath.set(u"/bin/tool"_s); }),
                ElementsAre("setupChanged"));
    EXPECT_THAT(
        announced([&] { state().permissions.set({}); }),
        UnorderedElementsAre("permissionsChanged", "microphoneChanged", "primaryButtonChanged"));
    EXPECT_THAT(announced([&] { state().accessibility.set(Access::unavailable); }),
                ElementsAre("permissionsChanged"));
    EXPECT_THAT(announced([&] { state().microphone.set(MicrophoneCondition::muted); }),
                ElementsAre("microphoneChanged"));
    EXPECT_THAT(announced([&] { state().hotkeys.set({}); }), ElementsAre("shortcutChanged"));
}

TEST_F(PopoverModelTest, NothingIsAnnouncedThatIsTheSameOrNotShown)
{
    const AnnouncedTopics topics(*model);
    EXPECT_THAT(topics.announcedBy([&] { state().state.set(state().state.get()); }), IsEmpty());
    EXPECT_THAT(topics.announcedBy([&] {
        AppSettings settings = state().settings.get();
        settings.theme = AppTheme::dark;
        state().settings.set(settings);
    }),
                IsEmpty());
}

} // namespace
} // namespace kestrova
