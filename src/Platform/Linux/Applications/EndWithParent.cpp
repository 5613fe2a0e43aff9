#include "Platform/Linux/Applications/EndWithParent.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace kestrova {

void endWithParent(pid_t parent)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(EXIT_FAILURE); // The parent died before it could be watched.
}

} // namespace kestrova
