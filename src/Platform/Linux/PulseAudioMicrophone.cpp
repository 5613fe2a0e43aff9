#include "Platform/Linux/PulseAudioMicrophone.h"

namespace kestrova {

namespace {

/// The answers to two requests that are under way together.
struct Search
{
    PulseAudioConnection &connection;
    std::string defaultName;
    std::string firstName;
    bool defaultIsMicrophone = false;

    void takeServer(const pa_server_info *server)
    {
        if (server && server->default_source_name)
            defaultName = server->default_source_name;
        connection.signal();
    }

    /// Null after the last one.
    void takeSource(const pa_source_info *source)
    {
        if (source && !PulseAudioMicrophone::isMonitor(*source)) {
            if (firstName.empty())
                firstName = source->name;
            if (source->name == defaultName)
                defaultIsMicrophone = true;
        }
        connection.signal();
    }
};

} // namespace

bool PulseAudioMicrophone::isMonitor(const pa_source_info &source)
{
    return source.monitor_of_sink != PA_INVALID_INDEX;
}

std::string PulseAudioMicrophone::find(PulseAudioConnection &connection,
                                       PulseAudioConnection::TimePoint deadline)
{
    Search search{connection, {}, {}};
    // Answered in this order, so the default is known when the sources come.
    const PulseAudioOperation serverInfo(pa_context_get_server_info(
        connection.context(),
        [](pa_context *, const pa_server_info *server, void *self) {
            static_cast<Search *>(self)->takeServer(server);
        },
        &search));
    const PulseAudioOperation sourceList(pa_context_get_source_info_list(
        connection.context(),
        [](pa_context *, const pa_source_info *source, int, void *self) {
            static_cast<Search *>(self)->takeSource(source);
        },
        &search));
    if (!serverInfo || !sourceList)
        return {};
    const bool answered =
        connection.wait(deadline, [&] { return !isRunning(serverInfo) && !isRunning(sourceList); });
    if (!answered)
        return {};
    return search.defaultIsMicrophone ? search.defaultName : search.firstName;
}

} // namespace kestrova
