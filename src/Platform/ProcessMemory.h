#pragma once

namespace kestrova {

/// Makes the process return to the system soon what it has freed. Otherwise the C library learns
/// from the first large block that is freed to keep such blocks, and a long usage log that was
/// stored once in the background keeps tens of megabytes for good. Before other threads are
/// started.
void keepLittleFreedMemory();

/// Gives back to the system what the process has allocated and freed, and the pages of its
/// libraries, which are read again from the system's file cache when they are needed. Costs some
/// milliseconds, and the next use of code a little: for when much has just come to an end. Any
/// thread. Nothing fails.
void giveUnusedMemoryBack();

} // namespace kestrova
