#pragma once

#include "Platform/ProcessRunning.h"

#include <sys/types.h>

namespace kestrova {

/// Child processes, each in a process group of its own.
class ChildProcesses final : public ProcessRunning
{
public:
    /// In bytes. A transcript of hours of speech is a hundredth of the first; an error message that
    /// somebody reads is as much smaller than the second.
    static constexpr qsizetype standardOutputLimit = 32 * 1024 * 1024;
    static constexpr qsizetype standardErrorLimit = 1024 * 1024;

    /// Has a child end when the thread that started it goes away, which run() keeps waiting until
    /// the child has ended: each system has a way of its own. Called in the child between vfork and
    /// exec: async-signal-safe calls only, and no variable of the parent's is changed.
    using ChildLifeLimit = void (*)(pid_t parent);

    explicit ChildProcesses(ChildLifeLimit endWithParent) : m_endWithParent(endWithParent) {}

    ProcessOutcome run(const QString &executable, const QStringList &arguments,
                       const std::stop_token &stop) override;

private:
    const ChildLifeLimit m_endWithParent;
};

} // namespace kestrova
