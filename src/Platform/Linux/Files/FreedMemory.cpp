#include "Platform/FreedMemory.h"

#include <malloc.h>

namespace kestrova {

namespace {

/// Blocks from this size on are mapped one by one and returned as they are freed. Larger than what
/// is allocated for each frame of a window.
constexpr int mappedBlock = 4 << 20;
/// How much may stay at the end of each heap.
constexpr int keptAtEnd = 1 << 20;

} // namespace

void keepLittleFreedMemory()
{
    mallopt(M_MMAP_THRESHOLD, mappedBlock);
    mallopt(M_TRIM_THRESHOLD, keptAtEnd);
}

} // namespace kestrova
