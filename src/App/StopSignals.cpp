#include "App/StopSignals.h"

#include <csignal>
#include <initializer_list>

namespace kestrova {

void ignoreTerminalStops()
{
    // Not ignored: children would inherit that. Without SA_RESTART, so that a read from a terminal
    // that we must not read from fails.
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    for (const int signal : {SIGTSTP, SIGTTIN, SIGTTOU})
        sigaction(signal, &action, nullptr);
}

} // namespace kestrova
