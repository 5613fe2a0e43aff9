#pragma once

namespace kestrova {

/// Keeps SIGPIPE from the calling thread: libxcb writes with writev, and after the server's death
/// that would be one.
void blockBrokenPipeSignal();

} // namespace kestrova
