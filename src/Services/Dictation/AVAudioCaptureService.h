#pragma once

#include "Platform/Audio/AudioRecorder.h"
#include "Platform/StandardDirectories.h"
#include "Services/Protocols.h"

namespace kestrova {

/// Records the default microphone, one dictation at a time, each to a new WAV file in the
/// temporary directory. Nothing here deletes a recording. Any thread, one call at a time.
class AVAudioCaptureService final : public AudioCapturing
{
public:
    /// Both outlive the service.
    AVAudioCaptureService(AudioInput &input, StandardDirectories &directories);

    bool isRecording() const override;
    /// Throws KestrovaError while a recording is under way or when none can be started, and lets
    /// PlatformError through when there is no place for the file or the format is refused. The
    /// state is then as before.
    void startRecording() override;
    /// The duration is what the stopped recorder reports. A recording that ended by itself is
    /// handed over all the same. Throws KestrovaError when there is none.
    AudioRecording stopRecording() override;

private:
    QUrl newFileURL();

    AudioInput &m_input;
    StandardDirectories &m_directories;
    std::unique_ptr<AudioRecorder> m_recorder;
};

} // namespace kestrova
