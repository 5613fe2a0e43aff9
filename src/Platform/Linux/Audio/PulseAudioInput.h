#pragma once

#include "Platform/Audio/AudioRecorder.h"
#include "Platform/Linux/Audio/PulseAudioConnection.h"
#include "Platform/Linux/Audio/PulseAudioMicrophoneWatch.h"

namespace kestrova {

/// Records from PulseAudio, and from PipeWire through its PulseAudio interface. Connects to the
/// sound server in the background as soon as it is created, so that a recording begins quickly.
/// Outlives its recorders.
class PulseAudioInput final : public AudioInput
{
public:
    /// The one format that can be recorded is RecordingFormat's default. The file is created by
    /// the recorder's prepareToRecord(). Any thread.
    std::unique_ptr<AudioRecorder> makeRecorder(const QUrl &fileURL,
                                                const RecordingFormat &format) override;

    MicrophoneCondition listen(AudioInputListener listener) override;
    void reconnect() override;

private:
    AudioInputNews m_news;
    PulseAudioMicrophoneWatch m_watch{m_news};
    PulseAudioConnection m_connection{
        PulseAudioConnection::usualPauses(),
        [this](pa_context *context) { m_watch.stateChanged(context); }};
};

} // namespace kestrova
