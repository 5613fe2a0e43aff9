#pragma once

namespace kestrova {

/// Gives back to the system what the process has allocated and freed, and the pages of its
/// libraries, which are read again from the system's file cache when they are needed. Costs some
/// milliseconds, and the next use of code a little: for when much has just come to an end. Any
/// thread. Nothing fails.
void giveUnusedMemoryBack();

} // namespace kestrova
