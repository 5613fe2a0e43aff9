#include "Platform/Linux/X11/Connection/BrokenPipeSignal.h"

#include <csignal>

#include <pthread.h>

namespace kestrova {

void blockBrokenPipeSignal()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

} // namespace kestrova
