#include "Platform/Linux/Applications/ProcessApplications.h"

#include "Platform/Linux/Applications/ProcessStatus.h"

namespace kestrova {

void ProcessApplications::note(qint32 processIdentifier,
                               const std::optional<QString> &bundleIdentifier)
{
    const auto status = processStatus(processIdentifier);
    if (!status || !bundleIdentifier)
        return;
    Process &process = m_processes[processIdentifier];
    if (process.startTime != status->startTime)
        process = {status->startTime, {}};
    process.bundleIdentifiers.insert(*bundleIdentifier);
}

bool ProcessApplications::areSeveral(qint32 processIdentifier) const
{
    const auto process = m_processes.find(processIdentifier);
    return process != m_processes.end() && process->second.bundleIdentifiers.size() > 1;
}

} // namespace kestrova
