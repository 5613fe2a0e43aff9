#include "Services/Dictation/DictationCoordinator.h"

#include "Concurrency/Cancelled.h"
#include "Models/ReadableError.h"
#include "Services/Dictation/WordCount.h"

#include <QScopeGuard>

#include <utility>

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
        m_overtaken.reset();
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

std::optional<DictationState> DictationCoordinator::resume()
{
    const std::lock_guard lock(m_mutex);
    const auto overtaken = std::exchange(m_overtaken, std::nullopt);
    if (!overtaken)
        return std::nullopt;
    m_insertionTarget = overtaken->target;
    m_insertionSlotIndex = overtaken->slotIndex;
    if (!std::holds_alternative<Idle>(m_mode))
        return std::nullopt;
    m_mode = overtaken->mode;
    if (std::holds_alternative<Idle>(m_mode))
        return std::nullopt;
    return std::holds_alternative<Recording>(m_mode) ? DictationState::recording()
                                                     : DictationState::processing();
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
    m_overtaken.reset();
    if (!m_isStopping)
        postStart();
}

void DictationCoordinator::postStart()
{
    m_background.post([self = shared_from_this()] { self->startRecording(); });
}

void DictationCoordinator::startRecording()
{
    std::optional<QString> failure;
    try {
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
    m_isStopping = true;
    m_eventSink(StateChanged{DictationState::processing()});
    m_background.post(
        [self = shared_from_this(), run = stop.get_token()] { self->processRecording(run); });
}

void DictationCoordinator::processRecording(const std::stop_token &run)
{
    try {
        const AudioRecording recording = stopRecording();
        throwIfStopRequested(run);
        const QUrl modelURL = m_modelManager->prepareModelIfNeeded(false, run);
        throwIfStopRequested(run);
        const QString text = m_transcriber->transcribe(recording.fileURL, modelURL, run).text;
        const auto target = targetUnlessCancelled(run);
        const Delivery delivery = m_textInserter->insert(text, target, run);
        // Inserted is done, even if a cancel arrived meanwhile.
        finishProcessing(run, text, recording, delivery);
    } catch (const Cancelled &) {
        abandonProcessing(run, StateChanged{DictationState::idle()});
    } catch (const std::exception &error) {
        abandonProcessing(run, Error{userFacingDescription(error)});
    }
}

AudioRecording DictationCoordinator::stopRecording()
{
    const auto finish = qScopeGuard([this] { finishStop(); });
    return m_audioCapture->stopRecording();
}

void DictationCoordinator::finishStop()
{
    const std::lock_guard lock(m_mutex);
    m_isStopping = false;
    if (m_isStarting)
        postStart();
}

std::optional<TargetApplication>
DictationCoordinator::targetUnlessCancelled(const std::stop_token &run) const
{
    // Together: a cancel between the two would leave a text without its target.
    const std::lock_guard lock(m_mutex);
    throwIfStopRequested(run);
    return m_insertionTarget;
}

void DictationCoordinator::finishProcessing(const std::stop_token &run, const QString &text,
                                            const AudioRecording &recording,
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
    endRun(run);
    m_eventSink(StateChanged{DictationState::idle()});
}

void DictationCoordinator::abandonProcessing(const std::stop_token &run,
                                             const DictationCoordinatorEvent &event)
{
    const std::lock_guard lock(m_mutex);
    endRun(run);
    m_eventSink(event);
}

bool DictationCoordinator::isRun(const Mode &mode, const std::stop_token &run)
{
    const auto *processing = std::get_if<Processing>(&mode);
    return processing && processing->stop.get_token() == run;
}

void DictationCoordinator::endRun(const std::stop_token &run)
{
    if (m_overtaken && isRun(m_overtaken->mode, run))
        m_overtaken.reset();
    const bool isNextUnderWay =
        m_isStarting || (!std::holds_alternative<Idle>(m_mode) && !isRun(m_mode, run));
    if (isNextUnderWay)
        m_overtaken = Overtaken{m_mode, m_insertionTarget, m_insertionSlotIndex};
    // Unconditionally, also for a cancelled run that ends while the next one records.
    becomeIdle();
}

void DictationCoordinator::becomeIdle()
{
    m_mode = Idle{};
    m_insertionTarget.reset();
    m_insertionSlotIndex.reset();
}

} // namespace kestrova
