#pragma once

namespace kestrova {

/// Makes the process return to the system soon what it has freed. Otherwise the C library learns
/// from the first large block that is freed to keep such blocks, and a long usage log that was
/// stored once in the background keeps tens of megabytes for good. Before other threads are
/// started.
void keepLittleFreedMemory();

} // namespace kestrova
