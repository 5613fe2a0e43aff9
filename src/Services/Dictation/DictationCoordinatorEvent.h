#pragma once

#include "Models/Dictation/Delivery.h"
#include "Models/Dictation/DictationState.h"
#include "Models/Dictation/TranscriptInsertionPayload.h"

#include <functional>
#include <variant>

namespace kestrova {

namespace DictationEvent {

/// The pipeline entered recording, processing or idle; never the error state.
struct StateChanged
{
    DictationState state;
    bool operator==(const StateChanged &) const = default;
};

struct TranscriptInserted
{
    TranscriptInsertionPayload payload;
    Delivery delivery = {}; ///< what is known beside it
    bool operator==(const TranscriptInserted &) const = default;
};

/// A start or the processing failed; the pipeline is idle again.
struct Error
{
    QString message;
    bool operator==(const Error &) const = default;
};

} // namespace DictationEvent

/// What the coordinator reports.
using DictationCoordinatorEvent =
    std::variant<DictationEvent::StateChanged, DictationEvent::TranscriptInserted,
                 DictationEvent::Error>;

/// Takes the events, in order. Called on any thread with the coordinator locked: it must not block
/// and must not call the coordinator.
using DictationEventSink = std::function<void(const DictationCoordinatorEvent &)>;

} // namespace kestrova
