#include "value/zeroed_array.h"

#include <sys/mman.h>

#include <cstring>

#include "value/spare_memory.h"

namespace morvel::ruby::internal {

namespace {

// Smaller blocks are worth no call of the system.
constexpr std::size_t kLargeBlock = std::size_t{256} * 1024;

}  // namespace

void* allocateZeroed(std::size_t bytes) {
    if (bytes < kLargeBlock) {
        return std::memset(::operator new(bytes), 0, bytes);
    }
    while (true) {
        void* const block = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (block != MAP_FAILED) {
            return block;
        }
        if (!SpareMemory::giveBackAll()) {
            throw std::bad_alloc();
        }
    }
}

void releaseZeroed(void* block, std::size_t bytes) noexcept {
    if (bytes < kLargeBlock) {
        ::operator delete(block);
    } else {
        munmap(block, bytes);
    }
}

}  // namespace morvel::ruby::internal
