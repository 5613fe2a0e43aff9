#include "Platform/Fake/FakeTerminalLauncher.h"

#include "Models/ReadableError.h"

namespace kestrova {

void FakeTerminalLauncher::openTerminalAndRun(const QString &command)
{
    m_commands.append(command);
    if (!m_problem.isEmpty())
        throw PlatformError(m_problem);
}

} // namespace kestrova
