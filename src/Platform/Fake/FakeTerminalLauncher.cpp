#include "Platform/Fake/FakeTerminalLauncher.h"

#include "Models/ReadableError.h"

namespace kestrova {

void FakeTerminalLauncher::openTerminalAndRun(const QString &command, std::function<void()> failed)
{
    m_commands.append(command);
    if (!m_problem.isEmpty())
        throw PlatformError(m_problem);
    m_failed = std::move(failed);
}

} // namespace kestrova
