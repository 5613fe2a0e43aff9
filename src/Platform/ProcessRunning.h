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
    bool isStandardOutputWhole = true; ///< not when there was far more than any text
    QByteArray standardError = {};     ///< of a very long one the beginning and the end
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

/// Ends every child process that is being run, with its descendants and without asking, because the
/// program ends at once. Async-signal-safe.
void endChildProcesses() noexcept;

} // namespace kestrova
