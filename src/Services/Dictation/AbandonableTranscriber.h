#pragma once

#include "Concurrency/Executor.h"
#include "Services/Protocols.h"

#include <memory>

namespace kestrova {

/// Waits for another transcriber only as long as its transcript is wanted. That works on threads of
/// its own, so that the caller's is free again however long an abandoned transcription goes on.
class AbandonableTranscriber final : public Transcribing
{
public:
    /// The executor outlives the transcriber. Each transcription that has not ended holds one of
    /// its threads, so it has no maximum.
    AbandonableTranscriber(std::shared_ptr<Transcribing> transcriber, Executor &threads);

    /// As the other transcriber. Throws Cancelled at once on a stop request; what the other one
    /// makes of it later is dropped.
    TranscriptionResult transcribe(const QUrl &audioURL, const QUrl &modelURL,
                                   const std::stop_token &stop) override;

private:
    const std::shared_ptr<Transcribing> m_transcriber;
    Executor &m_threads;
};

} // namespace kestrova
