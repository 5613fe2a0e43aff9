#include "Platform/Linux/Audio/PulseAudioMicrophone.h"

namespace kestrova::PulseAudioMicrophone {

namespace {

/// Muted by a switch, or turned down to nothing.
bool isMuted(const pa_source_info &source)
{
    return source.mute != 0 || pa_cvolume_is_muted(&source.volume);
}

} // namespace

bool isMonitor(const pa_source_info &source)
{
    return source.monitor_of_sink != PA_INVALID_INDEX;
}

Search::Search(pa_context *context, std::function<void()> done) : m_done(std::move(done))
{
    // Answered in this order, so the default is known when the sources come.
    m_serverInfo.reset(pa_context_get_server_info(
        context,
        [](pa_context *, const pa_server_info *server, void *self) {
            static_cast<Search *>(self)->takeServer(server);
        },
        this));
    m_sourceList.reset(pa_context_get_source_info_list(
        context,
        [](pa_context *, const pa_source_info *source, int end, void *self) {
            if (source)
                static_cast<Search *>(self)->takeSource(*source);
            else
                static_cast<Search *>(self)->finish(end > 0);
        },
        this));
    m_isDone = !m_serverInfo || !m_sourceList;
}

void Search::takeServer(const pa_server_info *server)
{
    if (server && server->default_source_name)
        m_defaultName = server->default_source_name;
}

void Search::takeSource(const pa_source_info &source)
{
    if (isMonitor(source))
        m_hasMonitor = true;
    else if (m_choice.name.empty() || source.name == m_defaultName)
        m_choice = {source.name, isMuted(source)};
}

void Search::finish(bool hasAnswer)
{
    m_hasAnswer = hasAnswer;
    m_isDone = true;
    m_done();
}

MicrophoneCondition Search::condition() const
{
    if (!m_hasAnswer)
        return MicrophoneCondition::unknown;
    if (m_choice.name.empty())
        return m_hasMonitor ? MicrophoneCondition::monitorOnly : MicrophoneCondition::noDevice;
    return m_choice.isMuted ? MicrophoneCondition::muted : MicrophoneCondition::available;
}

std::string find(PulseAudioConnection &connection, PulseAudioConnection::TimePoint deadline)
{
    Search search(connection.context(), [&connection] { connection.signal(); });
    const bool answered = connection.wait(deadline, [&] {
        return search.isDone() || !PA_CONTEXT_IS_GOOD(pa_context_get_state(connection.context()));
    });
    return answered ? search.name() : std::string();
}

} // namespace kestrova::PulseAudioMicrophone
