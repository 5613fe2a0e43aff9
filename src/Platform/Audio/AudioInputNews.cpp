#include "Platform/Audio/AudioInputNews.h"

#include <utility>

namespace kestrova {

MicrophoneCondition AudioInputNews::listen(AudioInputListener listener)
{
    const std::lock_guard lock(m_mutex);
    m_listener = std::move(listener);
    return m_condition;
}

void AudioInputNews::setCondition(MicrophoneCondition condition)
{
    const std::lock_guard lock(m_mutex);
    if (std::exchange(m_condition, condition) != condition && m_listener.conditionChanged)
        m_listener.conditionChanged(condition);
}

void AudioInputNews::tellProblem(RecordingProblem problem)
{
    const std::lock_guard lock(m_mutex);
    if (m_listener.recordingFailed)
        m_listener.recordingFailed(problem);
}

} // namespace kestrova
