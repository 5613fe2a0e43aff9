#include "Services/DictationCoordinator.h"

#include "Concurrency/Cancelled.h"
#include "Models/ReadableError.h"
#include "Services/WordCount.h"

namespace kestrova {

using DictationEvent::Error;
using DictationEvent::StateChanged;
using DictationEvent::TranscriptInserted;

DictationCoordinator::DictationCoordinator(Executor &background,
                                           std::shared_ptr<AudioCapturing> audioCapture,
                                           std::shared_ptr<Transcribing> transcriber,
                                           std::shared_ptr<TextInserting> textInserter,
                                           std::shared_ptr<ModelManaging> modelManager,
                                           DictationEventSink eventSink)
    : m_background(background), m_audioCapture(std::move(audioCapture)),
      m_transcriber(std::move(transcriber)), m_textInserter(std::move(textInserter)),
      m_modelManager(std::move(modelManager)), m_eventSink(std::move(eventSink))
{
}

void DictationCoordinator::setInsertionContext(const std::optional<TargetApplication> &target,
                                               std::optional<int> slotIndex)
{
    const std::lock_guard lock(m_mutex);
    perform([this, target, slotIndex] {
        m_insertionTarget = target;
        m_insertionSlotIndex = slotIndex;
    });
}

void DictationCoordinator::toggle()
{
    const std::lock_guard lock(m_mutex);
    perform([this] { toggleNow(); });
}

void DictationCoordinator::cancelProcessing()
{
    const std::lock_guard lock(m_mutex);
    perform([this] { cancelNow(); });
}

void DictationCoordinator::perform(std::function<void()> operation)
{
    if (m_isStarting)
        m_waiting.push_back(std::move(operation));
    else
        operation();
}

void DictationCoordinator::toggleNow()
{
    if (std::holds_alternative<Idle>(m_mode))
        beginStart();
    else if (std::holds_alternative<Recording>(m_mode))
        stopAndProcess();
}

void DictationCoordinator::cancelNow()
{
    const auto *processing = std::get_if<Processing>(&m_mode);
    if (!processing)
        return;
    std::stop_source stop = processing->stop;
    stop.request_stop();
    becomeIdle();
    m_eventSink(StateChanged{DictationState::idle()});
}

void DictationCoordinator::beginStart()
{
    m_isStarting = true;
    m_background.post([self = shared_from_this()] { self->startRecording(); });
}

void DictationCoordinator::startRecording()
{
    std::optional<QString> failure;
    try {
        const std::lock_guard capture(m_captureMutex);
        m_audioCapture->startRecording();
    } catch (const std::exception &error) {
        failure = userFacingDescription(error);
    }

    const std::lock_guard lock(m_mutex);
    finishStart(failure);
}

void DictationCoordinator::finishStart(const std::optional<QString> &failure)
{
    // A failed start leaves the insertion context: the next start sets its own.
    if (failure) {
        m_mode = Idle{};
        m_eventSink(Error{*failure});
    } else {
        m_mode = Recording{};
        m_eventSink(StateChanged{DictationState::recording()});
    }

    m_isStarting = false;
    while (!m_isStarting && !m_waiting.empty()) {
        const auto operation = std::move(m_waiting.front());
        m_waiting.pop_front();
        operation();
    }
}

void DictationCoordinator::stopAndProcess()
{
    const std::stop_source stop;
    m_mode = Processing{stop};
    m_eventSink(StateChanged{DictationState::processing()});
    m_background.post(
        [self = shared_from_this(), token = stop.get_token()] { self->processRecording(token); });
}

void DictationCoordinator::processRecording(const std::stop_token &stop)
{
    try {
        const AudioRecording recording = stopRecording();
        throwIfStopRequested(stop);
        const QUrl modelURL = m_modelManager->prepareModelIfNeeded(false, stop);
        throwIfStopRequested(stop);
        const QString text = m_transcriber->transcribe(recording.fileURL, modelURL).text;
        throwIfStopRequested(stop);
        const Delivery delivery = m_textInserter->insert(text, insertionTarget(), stop);
        // Inserted is done, even if a cancel arrived meanwhile.
        finishProcessing(text, recording, delivery);
    } catch (const Cancelled &) {
        abandonProcessing(StateChanged{DictationState::idle()});
    } catch (const std::exception &error) {
        abandonProcessing(Error{userFacingDescription(error)});
    }
}

AudioRecording DictationCoordinator::stopRecording()
{
    const std::lock_guard capture(m_captureMutex);
    return m_audioCapture->stopRecording();
}

std::optional<TargetApplication> DictationCoordinator::insertionTarget() const
{
    const std::lock_guard lock(m_mutex);
    return m_insertionTarget;
}

void DictationCoordinator::finishProcessing(const QString &text, const AudioRecording &recording,
                                            const Delivery &delivery)
{
    const qint64 words = wordCount(text);
    const std::lock_guard lock(m_mutex);
    m_eventSink(TranscriptInserted{{
                                       .text = text,
                                       .wordCount = words,
                                       .audioDurationSeconds = recording.durationSeconds,
                                       .target = m_insertionTarget,
                                       .slotIndex = m_insertionSlotIndex,
                                   },
                                   delivery});
    becomeIdle();
    m_eventSink(StateChanged{DictationState::idle()});
}

void DictationCoordinator::abandonProcessing(const DictationCoordinatorEvent &event)
{
    const std::lock_guard lock(m_mutex);
    becomeIdle();
    m_eventSink(event);
}

void DictationCoordinator::becomeIdle()
{
    // Unconditionally, also for a cancelled run that ends while the next one records.
    m_mode = Idle{};
    m_insertionTarget.reset();
    m_insertionSlotIndex.reset();
}

} // namespace kestrova
