#pragma once

#include "Concurrency/Executor.h"
#include "Services/Dictation/DictationCoordinatorEvent.h"
#include "Services/Protocols.h"
#include "ViewModels/AppState.h"

#include <functional>
#include <memory>
#include <optional>

namespace kestrova {

/// Recomputes everything that the dashboard shows.
void recomputeUsage(AppState &state, UsageAnalyticsManaging &analytics, Date now);

/// How many unconfirmed transcripts before the last one are kept at hand.
constexpr qsizetype mostUnconfirmedTranscripts = 3;

/// The text of this delivery was asked for after all.
void confirmDelivery(AppState &state, quint64 number);
/// Keeps it no longer among the unconfirmed transcripts.
void forgetUnconfirmed(AppState &state, quint64 number);

/// DictationCoordinator::resume().
using ResumeDictation = std::function<std::optional<DictationState>()>;

/// Carries the coordinator's events over to the state and logs each finished dictation. Each event
/// is one task on the main executor, in the order of the events; tasks that find the state gone do
/// nothing. A dictation that can be resumed after an event is, and is what the state then shows.
/// The executor outlives the sink.
DictationEventSink makeDictationEventSink(Executor &main, std::weak_ptr<AppState> state,
                                          std::shared_ptr<UsageAnalyticsManaging> analytics,
                                          std::function<Date()> now, ResumeDictation resume);

} // namespace kestrova
