#include "ViewModels/DictationEventHandler.h"

#include "Concurrency/InlineExecutor.h"
#include "Models/Usage/UsageEventsJson.h"
#include "Platform/Fake/FakeUserDefaults.h"
#include "Services/Usage/UsageAnalyticsService.h"
#include "ViewModels/StateTrail.h"
#include "support/DateText.h"
#include "support/ManualExecutors.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestrova {
namespace {

using DictationEvent::Error;
using DictationEvent::StateChanged;
using DictationEvent::TranscriptInserted;

class DictationEventHandlerTest : public testing::Test
{
protected:
    void send(const DictationCoordinatorEvent &event)
    {
        sink(event);
        main.runAll();
    }
    static TranscriptInserted inserted(const QString &text, qint64 words)
    {
        return {{.text = text, .wordCount = words, .target = {}, .slotIndex = {}}};
    }
    QList<UsageEvent> logged() const { return usageEventsFromJson(*defaults.stored(key)); }

    const QString key = u"usage"_s;
    const Calendar calendar{QTimeZone("Europe/Berlin"), Qt::Monday, QLocale::c()};
    /// A second later at each reading.
    const std::function<Date()> clock = [this] {
        now.secondsSinceReferenceDate += 1;
        return now;
    };
    const Date beginning = date("2024-03-15T12:00:00+01:00");
    Date now = beginning;
    FakeUserDefaults defaults;
    InlineExecutor storage;
    ManualExecutor main;
    std::shared_ptr<AppState> state = std::make_shared<AppState>(AppSettings::defaults());
    const std::shared_ptr<UsageAnalyticsService> analytics =
        std::make_shared<UsageAnalyticsService>(defaults, storage, key, 12, calendar,
                                                [this] { return now; });
    /// What the coordinator takes up again after the next event.
    std::optional<DictationState> overtaken;
    const DictationEventSink sink = makeDictationEventSink(
        main, state, analytics, clock, [this] { return std::exchange(overtaken, std::nullopt); });
    std::optional<StateTrail> trail{*state};
};

TEST_F(DictationEventHandlerTest, EachEventIsOneTaskInTheOrderOfTheEvents)
{
    sink(StateChanged{DictationState::recording()});
    sink(StateChanged{DictationState::processing()});
    sink(Error{u"broken"_s});
    EXPECT_EQ(trail->take(), QStringList());
    main.runOne();
    EXPECT_EQ(trail->take(), QStringList{u"state recording"_s});
    main.runOne();
    EXPECT_EQ(trail->take(), QStringList{u"state processing"_s});
    main.runOne();
    EXPECT_EQ(trail->take(), QStringList({u"lastError"_s, u"state error"_s}));
    EXPECT_TRUE(main.isIdle());
}

TEST_F(DictationEventHandlerTest, AnErrorShowsItsMessageUntilTheNextIdle)
{
    send(Error{u"broken"_s});
    EXPECT_EQ(state->state.get(), DictationState::error(u"broken"_s));
    send(Error{u"again"_s});
    EXPECT_EQ(state->state.get(), DictationState::error(u"again"_s));
    EXPECT_EQ(state->lastError.get(), u"again"_s);
    send(StateChanged{DictationState::idle()});
    EXPECT_EQ(state->state.get(), DictationState::idle());
    EXPECT_FALSE(state->lastError.get());
}

TEST_F(DictationEventHandlerTest, WhatIsTakenUpAgainIsShownInPlaceOfIdle)
{
    state->lastError.set(u"earlier"_s);
    send(StateChanged{DictationState::recording()});
    state->modelDownload.set(DownloadProgress{1, 2});
    trail->take();

    overtaken = DictationState::recording();
    send(StateChanged{DictationState::idle()});
    EXPECT_EQ(trail->take(), QStringList{u"modelDownload"_s}) << "the state was at no time idle";
    EXPECT_EQ(state->state.get(), DictationState::recording());
    EXPECT_EQ(state->lastError.get(), u"earlier"_s);
}

TEST_F(DictationEventHandlerTest, WhatIsTakenUpAgainIsShownAfterAnError)
{
    overtaken = DictationState::recording();
    send(Error{u"broken"_s});
    EXPECT_EQ(state->state.get(), DictationState::recording());
    EXPECT_EQ(state->lastError.get(), u"broken"_s);
}

TEST_F(DictationEventHandlerTest, RecordingAndProcessingKeepTheLastError)
{
    send(Error{u"broken"_s});
    for (const DictationState &running :
         {DictationState::recording(), DictationState::processing()}) {
        send(StateChanged{running});
        EXPECT_EQ(state->state.get(), running);
        EXPECT_EQ(state->lastError.get(), u"broken"_s);
    }
}

TEST_F(DictationEventHandlerTest, TheProgressOfADownloadEndsWithTheDictation)
{
    for (const DictationCoordinatorEvent &end :
         {DictationCoordinatorEvent(StateChanged{DictationState::idle()}),
          DictationCoordinatorEvent(Error{u"broken"_s})}) {
        state->modelDownload.set(DownloadProgress{1, 2});
        send(StateChanged{DictationState::processing()});
        EXPECT_TRUE(state->modelDownload.get());
        send(end);
        EXPECT_FALSE(state->modelDownload.get());
    }
}

TEST_F(DictationEventHandlerTest, ATranscriptIsShownCountedAndLogged)
{
    send(TranscriptInserted{{.text = u"the text"_s,
                             .wordCount = 12,
                             .audioDurationSeconds = 90,
                             .target = TargetApplication{7, u"org.example.Editor"_s, u"Editor"_s},
                             .slotIndex = 2}});
    EXPECT_EQ(trail->take(), QStringList({u"lastTranscript"_s, u"sessionWordCount"_s,
                                          u"usageSnapshot"_s, u"usageTrendBuckets"_s}));
    EXPECT_EQ(state->lastTranscript.get(), u"the text"_s);
    EXPECT_EQ(state->sessionWordCount.get(), 12);
    EXPECT_EQ(state->usageSnapshot.get().today, (UsageSummary{1, 12, 1.5}))
        << "the clock has gone on since the log was written";
    EXPECT_EQ(state->usageTrendBuckets.get(),
              analytics->trendBuckets(UsageTrendPeriod::daily, now));

    ASSERT_EQ(logged().size(), 1);
    const UsageEvent event = logged()[0];
    const Date firstReading{beginning.secondsSinceReferenceDate + 1};
    EXPECT_EQ(event, (UsageEvent{event.id, firstReading, 2, u"org.example.Editor"_s, u"Editor"_s,
                                 12, 1.5}));
}

TEST_F(DictationEventHandlerTest, WithoutATargetAndASlotTheLogNamesNone)
{
    send(inserted(u"hi"_s, 1));
    ASSERT_EQ(logged().size(), 1);
    EXPECT_FALSE(logged()[0].slotIndex);
    EXPECT_FALSE(logged()[0].targetBundleIdentifier);
    EXPECT_FALSE(logged()[0].targetAppName);
}

TEST_F(DictationEventHandlerTest, WordsAddUpAndTheLastTranscriptStays)
{
    send(inserted(u"first"_s, 5));
    send(inserted(u"second"_s, 7));
    EXPECT_EQ(state->sessionWordCount.get(), 12);
    EXPECT_EQ(state->lastTranscript.get(), u"second"_s);
    ASSERT_EQ(logged().size(), 2);
    EXPECT_NE(logged()[0].id, logged()[1].id);
}

TEST_F(DictationEventHandlerTest, WhatIsKnownOfTheDeliveryIsThereWithTheTranscript)
{
    const Delivery left{DeliveryOutcome::leftOnClipboard, 1};
    std::optional<Delivery> seen;
    QObject::connect(state.get(), &AppState::lastTranscriptChanged, state.get(),
                     [&] { seen = state->lastDelivery.get(); });
    send(TranscriptInserted{inserted(u"first"_s, 1).payload, left});
    EXPECT_EQ(seen, left);
    EXPECT_EQ(state->unconfirmedTranscripts.get(), QList<UnconfirmedTranscript>());
}

TEST_F(DictationEventHandlerTest, UnconfirmedTranscriptsStayAtHandUntilNewerOnesPushThemOut)
{
    const auto sendUnconfirmed = [this](quint64 number) {
        send(TranscriptInserted{inserted(QString::number(number), 1).payload,
                                {DeliveryOutcome::unknown, number}});
    };
    sendUnconfirmed(1);
    send(TranscriptInserted{inserted(u"arrived"_s, 1).payload, {DeliveryOutcome::requested, 2}});
    EXPECT_EQ(state->unconfirmedTranscripts.get(), QList<UnconfirmedTranscript>({{1, u"1"_s}}));
    for (quint64 number = 3; number <= 6; ++number)
        sendUnconfirmed(number);
    EXPECT_EQ(state->unconfirmedTranscripts.get(),
              QList<UnconfirmedTranscript>({{5, u"5"_s}, {4, u"4"_s}, {3, u"3"_s}}));
}

TEST_F(DictationEventHandlerTest, ALateConfirmationConcernsItsOwnTranscript)
{
    for (quint64 number = 1; number <= 3; ++number) {
        send(TranscriptInserted{inserted(QString::number(number), 1).payload,
                                {DeliveryOutcome::leftOnClipboard, number}});
    }
    confirmDelivery(*state, 1);
    EXPECT_EQ(state->unconfirmedTranscripts.get(), QList<UnconfirmedTranscript>({{2, u"2"_s}}));
    EXPECT_EQ(state->lastDelivery.get().outcome, DeliveryOutcome::leftOnClipboard);
    confirmDelivery(*state, 3);
    EXPECT_EQ(state->lastDelivery.get(), (Delivery{DeliveryOutcome::requested, 3}));
    confirmDelivery(*state, 1);
    EXPECT_EQ(state->unconfirmedTranscripts.get(), QList<UnconfirmedTranscript>({{2, u"2"_s}}));
}

TEST_F(DictationEventHandlerTest, TheBucketsAreThoseOfThePeriodShown)
{
    state->usageTrendPeriod.set(UsageTrendPeriod::monthly);
    send(inserted(u"hi"_s, 3));
    EXPECT_EQ(state->usageTrendBuckets.get(),
              analytics->trendBuckets(UsageTrendPeriod::monthly, now));
    EXPECT_EQ(state->usageTrendBuckets.get().last().words, 3);
}

TEST_F(DictationEventHandlerTest, EventsForAStateThatIsGoneDoNothing)
{
    sink(inserted(u"late"_s, 1));
    sink(StateChanged{DictationState::idle()});
    sink(Error{u"late"_s});
    trail.reset();
    state.reset();
    main.runAll();
    EXPECT_FALSE(defaults.stored(key));
}

TEST_F(DictationEventHandlerTest, TheWordCountNeverWrapsAround)
{
    send(inserted(u"many"_s, std::numeric_limits<qint64>::max() - 1));
    send(inserted(u"one"_s, 1));
    EXPECT_EQ(state->sessionWordCount.get(), std::numeric_limits<qint64>::max());
    EXPECT_DEATH(send(inserted(u"one too many"_s, 1)), "word count");
}

} // namespace
} // namespace kestrova
