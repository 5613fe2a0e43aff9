#pragma once

#include "Concurrency/Executor.h"
#include "Services/Dictation/DictationCoordinatorEvent.h"
#include "Services/Protocols.h"

#include <deque>
#include <memory>
#include <mutex>
#include <stop_token>
#include <variant>

namespace kestrova {

/// Runs one dictation from start to end: record, transcribe, insert. Its public operations may be
/// called from any thread; they return at once, and take effect in the order of the calls. The
/// services run on the background executor, never under the lock, so a dictation can be cancelled
/// while one of them works. No failure leaves it: each becomes an Error event.
///
/// Held by shared pointer: running work keeps the coordinator alive.
class DictationCoordinator : public std::enable_shared_from_this<DictationCoordinator>
{
public:
    /// The executor outlives the coordinator.
    DictationCoordinator(Executor &background, std::shared_ptr<AudioCapturing> audioCapture,
                         std::shared_ptr<Transcribing> transcriber,
                         std::shared_ptr<TextInserting> textInserter,
                         std::shared_ptr<ModelManaging> modelManager, DictationEventSink eventSink);

    /// Where the next transcript goes, and which hotbar slot asked for it. Set before each start.
    void setInsertionContext(const std::optional<TargetApplication> &target,
                             std::optional<int> slotIndex);
    /// Starts a dictation, or ends the recording and processes it. Nothing while processing.
    void toggle();
    /// Abandons a dictation that is being processed. Nothing while idle or recording.
    void cancelProcessing();
    /// Whenever a run of processing ends, the coordinator becomes idle, also a cancelled one during
    /// the next dictation. This takes that dictation up again where it stands, with its context.
    /// Returns what is under way again; none when nothing is. Sends no event.
    std::optional<DictationState> resume();

private:
    struct Idle
    {
    };
    struct Recording
    {
    };
    struct Processing
    {
        std::stop_source stop;
    };
    using Mode = std::variant<Idle, Recording, Processing>;

    /// A dictation during which the run of an earlier one ended.
    struct Overtaken
    {
        Mode mode; ///< Idle while its start is under way
        std::optional<TargetApplication> target;
        std::optional<int> slotIndex;
    };

    // With the lock held:
    void perform(std::function<void()> operation);
    void toggleNow();
    void cancelNow();
    void beginStart();
    void postStart();
    void finishStart(const std::optional<QString> &failure);
    void stopAndProcess();
    static bool isRun(const Mode &mode, const std::stop_token &run);
    void endRun(const std::stop_token &run);
    void becomeIdle();

    // On a worker, without the lock:
    void startRecording();
    AudioRecording stopRecording();
    void finishStop();
    void processRecording(const std::stop_token &run);
    std::optional<TargetApplication> targetUnlessCancelled(const std::stop_token &run) const;
    void finishProcessing(const std::stop_token &run, const QString &text,
                          const AudioRecording &recording, const Delivery &delivery);
    void abandonProcessing(const std::stop_token &run, const DictationCoordinatorEvent &event);

    Executor &m_background;
    const std::shared_ptr<AudioCapturing> m_audioCapture;
    const std::shared_ptr<Transcribing> m_transcriber;
    const std::shared_ptr<TextInserting> m_textInserter;
    const std::shared_ptr<ModelManaging> m_modelManager;
    const DictationEventSink m_eventSink;

    mutable std::mutex m_mutex;
    Mode m_mode = Idle{};
    std::optional<TargetApplication> m_insertionTarget;
    std::optional<int> m_insertionSlotIndex;
    // Operations that arrive while a start is under way wait for its outcome.
    bool m_isStarting = false;
    std::deque<std::function<void()>> m_waiting;
    // A run has yet to stop the recorder, and may be cancelled already. The next start waits.
    bool m_isStopping = false;
    std::optional<Overtaken> m_overtaken;
};

} // namespace kestrova
