#include "ViewModels/DictationEventHandler.h"

#include <QUuid>

#include <algorithm>
#include <limits>

namespace kestrova {

namespace {

constexpr double secondsPerMinute = 60;

UsageEvent usageEvent(const TranscriptInsertionPayload &payload, Date now)
{
    const TargetApplication target = payload.target.value_or(TargetApplication());
    return {.id = QUuid::createUuid(),
            .timestamp = now,
            .slotIndex = payload.slotIndex,
            .targetBundleIdentifier = target.bundleIdentifier,
            .targetAppName = target.localizedName,
            .wordCount = payload.wordCount,
            .durationMinutes = payload.audioDurationSeconds / secondsPerMinute};
}

qint64 sumOrDie(qint64 total, qint64 words)
{
    if (words > std::numeric_limits<qint64>::max() - total)
        qFatal("The word count of this session is too large.");
    return total + words;
}

/// Before a new transcript takes the last one's place.
void keepUnconfirmed(AppState &state)
{
    const Delivery last = state.lastDelivery.get();
    if (last.outcome == DeliveryOutcome::requested)
        return;
    QList<UnconfirmedTranscript> transcripts = state.unconfirmedTranscripts.get();
    transcripts.prepend({last.number, state.lastTranscript.get()});
    state.unconfirmedTranscripts.set(
        transcripts.first(std::min(transcripts.size(), mostUnconfirmedTranscripts)));
}

/// Applies one event; a visitor of DictationCoordinatorEvent.
struct DictationEventHandler
{
    AppState &state;
    UsageAnalyticsManaging &analytics;
    const std::function<Date()> &now;
    const ResumeDictation &resume;

    void operator()(const DictationEvent::StateChanged &event)
    {
        // Resumed first: while the microphone is open, the state is at no time idle.
        const DictationState shown = resume().value_or(event.state);
        state.state.set(shown);
        if (event.state != DictationState::idle())
            return;
        state.modelDownload.set(std::nullopt);
        if (shown == DictationState::idle())
            state.clearErrorIfNeeded();
    }

    void operator()(const DictationEvent::Error &event)
    {
        state.modelDownload.set(std::nullopt);
        state.lastError.announce(event.message);
        state.state.announce(DictationState::error(event.message));
        if (const auto resumed = resume())
            state.state.set(*resumed);
    }

    void operator()(const DictationEvent::TranscriptInserted &event)
    {
        const TranscriptInsertionPayload &payload = event.payload;
        keepUnconfirmed(state);
        state.lastDelivery.set(event.delivery);
        state.lastTranscript.announce(payload.text);
        state.sessionWordCount.set(sumOrDie(state.sessionWordCount.get(), payload.wordCount));
        analytics.record(usageEvent(payload, now()));
        recomputeUsage(state, analytics, now());
    }
};

} // namespace

void recomputeUsage(AppState &state, UsageAnalyticsManaging &analytics, Date now)
{
    state.usageSnapshot.set(analytics.dashboardSnapshot(now));
    state.usageTrendBuckets.set(analytics.trendBuckets(state.usageTrendPeriod.get(), now));
}

void confirmDelivery(AppState &state, quint64 number)
{
    if (state.lastDelivery.get().number == number)
        state.lastDelivery.set({DeliveryOutcome::requested, number});
    else
        forgetUnconfirmed(state, number);
}

void forgetUnconfirmed(AppState &state, quint64 number)
{
    QList<UnconfirmedTranscript> transcripts = state.unconfirmedTranscripts.get();
    transcripts.removeIf([number](const auto &transcript) { return transcript.number == number; });
    state.unconfirmedTranscripts.set(transcripts);
}

DictationEventSink makeDictationEventSink(Executor &main, std::weak_ptr<AppState> state,
                                          std::shared_ptr<UsageAnalyticsManaging> analytics,
                                          std::function<Date()> now, ResumeDictation resume)
{
    return [&main, state = std::move(state), analytics = std::move(analytics), now = std::move(now),
            resume = std::move(resume)](const DictationCoordinatorEvent &event) {
        main.post([state, analytics, now, resume, event] {
            if (const auto living = state.lock())
                std::visit(DictationEventHandler{*living, *analytics, now, resume}, event);
        });
    };
}

} // namespace kestrova
