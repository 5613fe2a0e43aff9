#pragma once

#include "Platform/Audio/AudioRecorder.h"
#include "Platform/Linux/Audio/PulseAudioConnection.h"

#include <string>

/// Which source of the sound server is the microphone. Called with the connection's lock held.
namespace kestrova::PulseAudioMicrophone {

/// Whether the source carries what is being played rather than what is being said.
bool isMonitor(const pa_source_info &source);

/// One question to the server for its sources. Destroying it takes the question back.
class Search
{
public:
    /// The context is ready. The callback comes on the connection's thread, once all is known or
    /// the server has failed.
    Search(pa_context *context, std::function<void()> done);
    Search(const Search &) = delete;
    Search &operator=(const Search &) = delete;

    bool isDone() const { return m_isDone; }
    /// The name of the default source, or of the first other one when that is a monitor. Empty when
    /// there is no microphone.
    std::string name() const { return m_choice.name; }
    /// Unknown when the server has not answered.
    MicrophoneCondition condition() const;

private:
    struct Source
    {
        std::string name;
        bool isMuted = false;
    };

    void takeServer(const pa_server_info *server);
    void takeSource(const pa_source_info &source);
    void finish(bool hasAnswer);

    const std::function<void()> m_done;
    std::string m_defaultName;
    Source m_choice;
    bool m_hasMonitor = false;
    bool m_hasAnswer = false;
    bool m_isDone = false;
    PulseAudioOperation m_serverInfo;
    PulseAudioOperation m_sourceList;
};

/// The name of the microphone. Empty when there is none or the server does not answer before the
/// deadline.
std::string find(PulseAudioConnection &connection, PulseAudioConnection::TimePoint deadline);

} // namespace kestrova::PulseAudioMicrophone
