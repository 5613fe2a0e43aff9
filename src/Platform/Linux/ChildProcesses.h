#pragma once

#include "Platform/ProcessRunning.h"

namespace kestrova {

/// Child processes, each in a process group of its own. The kernel ends the child when the thread
/// that started it goes away, which run() keeps waiting until the child has ended.
class ChildProcesses final : public ProcessRunning
{
public:
    ProcessOutcome run(const QString &executable, const QStringList &arguments,
                       const std::stop_token &stop) override;
};

} // namespace kestrova
