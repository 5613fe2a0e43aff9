#include "Platform/Posix/ChildProcesses.h"

#include "Models/ReadableError.h"
#include "Platform/Posix/BoundedOutput.h"

#include <QElapsedTimer>
#include <QProcess>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>

namespace kestrova {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// How soon a stop request is noticed; the end of the child itself is noticed at once.
constexpr std::chrono::milliseconds stopPollInterval = 50ms;
/// How long a child may take to end by itself after SIGTERM.
constexpr std::chrono::milliseconds terminationGrace = 500ms;

// Runs between vfork and exec: async-signal-safe calls only, and no variable of the parent's is
// changed.
void becomeGroupLeader()
{
    setpgid(0, 0);
    umask(S_IRWXG | S_IRWXO); // A transcript is the user's alone.
}

void start(QProcess &process, const QString &executable, const QStringList &arguments,
           ChildProcesses::ChildLifeLimit endWithParent)
{
    process.setProgram(executable);
    process.setArguments(arguments);
    process.setInputChannelMode(QProcess::ForwardedInputChannel);
    process.setChildProcessModifier([endWithParent, parent = getpid()] {
        becomeGroupLeader();
        endWithParent(parent);
    });
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    // As earlier versions do by themselves. A child of fork() would first wait for a word from the
    // parent, for ever if that is killed, and would hold what it had open: the lock, the
    // microphone.
    process.setUnixProcessParameters(QProcess::UnixProcessFlag::UseVFork);
#endif
    process.start();
    if (!process.waitForStarted(-1))
        throw PlatformError(executable + u": "_s + process.errorString());
}

// The process groups that are running; 0 where there is none. More of them than workers can run is
// left to the kernel, which ends each group's first process with us.
std::array<std::atomic<pid_t>, 64> runningGroups;
static_assert(std::atomic<pid_t>::is_always_lock_free);

/// Has the group among the running ones as long as it lasts.
class RunningGroup
{
public:
    explicit RunningGroup(pid_t group) : m_group(group) { replace(0, group); }
    ~RunningGroup() { replace(m_group, 0); }
    RunningGroup(const RunningGroup &) = delete;
    RunningGroup &operator=(const RunningGroup &) = delete;

private:
    static void replace(pid_t old, pid_t group)
    {
        for (auto &entry : runningGroups) {
            if (pid_t expected = old; entry.compare_exchange_strong(expected, group))
                return;
        }
    }

    const pid_t m_group;
};

/// Ends a process group on request.
class GroupEnd
{
public:
    GroupEnd(pid_t group, const std::stop_token &stop) : m_group(group), m_stop(stop) {}

    bool isAskedFor() const { return m_sinceAsked.isValid(); }

    /// Asks first; whoever takes too long is ended the hard way.
    void endIfRequested()
    {
        if (!m_stop.stop_requested())
            return;
        if (!isAskedFor()) {
            m_sinceAsked.start();
            kill(-m_group, SIGTERM);
        } else if (m_sinceAsked.hasExpired(terminationGrace.count())) {
            kill(-m_group, SIGKILL);
        }
    }

    /// The leader's end proves nothing about its descendants.
    void endDescendants() const { kill(-m_group, SIGKILL); }

private:
    const pid_t m_group;
    const std::stop_token m_stop;
    QElapsedTimer m_sinceAsked;
};

} // namespace

void endChildProcesses() noexcept
{
    for (const auto &entry : runningGroups) {
        if (const pid_t group = entry)
            kill(-group, SIGKILL);
    }
}

ProcessOutcome ChildProcesses::run(const QString &executable, const QStringList &arguments,
                                   const std::stop_token &stop)
{
    QProcess process;
    start(process, executable, arguments, m_endWithParent);
    const auto group = pid_t(process.processId());
    const RunningGroup running(group);
    GroupEnd end(group, stop);
    BoundedOutput output(standardOutputLimit);
    BoundedOutput errors(standardErrorLimit);
    // While a child writes without a pause, waiting for its end goes on beyond its limit.
    QObject::connect(&process, &QProcess::readyReadStandardOutput, &process, [&] {
        output.append(process.readAllStandardOutput());
        end.endIfRequested();
    });
    QObject::connect(&process, &QProcess::readyReadStandardError, &process, [&] {
        errors.append(process.readAllStandardError());
        end.endIfRequested();
    });
    while (process.state() != QProcess::NotRunning &&
           !process.waitForFinished(int(stopPollInterval.count())))
        end.endIfRequested();
    if (end.isAskedFor())
        end.endDescendants();
    return {.wasStopped = end.isAskedFor(),
            .terminationStatus = process.exitCode(),
            .standardOutput = output.bytes(),
            .isStandardOutputWhole = output.isWhole(),
            .standardError = errors.bytes()};
}

} // namespace kestrova
