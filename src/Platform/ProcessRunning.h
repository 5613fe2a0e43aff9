#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <stop_token>

namespace kestrova {

/// How a child process ended.
struct ProcessOutcome
{
    bool wasStopped = false;   ///< ended because stop was requested; the rest may be incomplete
    int terminationStatus = 0; ///< the exit status, or the number of the signal that ended it
    QByteArray standardOutput = {};
    QByteArray standardError = {};
};

/// Runs child processes. Called on a worker.
class ProcessRunning
{
public:
    virtual ~ProcessRunning() = default;

    /// Starts the executable with exactly these arguments, our environment and our working
    /// directory, takes in both outputs while it runs, and waits for its end, however long it
    /// takes. On a stop request the child and its descendants are ended. The child never outlives
    /// the program, not even one that is killed. Throws PlatformError when it cannot be started.
    virtual ProcessOutcome run(const QString &executable, const QStringList &arguments,
                               const std::stop_token &stop) = 0;
};

} // namespace kestrova
