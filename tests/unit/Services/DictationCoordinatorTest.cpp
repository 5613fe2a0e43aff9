#include "Services/Dictation/DictationCoordinator.h"
#include "Concurrency/BackgroundExecutor.h"
#include "Models/KestrovaError.h"
#include "Services/CoordinatorServices.h"
#include "support/ManualExecutors.h"
#include "support/QtPrinting.h"

#include "Concurrency/Cancelled.h"

#include <QFile>
#include <QHash>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

namespace kestrova {
namespace {

QString nameOf(const DictationCoordinatorEvent &event)
{
    if (const auto *changed = std::get_if<DictationEvent::StateChanged>(&event))
        return rawValue(changed->state.kind);
    if (const auto *inserted = std::get_if<DictationEvent::TranscriptInserted>(&event))
        return u"inserted: "_s + inserted->payload.text;
    return u"error: "_s + std::get<DictationEvent::Error>(event).message;
}

class DictationCoordinatorTest : public testing::Test
{
protected:
    /// Takes what was reported since the last call.
    QStringList events() { return std::exchange(m_events, {}); }

    TranscriptInsertionPayload lastPayload() const
    {
        return m_inserted.value_or(DictationEvent::TranscriptInserted{}).payload;
    }
    Delivery lastDelivery() const
    {
        return m_inserted.value_or(DictationEvent::TranscriptInserted{}).delivery;
    }

    void toggleAndRun()
    {
        coordinator->toggle();
        background.runAll();
    }

    std::shared_ptr<SubstituteCapture> capture = std::make_shared<SubstituteCapture>();
    std::shared_ptr<SubstituteTranscriber> transcriber = std::make_shared<SubstituteTranscriber>();
    std::shared_ptr<SubstituteInserter> inserter = std::make_shared<SubstituteInserter>();
    std::shared_ptr<SubstituteModelManager> models = std::make_shared<SubstituteModelManager>();
    ManualExecutor background;
    std::shared_ptr<DictationCoordinator> coordinator = std::make_shared<DictationCoordinator>(
        background, capture, transcriber, inserter, models,
        [this](const DictationCoordinatorEvent &event) {
            m_events.append(nameOf(event));
            if (const auto *inserted = std::get_if<DictationEvent::TranscriptInserted>(&event))
                m_inserted = *inserted;
        });

private:
    QStringList m_events;
    std::optional<DictationEvent::TranscriptInserted> m_inserted;
};

TEST_F(DictationCoordinatorTest, TwoTogglesRunOneDictation)
{
    toggleAndRun();
    EXPECT_EQ(events(), QStringList{u"recording"_s});
    EXPECT_TRUE(inserter->insertions.empty());

    coordinator->toggle();
    EXPECT_EQ(events(), QStringList{u"processing"_s});
    EXPECT_EQ(capture->stops, 0) << "the recorder is stopped by the processing, not by the toggle";

    background.runAll();
    EXPECT_EQ(events(), QStringList({u"inserted: Hello world"_s, u"idle"_s}));
    EXPECT_EQ(transcriber->audio, capture->recording.fileURL);
    EXPECT_EQ(transcriber->model, QUrl::fromLocalFile(u"/m.bin"_s));
    EXPECT_EQ(models->forced, false);
    EXPECT_EQ(lastPayload().audioDurationSeconds, 2.5);
    EXPECT_EQ(lastPayload().wordCount, 2);
}

TEST_F(DictationCoordinatorTest, TheInsertionContextTravelsWithItsDictation)
{
    const TargetApplication target{12, u"org.example.Editor"_s, u"Editor"_s};
    coordinator->setInsertionContext(target, 3);
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(inserter->insertions.at(0).target, target);
    EXPECT_EQ(lastPayload().target, target);
    EXPECT_EQ(lastPayload().slotIndex, 3);

    coordinator->setInsertionContext(std::nullopt, std::nullopt);
    toggleAndRun();
    toggleAndRun();
    EXPECT_FALSE(inserter->insertions.at(1).target);
    EXPECT_FALSE(lastPayload().target);
    EXPECT_FALSE(lastPayload().slotIndex);
}

TEST_F(DictationCoordinatorTest, WhatTheInserterKnowsGoesBesideTheTranscript)
{
    inserter->delivery = {DeliveryOutcome::leftOnClipboard, 7};
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(events().mid(2), QStringList({u"inserted: Hello world"_s, u"idle"_s}));
    EXPECT_EQ(lastDelivery(), inserter->delivery);
}

TEST_F(DictationCoordinatorTest, TheContextIsClearedWhenADictationEnds)
{
    coordinator->setInsertionContext(TargetApplication{12, {}, {}}, 3);
    toggleAndRun();
    toggleAndRun();
    toggleAndRun();
    toggleAndRun();
    EXPECT_FALSE(inserter->insertions.at(1).target);
    EXPECT_FALSE(lastPayload().slotIndex);
}

TEST_F(DictationCoordinatorTest, WordsOfTheTranscriptAreCounted)
{
    transcriber->text = u"one two\tthree\nfour"_s;
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(lastPayload().wordCount, 4);

    transcriber->text = u"  "_s;
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(lastPayload().wordCount, 0);
    EXPECT_EQ(lastPayload().text, u"  "_s) << "the text is reported as the transcriber gave it";
}

TEST_F(DictationCoordinatorTest, AFailedStartGivesOneErrorAndTheNextToggleTriesAgain)
{
    capture->whenStarted = [] {
        throw KestrovaError::processFailed(u"Could not start audio recording."_s);
    };
    toggleAndRun();
    EXPECT_EQ(events(), QStringList{u"error: Could not start audio recording."_s});

    capture->whenStarted = nullptr;
    toggleAndRun();
    EXPECT_EQ(events(), QStringList{u"recording"_s});
    EXPECT_EQ(capture->starts, 2);
}

TEST_F(DictationCoordinatorTest, AFailedStartKeepsTheContext)
{
    capture->whenStarted = [] { throw PlatformError(u"no"_s); };
    coordinator->setInsertionContext(std::nullopt, 4);
    toggleAndRun();
    capture->whenStarted = nullptr;
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(lastPayload().slotIndex, 4);
}

TEST_F(DictationCoordinatorTest, AFailureOfAnyStepEndsWithItsMessageAndNoIdle)
{
    const auto failing = [this](std::function<void()> &hook, const QString &message) {
        hook = [message] { throw PlatformError(message); };
        toggleAndRun();
        events();
        toggleAndRun();
        hook = nullptr;
        return events();
    };
    const auto expected = [](const QString &message) {
        return QStringList({u"processing"_s, u"error: "_s + message});
    };
    EXPECT_EQ(failing(capture->whenStopped, u"stop"_s), expected(u"stop"_s));
    EXPECT_EQ(failing(models->whenAsked, u"model"_s), expected(u"model"_s));
    EXPECT_EQ(failing(transcriber->whenAsked, u"speech"_s), expected(u"speech"_s));
    EXPECT_TRUE(inserter->insertions.empty());

    inserter->whenAsked = [](const std::stop_token &) { throw PlatformError(u"paste"_s); };
    toggleAndRun();
    events();
    toggleAndRun();
    EXPECT_EQ(events(), expected(u"paste"_s));

    inserter->whenAsked = nullptr;
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(events(), QStringList({u"recording"_s, u"processing"_s, u"inserted: Hello world"_s,
                                     u"idle"_s}));
}

TEST_F(DictationCoordinatorTest, AFailedRunClearsTheContext)
{
    coordinator->setInsertionContext(TargetApplication{12, {}, {}}, 3);
    transcriber->whenAsked = [] { throw KestrovaError::emptyTranscription(); };
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(events().last(), u"error: No speech detected."_s);
    transcriber->whenAsked = nullptr;
    toggleAndRun();
    toggleAndRun();
    EXPECT_FALSE(lastPayload().slotIndex);
}

TEST_F(DictationCoordinatorTest, CancellingATranscriptionIsIdleAtOnceAndAgainWhenTheRunEnds)
{
    QStringList duringTranscription;
    transcriber->whenAsked = [&] {
        coordinator->cancelProcessing();
        duringTranscription = events();
    };
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(duringTranscription, QStringList({u"recording"_s, u"processing"_s, u"idle"_s}));
    EXPECT_EQ(events(), QStringList{u"idle"_s});
    EXPECT_TRUE(inserter->insertions.empty());
}

TEST_F(DictationCoordinatorTest, CancellationIsNoticedAfterEachStep)
{
    capture->whenStopped = [&] { coordinator->cancelProcessing(); };
    toggleAndRun();
    toggleAndRun();
    EXPECT_FALSE(models->forced) << "no model is prepared for a cancelled dictation";
    EXPECT_EQ(events(), QStringList({u"recording"_s, u"processing"_s, u"idle"_s, u"idle"_s}));

    capture->whenStopped = nullptr;
    models->whenAsked = [&] { coordinator->cancelProcessing(); };
    toggleAndRun();
    toggleAndRun();
    EXPECT_TRUE(transcriber->audio.isEmpty()) << "a cancelled dictation is not transcribed";
    EXPECT_EQ(events(), QStringList({u"recording"_s, u"processing"_s, u"idle"_s, u"idle"_s}));
}

TEST_F(DictationCoordinatorTest, ACancelReachesTheDownloadOfTheModel)
{
    bool isStopRequested = false;
    models->whenAsked = [&] {
        EXPECT_FALSE(models->stopToken.stop_requested());
        coordinator->cancelProcessing();
        isStopRequested = models->stopToken.stop_requested();
    };
    toggleAndRun();
    toggleAndRun();
    EXPECT_TRUE(isStopRequested);
}

TEST_F(DictationCoordinatorTest, TheTextGoesToTheTargetOfTheMomentOfItsInsertion)
{
    const TargetApplication other{13, u"org.example.Other"_s, u"Other"_s};
    coordinator->setInsertionContext(TargetApplication{12, {}, {}}, 3);
    transcriber->whenAsked = [&] { coordinator->setInsertionContext(other, 4); };
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(inserter->insertions.at(0).target, other);
    EXPECT_EQ(lastPayload().target, other);
    EXPECT_EQ(lastPayload().slotIndex, 4);
}

TEST_F(DictationCoordinatorTest, ACancelClearsTheContext)
{
    coordinator->setInsertionContext(TargetApplication{12, {}, {}}, 3);
    toggleAndRun();
    coordinator->toggle();
    coordinator->cancelProcessing();
    coordinator->toggle(); // waits for the recorder of the cancelled run
    background.runAll();
    toggleAndRun();
    ASSERT_EQ(inserter->insertions.size(), 1U);
    EXPECT_FALSE(inserter->insertions.at(0).target);
    EXPECT_FALSE(lastPayload().slotIndex);
}

TEST_F(DictationCoordinatorTest, TheEndOfACancelledRunClearsTheContextOnceMore)
{
    toggleAndRun();
    coordinator->toggle();
    coordinator->cancelProcessing();
    coordinator->setInsertionContext(TargetApplication{12, {}, {}}, 3);
    background.runAll();
    toggleAndRun();
    toggleAndRun();
    ASSERT_EQ(inserter->insertions.size(), 1U);
    EXPECT_FALSE(inserter->insertions.at(0).target);
    EXPECT_FALSE(lastPayload().slotIndex);
}

TEST_F(DictationCoordinatorTest, AServiceThatHonoursCancellationEndsTheRunSilently)
{
    inserter->whenAsked = [&](const std::stop_token &stop) {
        coordinator->cancelProcessing();
        throwIfStopRequested(stop);
    };
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(events(), QStringList({u"recording"_s, u"processing"_s, u"idle"_s, u"idle"_s}));
}

TEST_F(DictationCoordinatorTest, AFailureAfterACancellationIsStillReported)
{
    transcriber->whenAsked = [&] {
        coordinator->cancelProcessing();
        throw PlatformError(u"broken"_s);
    };
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(events(),
              QStringList({u"recording"_s, u"processing"_s, u"idle"_s, u"error: broken"_s}));
}

TEST_F(DictationCoordinatorTest, CancellingDuringTheInsertionDoesNotUndoIt)
{
    inserter->whenAsked = [&](const std::stop_token &) { coordinator->cancelProcessing(); };
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(events(), QStringList({u"recording"_s, u"processing"_s, u"idle"_s,
                                     u"inserted: Hello world"_s, u"idle"_s}));
}

TEST_F(DictationCoordinatorTest, CancellingWhileIdleOrRecordingDoesNothing)
{
    coordinator->cancelProcessing();
    EXPECT_EQ(events(), QStringList());
    toggleAndRun();
    events();
    coordinator->cancelProcessing();
    EXPECT_EQ(events(), QStringList());
    toggleAndRun();
    EXPECT_EQ(inserter->insertions.size(), 1U);
}

TEST_F(DictationCoordinatorTest, TogglesWhileProcessingDoNothing)
{
    transcriber->whenAsked = [&] { coordinator->toggle(); };
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(events(), QStringList({u"recording"_s, u"processing"_s, u"inserted: Hello world"_s,
                                     u"idle"_s}));
    EXPECT_EQ(capture->starts, 1);
}

TEST_F(DictationCoordinatorTest, ACancelledRunThatEndsDuringTheNextRecordingMakesItIdle)
{
    transcriber->whenAsked = [&] {
        coordinator->cancelProcessing();
        coordinator->toggle();
        background.runOne();
    };
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(events(),
              QStringList({u"recording"_s, u"processing"_s, u"idle"_s, u"recording"_s, u"idle"_s}));
    EXPECT_EQ(capture->starts, 2);

    transcriber->whenAsked = nullptr;
    toggleAndRun();
    EXPECT_EQ(capture->starts, 3) << "the next toggle starts again";
}

TEST_F(DictationCoordinatorTest, OperationsDuringAStartTakeEffectInOrderAfterIt)
{
    coordinator->toggle();
    coordinator->toggle();
    coordinator->cancelProcessing();
    coordinator->setInsertionContext(std::nullopt, 5);
    coordinator->toggle();
    EXPECT_EQ(events(), QStringList()) << "nothing is known before the first start has ended";

    background.runOne();
    EXPECT_EQ(events(), QStringList({u"recording"_s, u"processing"_s, u"idle"_s}));
    EXPECT_EQ(capture->starts, 1);
}

TEST_F(DictationCoordinatorTest, ATogglePressedDuringAFailingStartTriesAgain)
{
    capture->whenStarted = [this] {
        if (capture->starts == 1)
            throw PlatformError(u"first"_s);
    };
    coordinator->toggle();
    coordinator->toggle();
    background.runAll();
    EXPECT_EQ(events(), QStringList({u"error: first"_s, u"recording"_s}));
}

TEST_F(DictationCoordinatorTest, TheRecordingStaysOnDisk)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"recording.wav"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    capture->recording.fileURL = QUrl::fromLocalFile(file.fileName());
    toggleAndRun();
    toggleAndRun();
    EXPECT_EQ(events().last(), u"idle"_s);
    EXPECT_TRUE(file.exists());
}

TEST_F(DictationCoordinatorTest, RunningWorkKeepsTheCoordinatorAndDroppingItReleasesEverything)
{
    const std::weak_ptr<SubstituteCapture> released = capture;
    toggleAndRun();
    coordinator->toggle();
    coordinator.reset();
    capture.reset();
    EXPECT_FALSE(released.expired());
    background.runAll();
    EXPECT_EQ(events().last(), u"idle"_s) << "dropping the coordinator does not cancel its run";
    EXPECT_TRUE(released.expired());
}

// The same object used from several threads at once; what matters here is what the sanitizers see,
// and that events never come in an order that the state machine does not have.
TEST(DictationCoordinatorThreads, OperationsFromSeveralThreadsNeverBreakTheOrderOfEvents)
{
    constexpr int wantedDictations = 50;
    BackgroundExecutor background;
    QStringList events;
    std::atomic<int> dictations = 0;
    const auto coordinator = std::make_shared<DictationCoordinator>(
        background, std::make_shared<SubstituteCapture>(),
        std::make_shared<SubstituteTranscriber>(), std::make_shared<SubstituteInserter>(),
        std::make_shared<SubstituteModelManager>(), [&](const DictationCoordinatorEvent &event) {
            events.append(nameOf(event));
            dictations += std::holds_alternative<DictationEvent::TranscriptInserted>(event);
        });

    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&, i] {
            while (dictations < wantedDictations) {
                coordinator->setInsertionContext(TargetApplication{i + 1, {}, {}}, i + 1);
                coordinator->toggle();
                std::this_thread::yield();
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    ASSERT_TRUE(background.waitUntilIdle(std::chrono::seconds(60)));

    const QHash<QString, QString> follower = {{u"idle"_s, u"recording"_s},
                                              {u"recording"_s, u"processing"_s},
                                              {u"processing"_s, u"inserted: Hello world"_s},
                                              {u"inserted: Hello world"_s, u"idle"_s}};
    QString previous = u"idle"_s;
    for (const QString &event : events) {
        ASSERT_EQ(event, follower.value(previous));
        previous = event;
    }
}

TEST(DictationCoordinatorThreads, AnotherThreadCancelsWhileTheTranscriberWorks)
{
    BackgroundExecutor background;
    std::promise<void> transcribing;
    std::promise<void> release;
    const auto transcriber = std::make_shared<SubstituteTranscriber>();
    transcriber->whenAsked = [&] {
        transcribing.set_value();
        release.get_future().wait();
    };
    const auto inserter = std::make_shared<SubstituteInserter>();
    QStringList events;
    const auto coordinator = std::make_shared<DictationCoordinator>(
        background, std::make_shared<SubstituteCapture>(), transcriber, inserter,
        std::make_shared<SubstituteModelManager>(),
        [&events](const DictationCoordinatorEvent &event) { events.append(nameOf(event)); });

    coordinator->toggle();
    coordinator->toggle();
    transcribing.get_future().wait();
    coordinator->cancelProcessing();
    coordinator->toggle();
    release.set_value();
    ASSERT_TRUE(background.waitUntilIdle(std::chrono::seconds(60)));

    EXPECT_TRUE(inserter->insertions.empty());
    ASSERT_GE(events.size(), 5);
    EXPECT_EQ(events.mid(0, 3), QStringList({u"recording"_s, u"processing"_s, u"idle"_s}));
    EXPECT_EQ(events.count(u"idle"_s), 2);
}

} // namespace
} // namespace kestrova
