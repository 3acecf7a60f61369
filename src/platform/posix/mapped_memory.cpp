#include "platform/mapped_memory.h"

#include <sys/mman.h>

namespace morvel::ruby::platform {

void* mapZeroed(std::size_t bytes) noexcept {
    void* const block = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return block == MAP_FAILED ? nullptr : block;
}

void unmap(void* block, std::size_t bytes) noexcept { munmap(block, bytes); }

}  // namespace morvel::ruby::platform
