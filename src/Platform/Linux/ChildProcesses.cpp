#include "Platform/Linux/ChildProcesses.h"

#include "Models/ReadableError.h"

#include <QProcess>

#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

namespace kestrova {

using namespace std::chrono_literals;

namespace {

/// How soon a stop request is noticed; the end of the child itself is noticed at once.
constexpr std::chrono::milliseconds stopPollInterval = 50ms;
/// How long a child may take to end by itself after SIGTERM.
constexpr std::chrono::milliseconds terminationGrace = 500ms;

// Runs between fork and exec: async-signal-safe calls only.
void detachFromParentButNotFromItsLife(pid_t parent)
{
    setpgid(0, 0);
    umask(S_IRWXG | S_IRWXO); // A transcript is the user's alone.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(EXIT_FAILURE); // The parent died before it could be watched.
}

void start(QProcess &process, const QString &executable, const QStringList &arguments)
{
    process.setProgram(executable);
    process.setArguments(arguments);
    process.setInputChannelMode(QProcess::ForwardedInputChannel);
    process.setChildProcessModifier(
        [parent = getpid()] { detachFromParentButNotFromItsLife(parent); });
    process.start();
    if (!process.waitForStarted(-1))
        throw PlatformError(process.errorString());
}

void endGroup(QProcess &process)
{
    const auto group = pid_t(process.processId());
    kill(-group, SIGTERM);
    process.waitForFinished(int(terminationGrace.count()));
    // The leader's end proves nothing about its descendants.
    kill(-group, SIGKILL);
    process.waitForFinished(-1);
}

} // namespace

ProcessOutcome ChildProcesses::run(const QString &executable, const QStringList &arguments,
                                   const std::stop_token &stop)
{
    QProcess process;
    start(process, executable, arguments);

    ProcessOutcome outcome;
    while (process.state() != QProcess::NotRunning &&
           !process.waitForFinished(int(stopPollInterval.count()))) {
        if (stop.stop_requested()) {
            endGroup(process);
            outcome.wasStopped = true;
        }
    }
    outcome.terminationStatus = process.exitCode();
    outcome.standardOutput = process.readAllStandardOutput();
    outcome.standardError = process.readAllStandardError();
    return outcome;
}

} // namespace kestrova
