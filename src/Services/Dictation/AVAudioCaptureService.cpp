#include "Services/Dictation/AVAudioCaptureService.h"

#include "Models/KestrovaError.h"

#include <QUuid>

#include <utility>

namespace kestrova {

using namespace Qt::StringLiterals;

AVAudioCaptureService::AVAudioCaptureService(AudioInput &input, StandardDirectories &directories)
    : m_input(input), m_directories(directories)
{
}

bool AVAudioCaptureService::isRecording() const
{
    return m_recorder && m_recorder->isRecording();
}

void AVAudioCaptureService::startRecording()
{
    if (isRecording())
        throw KestrovaError::invalidState(u"Recording is already active."_s);

    auto recorder = m_input.makeRecorder(newFileURL(), RecordingFormat{});
    recorder->setMeteringEnabled(false);
    recorder->prepareToRecord();
    if (!recorder->record())
        throw KestrovaError::processFailed(u"Could not start audio recording."_s);
    m_recorder = std::move(recorder);
}

AudioRecording AVAudioCaptureService::stopRecording()
{
    if (!m_recorder)
        throw KestrovaError::invalidState(u"No active recording to stop."_s);

    m_recorder->stop();
    const auto recorder = std::exchange(m_recorder, nullptr);
    // Read in this order, from the stopped recorder: the duration is its own account.
    const QUrl fileURL = recorder->url();
    return {fileURL, recorder->currentTime()};
}

QUrl AVAudioCaptureService::newFileURL()
{
    const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    return QUrl::fromLocalFile(m_directories.temporaryDirectory() + u"/kestrova-"_s + name +
                               u".wav"_s);
}

} // namespace kestrova
