#include "Models/KestrovaError.h"
#include "Services/CoordinatorServices.h"
#include "Services/Dictation/DictationCoordinator.h"
#include "support/QtPrinting.h"
#include "support/Schedule.h"

#include <QSet>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

/// Refuses what the recorder refuses, and notices calls that run into each other.
struct StrictCapture final : AudioCapturing
{
    explicit StrictCapture(Schedule &schedule) : schedule(schedule) {}

    bool isRecording() const override { return isOpen; }
    void startRecording() override
    {
        begin();
        if (isOpen)
            throw KestrovaError::invalidState(u"Recording is already active."_s);
        isOpen = true;
        ++starts;
        end();
    }
    AudioRecording stopRecording() override
    {
        begin();
        if (!isOpen)
            throw KestrovaError::invalidState(u"No active recording to stop."_s);
        isOpen = false;
        ++stops;
        end();
        return {QUrl::fromLocalFile(u"/%1.wav"_s.arg(starts)), 1};
    }

    void begin()
    {
        hasOverlap |= isBusy;
        isBusy = true;
        schedule.pause();
    }
    void end() { isBusy = false; }

    Schedule &schedule;
    bool isOpen = false;
    bool isBusy = false;
    bool hasOverlap = false;
    int starts = 0;
    int stops = 0;
};

/// One coordinator, and a user whose deeds come when the schedule says so.
struct World
{
    explicit World(Schedule &schedule) : schedule(schedule)
    {
        models->whenAsked = [&schedule] { schedule.pause(); };
        transcriber->whenAsked = [&schedule] { schedule.pause(); };
        inserter->whenAsked = [&schedule](const std::stop_token &) { schedule.pause(); };
    }

    void take(const DictationCoordinatorEvent &event)
    {
        if (const auto *changed = std::get_if<DictationEvent::StateChanged>(&event))
            events += rawValue(changed->state.kind).left(1).toUpper();
        else if (std::holds_alternative<DictationEvent::TranscriptInserted>(event))
            events += u'T';
        else
            events += u" error: "_s + std::get<DictationEvent::Error>(event).message;
    }

    void start(int slotIndex)
    {
        coordinator->setInsertionContext(TargetApplication{slotIndex, {}, {}}, slotIndex);
        coordinator->toggle();
        schedule.pause();
    }
    void stop()
    {
        coordinator->resume();
        coordinator->toggle();
        schedule.pause();
    }
    void cancel()
    {
        coordinator->resume();
        coordinator->cancelProcessing();
        schedule.pause();
    }

    Schedule &schedule;
    /// Initials of the states, T for a transcript.
    QString events;
    const std::shared_ptr<StrictCapture> capture = std::make_shared<StrictCapture>(schedule);
    const std::shared_ptr<SubstituteModelManager> models =
        std::make_shared<SubstituteModelManager>();
    const std::shared_ptr<SubstituteTranscriber> transcriber =
        std::make_shared<SubstituteTranscriber>();
    const std::shared_ptr<SubstituteInserter> inserter = std::make_shared<SubstituteInserter>();
    const std::shared_ptr<DictationCoordinator> coordinator =
        std::make_shared<DictationCoordinator>(
            schedule, capture, transcriber, inserter, models,
            [this](const DictationCoordinatorEvent &event) { take(event); });
};

TEST(DictationSchedules, ACancelledRunNeverReachesTheNextRecording)
{
    QSet<QString> seen;
    forEachSchedule([&](Schedule &schedule) {
        World world(schedule);
        schedule.post([&world] {
            world.start(1);
            world.stop();
            world.cancel();
            world.start(2);
        });
        schedule.run();
        seen.insert(world.events);
        ASSERT_FALSE(world.capture->hasOverlap) << world.events.toStdString();
        ASSERT_TRUE(world.capture->isOpen) << world.events.toStdString();
        ASSERT_EQ(world.capture->stops, 1) << world.events.toStdString();

        world.inserter->insertions.clear();
        schedule.post([&world] { world.stop(); });
        schedule.run();
        ASSERT_EQ(world.inserter->insertions.size(), 1U) << world.events.toStdString();
        ASSERT_EQ(world.inserter->insertions[0].target, (TargetApplication{2, {}, {}}));
        ASSERT_FALSE(world.capture->isOpen);
    });
    // Cancelled too late; cancelled in time, with the run's end on either side of the next start;
    // cancelled while the text was being inserted.
    EXPECT_EQ(seen, QSet<QString>({u"RPTIR"_s, u"RPIIR"_s, u"RPIRI"_s, u"RPITIR"_s, u"RPIRTI"_s}));
}

TEST(DictationSchedules, TwoDictationsWithACancelBetweenThemNeverMeetAnError)
{
    const int count = forEachSchedule([&](Schedule &schedule) {
        World world(schedule);
        world.models->whenAsked = nullptr;
        world.inserter->whenAsked = nullptr;
        schedule.post([&world] {
            world.start(1);
            world.stop();
            world.cancel();
            world.start(2);
            world.stop();
        });
        schedule.run();
        ASSERT_FALSE(world.events.contains(u"error"_s)) << world.events.toStdString();
        ASSERT_FALSE(world.capture->hasOverlap) << world.events.toStdString();
        ASSERT_FALSE(world.capture->isOpen) << world.events.toStdString();
        ASSERT_EQ(world.capture->stops, 2) << world.events.toStdString();
        ASSERT_EQ(world.events.count(u'P'), 2) << world.events.toStdString();
        ASSERT_FALSE(world.coordinator->resume()) << "everything has ended";
    });
    EXPECT_GT(count, 100);
}

} // namespace
} // namespace kestrova
