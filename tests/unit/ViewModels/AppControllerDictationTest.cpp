#include "ViewModels/ControllerTest.h"

#include "Models/ReadableError.h"
#include "Models/Usage/UsageEventsJson.h"

namespace kestrova {
namespace {

using AppControllerDictationTest = ControllerTest;

TEST_F(AppControllerDictationTest, TwoTogglesAreOneDictation)
{
    toggle();
    EXPECT_EQ(changes(), QStringList{u"state recording"_s});
    toggle();
    EXPECT_EQ(changes(),
              QStringList({u"state processing"_s, u"lastTranscript"_s, u"sessionWordCount"_s,
                           u"usageSnapshot"_s, u"usageTrendBuckets"_s, u"state idle"_s}));
    ASSERT_EQ(inserter->insertions.size(), 1U);
    EXPECT_EQ(inserter->insertions[0].text, u"Hello world"_s);
    EXPECT_EQ(state().lastTranscript.get(), u"Hello world"_s);
    EXPECT_EQ(state().sessionWordCount.get(), 2);
}

TEST_F(AppControllerDictationTest, TheToolAndTheModelAreThoseOfTheSettings)
{
    controller->updateSettings([](AppSettings &settings) {
        settings.transcriptionLanguage = u"de"_s;
        settings.decodingProfile = WhisperDecodingProfile::balanced;
    });
    toggle();
    toggle();
    ASSERT_EQ(fake.processes.calls().size(), 1);
    const FakeProcessCall call = fake.processes.calls().first();
    EXPECT_EQ(call.executable, toolPath());
    EXPECT_EQ(call.arguments.value(1), modelPath());
    EXPECT_EQ(call.arguments.value(call.arguments.indexOf(u"-l"_s) + 1), u"de"_s);
}

TEST_F(AppControllerDictationTest, ACommandReturnsBeforeTheDictationBegins)
{
    controller->toggleRecordingWithDefaultTarget();
    EXPECT_TRUE(background.isIdle());
    main.runAll();
    EXPECT_EQ(capture->starts, 0) << "the recorder is started on a worker";
    EXPECT_EQ(state().state.get(), DictationState::idle());
    background.runAll();
    EXPECT_EQ(state().state.get(), DictationState::idle()) << "the event is a task of its own";
    main.runAll();
    EXPECT_EQ(state().state.get(), DictationState::recording());
}

TEST_F(AppControllerDictationTest, PressesDuringProcessingOnlyReadTheEnvironment)
{
    toggleIntoProcessing();
    ASSERT_EQ(state().state.get(), DictationState::processing());
    changes();
    environmentReadings = 0;
    removeModel();
    controller->toggleRecordingWithDefaultTarget();
    controller->toggleRecordingWithHotbarSlot(4);
    EXPECT_EQ(environmentReadings, 2);
    EXPECT_EQ(changes(), QStringList{u"isModelReady"_s});
    EXPECT_TRUE(main.isIdle());

    putModel();
    settle();
    EXPECT_EQ(inserter->insertions.size(), 1U);
    EXPECT_EQ(capture->starts, 1);
}

TEST_F(AppControllerDictationTest, AStopMakesNoChecks)
{
    toggle();
    removeModel();
    isToolHidden = true;
    fake.access.setMicrophoneState(MicrophoneAuthorizationState::denied);
    fake.access.setAccessibilityTrusted(false);
    controller->toggleRecordingWithDefaultTarget();
    main.runAll();
    EXPECT_EQ(state().state.get(), DictationState::processing());
    EXPECT_EQ(lastError(), u"none"_s);
    background.runAll();
    EXPECT_EQ(capture->stops, 1);
}

TEST_F(AppControllerDictationTest, AnySlotStopsAndTheDestinationStaysTheOneOfTheStart)
{
    assign(2, browser.bundleIdentifier, u"Browser"_s);
    toggleSlot(2);
    toggleSlot(7);
    ASSERT_EQ(inserter->insertions.size(), 1U);
    EXPECT_EQ(inserter->insertions[0].target, targetOfSlot(browser, u"Browser"_s));
    EXPECT_EQ(lastError(), u"none"_s) << "slot 7 is unassigned, but only stopped";

    toggle();
    toggleSlot(2);
    EXPECT_EQ(inserter->insertions[1].target, targetInFront(editor));

    toggleSlot(2);
    toggle();
    EXPECT_EQ(inserter->insertions[2].target, targetOfSlot(browser, u"Browser"_s));
    EXPECT_EQ(state().usageSnapshot.get().slotUsage[1], (SlotUsageStat{2, 2}));
}

// The second press finds the state of before the first: it is a start too, which the coordinator
// keeps until the first one has ended, and then takes for the end of the recording.
TEST_F(AppControllerDictationTest, OfTwoQuickPressesTheSecondEndsTheRecording)
{
    controller->toggleRecordingWithDefaultTarget();
    controller->toggleRecordingWithDefaultTarget();
    EXPECT_EQ(state().state.get(), DictationState::idle());
    settle();
    EXPECT_EQ(changes().mid(0, 2), QStringList({u"state recording"_s, u"state processing"_s}));
    EXPECT_EQ(capture->starts, 1);
    EXPECT_EQ(capture->stops, 1);
    EXPECT_EQ(state().state.get(), DictationState::idle());
    EXPECT_EQ(lastError(), u"none"_s);
}

TEST_F(AppControllerDictationTest, AnErrorStaysUntilTheNextIdle)
{
    capture->whenStarted = [] { throw PlatformError(u"No microphone."_s); };
    toggle();
    EXPECT_EQ(changes(), QStringList({u"lastError"_s, u"state error"_s}));
    EXPECT_EQ(shownError(), u"No microphone."_s);
    controller->refreshEnvironmentSnapshot();
    controller->refreshUsageAnalytics();
    settle();
    EXPECT_EQ(shownError(), u"No microphone."_s);

    capture->whenStarted = nullptr;
    toggleIntoProcessing();
    EXPECT_EQ(state().state.get(), DictationState::processing());
    EXPECT_EQ(lastError(), u"No microphone."_s) << "recording and processing keep it";
    settle();
    EXPECT_EQ(state().state.get(), DictationState::idle());
    EXPECT_EQ(lastError(), u"none"_s);
}

TEST_F(AppControllerDictationTest, AnErrorIsReplacedByTheNext)
{
    hear("  ");
    toggle();
    toggle();
    EXPECT_EQ(shownError(), u"No speech detected."_s);
    inserter->whenAsked = [](const std::stop_token &) { throw PlatformError(u"No focus."_s); };
    hear("Hello");
    toggle();
    toggle();
    EXPECT_EQ(shownError(), u"No focus."_s);
    EXPECT_EQ(state().sessionWordCount.get(), 0) << "what was not inserted does not count";
}

TEST_F(AppControllerDictationTest, CancellingAbandonsTheProcessing)
{
    toggleIntoProcessing();
    changes();
    controller->cancelProcessing();
    EXPECT_EQ(state().state.get(), DictationState::processing()) << "only the event changes it";
    main.runAll();
    EXPECT_EQ(changes(), QStringList{u"state idle"_s});
    settle();
    EXPECT_EQ(changes(), QStringList());
    EXPECT_TRUE(inserter->insertions.empty());
    EXPECT_EQ(lastError(), u"none"_s);
}

TEST_F(AppControllerDictationTest, ACancelledRunThatEndsDuringTheNextDictationLeavesItAlone)
{
    assign(2, browser.bundleIdentifier, u"Browser"_s);
    inserter->whenAsked = [this](const std::stop_token &) {
        controller->cancelProcessing();
        main.runAll();
        controller->toggleRecordingWithHotbarSlot(2);
        main.runAll();
        background.runOne();
        main.runAll();
        EXPECT_EQ(changes().last(), u"state recording"_s);
    };
    toggle();
    toggle();
    inserter->whenAsked = nullptr;
    ASSERT_EQ(inserter->insertions.size(), 1U);
    EXPECT_EQ(state().state.get(), DictationState::recording());
    EXPECT_FALSE(changes().contains(u"state idle"_s)) << "not while the microphone is open";

    toggle();
    EXPECT_EQ(capture->starts, 2);
    EXPECT_EQ(capture->stops, 2);
    ASSERT_EQ(inserter->insertions.size(), 2U);
    EXPECT_EQ(inserter->insertions[1].target, targetOfSlot(browser, u"Browser"_s));
}

TEST_F(AppControllerDictationTest, AStopThatIsFasterThanTheNewsOfACancelledRunIsOneAllTheSame)
{
    inserter->whenAsked = [this](const std::stop_token &) {
        controller->cancelProcessing();
        main.runAll();
        controller->toggleRecordingWithDefaultTarget();
        main.runAll();
        background.runOne();
        main.runAll();
    };
    toggle();
    controller->toggleRecordingWithDefaultTarget();
    main.runAll();
    // Runs the processing to its end, which the state does not know yet.
    background.runOne();
    inserter->whenAsked = nullptr;
    ASSERT_EQ(state().state.get(), DictationState::recording());
    controller->toggleRecordingWithDefaultTarget();
    settle();
    EXPECT_EQ(capture->starts, 2);
    EXPECT_EQ(inserter->insertions.size(), 2U);
    EXPECT_EQ(state().state.get(), DictationState::idle());
}

TEST_F(AppControllerDictationTest, ARecordingThatNobodyWaitsForIsEndedBeforeTheNextStart)
{
    capture->isOpen = true;
    capture->whenStarted = [this] { EXPECT_EQ(capture->stops, 1); };
    toggle();
    EXPECT_EQ(state().state.get(), DictationState::recording());
    EXPECT_EQ(capture->starts, 1);
}

TEST_F(AppControllerDictationTest, CancellingDoesNotEndARecording)
{
    toggle();
    controller->cancelProcessing();
    settle();
    EXPECT_EQ(state().state.get(), DictationState::recording());
    EXPECT_EQ(capture->stops, 0);
}

TEST_F(AppControllerDictationTest, WordsAddUpOverTheSessionAndAreNotKept)
{
    hear("one two three four five");
    toggle();
    toggle();
    hear("1 2 3 4 5 6 7");
    toggle();
    toggle();
    EXPECT_EQ(state().sessionWordCount.get(), 12);
    EXPECT_EQ(state().lastTranscript.get(), u"1 2 3 4 5 6 7"_s);
    now = date("2024-03-15T12:00:01+01:00");
    launch();
    EXPECT_EQ(state().sessionWordCount.get(), 0);
    EXPECT_EQ(state().usageSnapshot.get().today.words, 12);
}

TEST_F(AppControllerDictationTest, AFinishedDictationIsLogged)
{
    assign(2, browser.bundleIdentifier, u"Web"_s);
    hear("a b c d e f g h i j k l");
    capture->recording.durationSeconds = 90;
    toggleSlot(2);
    toggleSlot(2);

    const auto events = usageEventsFromJson(*fake.userDefaults.stored(u"kestrova.usage.v1"_s));
    ASSERT_EQ(events.size(), 1);
    EXPECT_FALSE(events[0].id.isNull());
    EXPECT_EQ(events[0], (UsageEvent{.id = events[0].id,
                                     .timestamp = now,
                                     .slotIndex = 2,
                                     .targetBundleIdentifier = browser.bundleIdentifier,
                                     .targetAppName = u"Web"_s,
                                     .wordCount = 12,
                                     .durationMinutes = 1.5}));
    EXPECT_EQ(state().sessionWordCount.get(), 12);
    EXPECT_EQ(lastError(), u"none"_s);
}

} // namespace
} // namespace kestrova
