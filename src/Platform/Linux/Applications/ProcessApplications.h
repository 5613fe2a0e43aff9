#pragma once

#include <QSet>
#include <QString>

#include <map>
#include <optional>

namespace kestrova {

/// Which installed applications a process has shown windows of since it was first looked at. One
/// that has shown several, as an office suite's, may show any of them at any time.
class ProcessApplications
{
public:
    /// Neither an unknown process nor an application that is not installed counts.
    void note(qint32 processIdentifier, const std::optional<QString> &bundleIdentifier);
    bool areSeveral(qint32 processIdentifier) const;

private:
    struct Process
    {
        quint64 startTime; // tells it from a later one with the same identifier
        QSet<QString> bundleIdentifiers;
    };
    std::map<qint32, Process> m_processes;
};

} // namespace kestrova
