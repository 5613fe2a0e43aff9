#include "Platform/UnusedMemory.h"

#include <cstdint>
#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

namespace kestrova {

namespace {

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

void giveUnusedMemoryBack()
{
    malloc_trim(0);
    dl_iterate_phdr(&dropUnwrittenPages, nullptr);
}

} // namespace kestrova
