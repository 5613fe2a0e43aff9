#include "Platform/Linux/Applications/ProcessFamily.h"

#include "Platform/Linux/Applications/ProcessStatus.h"

namespace kestrova {

namespace {

// Far above any real chain of processes.
constexpr int mostGenerations = 100;

bool isDescendant(qint32 process, qint32 ancestor)
{
    for (int i = 0; i < mostGenerations; ++i) {
        const auto status = processStatus(process);
        if (!status)
            return false;
        process = status->parent;
        if (process == ancestor)
            return true;
    }
    return false;
}

} // namespace

bool isOfApplication(qint32 process, qint32 application)
{
    if (process < 1 || application < 1)
        return false;
    if (process == application || isDescendant(process, application))
        return true;
    const QString program = executablePath(process);
    return !program.isEmpty() && program == executablePath(application);
}

} // namespace kestrova
