#pragma once

namespace kestrova {

/// Whether the process may open so many files more. Qt and the X server's library do not bear that
/// they may not: the one ends the program, the other waits without an end.
bool areDescriptorsFree(int count);

} // namespace kestrova
