#include "platform/large_pages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace morvel::ruby::platform {

void preferLargePages(void* block, std::size_t bytes) noexcept {
    // Two large pages, since a block only partly covers the pages at its ends.
    constexpr std::size_t kLargeBlock = std::size_t{4} * 1024 * 1024;
    if (bytes < kLargeBlock) {
        return;
    }
    const auto pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t firstPage = (begin + pageSize - 1) & ~(pageSize - 1);
    const std::uintptr_t lastPage = (begin + bytes) & ~(pageSize - 1);
    static_cast<void>(madvise(reinterpret_cast<void*>(firstPage), lastPage - firstPage, MADV_HUGEPAGE));
}

}  // namespace morvel::ruby::platform
