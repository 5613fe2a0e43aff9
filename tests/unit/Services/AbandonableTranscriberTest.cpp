#include "Services/Dictation/AbandonableTranscriber.h"

#include "Concurrency/BackgroundExecutor.h"
#include "Concurrency/Cancelled.h"
#include "Models/KestrovaError.h"
#include "Services/CoordinatorServices.h"
#include "support/QtPrinting.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <limits>
#include <thread>

namespace kestrova {
namespace {

/// Waits until it may end, as a tool that hangs.
struct HangingTranscriber final : Transcribing
{
    TranscriptionResult transcribe(const QUrl &, const QUrl &, const std::stop_token &) override
    {
        ++begun;
        mayEnd.wait();
        ++ended;
        return {u"too late"_s, 1};
    }

    explicit HangingTranscriber(std::shared_future<void> mayEnd) : mayEnd(std::move(mayEnd)) {}

    const std::shared_future<void> mayEnd;
    std::atomic<int> begun = 0;
    std::atomic<int> ended = 0;
};

class AbandonableTranscriberTest : public testing::Test
{
protected:
    BackgroundExecutor threads{std::numeric_limits<std::size_t>::max()};
    const QUrl audio = QUrl::fromLocalFile(u"/r.wav"_s);
    const QUrl model = QUrl::fromLocalFile(u"/m.bin"_s);
};

TEST_F(AbandonableTranscriberTest, ATranscriptIsHandedOn)
{
    const auto inner = std::make_shared<SubstituteTranscriber>();
    AbandonableTranscriber transcriber(inner, threads);
    const TranscriptionResult result = transcriber.transcribe(audio, model, {});
    EXPECT_EQ(result.text, u"Hello world"_s);
    EXPECT_EQ(result.elapsedMilliseconds, 12);
    EXPECT_EQ(inner->audio, audio);
    EXPECT_EQ(inner->model, model);
}

TEST_F(AbandonableTranscriberTest, AFailureIsHandedOn)
{
    const auto inner = std::make_shared<SubstituteTranscriber>();
    inner->whenAsked = [] { throw KestrovaError::emptyTranscription(); };
    AbandonableTranscriber transcriber(inner, threads);
    EXPECT_THROW(transcriber.transcribe(audio, model, {}), KestrovaError);
}

TEST_F(AbandonableTranscriberTest, AnyNumberOfHangingTranscriptionsIsLeftToItself)
{
    constexpr int count = 40;
    std::promise<void> release;
    const auto inner = std::make_shared<HangingTranscriber>(release.get_future().share());
    AbandonableTranscriber transcriber(inner, threads);
    for (int i = 0; i < count; ++i) {
        std::stop_source stop;
        std::thread cancelling([&] {
            EXPECT_TRUE(waitUntil([&] { return inner->begun == i + 1; }));
            stop.request_stop();
        });
        EXPECT_THROW(transcriber.transcribe(audio, model, stop.get_token()), Cancelled);
        cancelling.join();
    }
    EXPECT_EQ(inner->ended, 0);
    release.set_value();
    EXPECT_TRUE(waitUntil([&] { return inner->ended == count; }));
}

} // namespace
} // namespace kestrova
