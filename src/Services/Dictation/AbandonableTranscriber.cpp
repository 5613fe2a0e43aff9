#include "Services/Dictation/AbandonableTranscriber.h"

#include "Concurrency/Cancelled.h"

#include <condition_variable>
#include <future>
#include <mutex>

namespace kestrova {

namespace {

/// A transcription and the news of its end, kept by both threads.
struct Transcription
{
    std::packaged_task<TranscriptionResult()> work;
    std::mutex mutex;
    std::condition_variable_any ended;
    bool hasEnded = false;

    void run()
    {
        work();
        const std::lock_guard lock(mutex);
        hasEnded = true;
        ended.notify_all();
    }

    TranscriptionResult wait(const std::stop_token &stop)
    {
        std::unique_lock lock(mutex);
        if (!ended.wait(lock, stop, [this] { return hasEnded; }))
            throw Cancelled();
        return work.get_future().get();
    }
};

} // namespace

AbandonableTranscriber::AbandonableTranscriber(std::shared_ptr<Transcribing> transcriber,
                                               Executor &threads)
    : m_transcriber(std::move(transcriber)), m_threads(threads)
{
}

TranscriptionResult AbandonableTranscriber::transcribe(const QUrl &audioURL, const QUrl &modelURL,
                                                       const std::stop_token &stop)
{
    const auto transcription = std::make_shared<Transcription>();
    transcription->work = std::packaged_task<TranscriptionResult()>(
        [transcriber = m_transcriber, audioURL, modelURL, stop] {
            return transcriber->transcribe(audioURL, modelURL, stop);
        });
    m_threads.post([transcription] { transcription->run(); });
    return transcription->wait(stop);
}

} // namespace kestrova
