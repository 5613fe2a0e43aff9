#pragma once

#include "Platform/ProcessRunning.h"

namespace kestrova {

/// Child processes, each in a process group of its own. The kernel ends the child when the thread
/// that started it goes away, which run() keeps waiting until the child has ended.
class ChildProcesses final : public ProcessRunning
{
public:
    /// In bytes. A transcript of hours of speech is a hundredth of the first; an error message that
    /// somebody reads is as much smaller than the second.
    static constexpr qsizetype standardOutputLimit = 32 * 1024 * 1024;
    static constexpr qsizetype standardErrorLimit = 1024 * 1024;

    ProcessOutcome run(const QString &executable, const QStringList &arguments,
                       const std::stop_token &stop) override;
};

} // namespace kestrova
