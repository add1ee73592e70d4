#include "platform/posix/FreeMemory.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#ifdef __GLIBC__
#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace quillo {
namespace {

#ifdef __GLIBC__
/// Code is in a file as well as here: what is still needed comes back from the system's cache at its next
/// use. Only segments that nothing writes to; data of the same files would lose what was written.
int releaseCode(dl_phdr_info* object, std::size_t, void*) {
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    for (const ElfW(Phdr) & segment : std::span(object->dlpi_phdr, object->dlpi_phnum)) {
        const bool code = segment.p_type == PT_LOAD && (segment.p_flags & PF_X) && !(segment.p_flags & PF_W);
        if (!code) continue;
        const std::uintptr_t begin = (object->dlpi_addr + segment.p_vaddr) & ~(page - 1);
        const std::uintptr_t end = (object->dlpi_addr + segment.p_vaddr + segment.p_memsz) & ~(page - 1);
        if (end > begin) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
    }
    return 0;
}
#endif

}  // namespace

void releaseFreeMemory() {
#ifdef __GLIBC__
    malloc_trim(0);
    dl_iterate_phdr(releaseCode, nullptr);
#endif
}

}  // namespace quillo
