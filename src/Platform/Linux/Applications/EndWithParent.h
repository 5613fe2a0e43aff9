#pragma once

#include <sys/types.h>

namespace kestrova {

/// Called in a child process between vfork and exec: the kernel ends it when the thread that
/// started it goes away; it ends at once when the parent has gone already. Async-signal-safe, and
/// changes no variable.
void endWithParent(pid_t parent);

} // namespace kestrova
