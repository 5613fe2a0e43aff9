#pragma once

#include "Platform/Audio/AudioInputNews.h"
#include "Platform/Linux/Audio/PulseAudioMicrophone.h"

#include <optional>

namespace kestrova {

/// Follows what becomes of the microphone, by the sound server's own news of it. On the
/// connection's thread, with its lock held.
class PulseAudioMicrophoneWatch
{
public:
    /// The news outlive the watch.
    explicit PulseAudioMicrophoneWatch(AudioInputNews &news) : m_news(news) {}
    PulseAudioMicrophoneWatch(const PulseAudioMicrophoneWatch &) = delete;
    PulseAudioMicrophoneWatch &operator=(const PulseAudioMicrophoneWatch &) = delete;

    /// The server was reached or lost.
    void stateChanged(pa_context *context);

private:
    void look(pa_context *context);

    AudioInputNews &m_news;
    std::optional<PulseAudioMicrophone::Search> m_search;
};

} // namespace kestrova
