#include "Platform/ProcessMemory.h"

#include <cstdint>
#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

namespace kestrova {

namespace {

/// Blocks from this size on are mapped one by one and returned as they are freed. Larger than what
/// is allocated for each frame of a window.
constexpr int mappedBlock = 4 << 20;
/// How much may stay at the end of each heap.
constexpr int keptAtEnd = 1 << 20;

bool writesItsCode(const dl_phdr_info &library)
{
    for (int i = 0; i < library.dlpi_phnum; ++i) {
        const ElfW(Phdr) &segment = library.dlpi_phdr[i];
        if (segment.p_type != PT_DYNAMIC)
            continue;
        const auto *entry =
            reinterpret_cast<const ElfW(Dyn) *>(library.dlpi_addr + segment.p_vaddr);
        for (; entry->d_tag != DT_NULL; ++entry) {
            if (entry->d_tag == DT_TEXTREL ||
                (entry->d_tag == DT_FLAGS && entry->d_un.d_val & DF_TEXTREL))
                return true;
        }
    }
    return false;
}

/// Only what nobody ever writes to is the same in the file.
int dropUnwrittenPages(dl_phdr_info *library, std::size_t, void *)
{
    if (writesItsCode(*library))
        return 0;
    const auto pageSize = std::uintptr_t(sysconf(_SC_PAGESIZE));
    for (int i = 0; i < library->dlpi_phnum; ++i) {
        const ElfW(Phdr) &segment = library->dlpi_phdr[i];
        if (segment.p_type != PT_LOAD || segment.p_flags & PF_W)
            continue;
        const std::uintptr_t begin = (library->dlpi_addr + segment.p_vaddr) & ~(pageSize - 1);
        const std::uintptr_t end =
            (library->dlpi_addr + segment.p_vaddr + segment.p_memsz) & ~(pageSize - 1);
        if (end > begin)
            madvise(reinterpret_cast<void *>(begin), end - begin, MADV_DONTNEED);
    }
    return 0;
}

} // namespace

void keepLittleFreedMemory()
{
    mallopt(M_MMAP_THRESHOLD, mappedBlock);
    mallopt(M_TRIM_THRESHOLD, keptAtEnd);
}

void giveUnusedMemoryBack()
{
    malloc_trim(0);
    dl_iterate_phdr(&dropUnwrittenPages, nullptr);
}

} // namespace kestrova
