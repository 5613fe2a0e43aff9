#pragma once

#include "Platform/Audio/AudioRecorder.h"

#include <mutex>

namespace kestrova {

/// What an AudioInput tells its listener, from any thread.
class AudioInputNews
{
public:
    /// As AudioInput::listen().
    MicrophoneCondition listen(AudioInputListener listener);

    /// Tells the listener when it is another one than before.
    void setCondition(MicrophoneCondition condition);
    void tellProblem(RecordingProblem problem);

private:
    std::mutex m_mutex;
    AudioInputListener m_listener;
    MicrophoneCondition m_condition = MicrophoneCondition::unknown;
};

} // namespace kestrova
