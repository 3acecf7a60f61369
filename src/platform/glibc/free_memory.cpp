#include "platform/free_memory.h"

#include <malloc.h>

#include <array>
#include <cstddef>
#include <cstdlib>

namespace morvel::ruby::platform {

namespace {

// The allocator caches this many blocks of each size per thread and counts them as used. Those freed last are often the
// highest, which keeps all memory below them from returning to the system.
constexpr std::size_t kCachedBlocks = 7;
constexpr std::size_t kSmallest = 24;
constexpr std::size_t kStep = 16;
constexpr std::size_t kLargest = 1032;

/// Replaces the cached blocks of the size by others that the allocator prefers to hand out, low in memory.
void exchangeCachedBlocks(std::size_t size) noexcept {
    std::array<void*, kCachedBlocks * 2> blocks{};
    for (void*& block : blocks) {
        block = std::malloc(size);
    }
    // Free the blocks taken last first: they fill the cache, so that the others do not return to it.
    for (std::size_t i = blocks.size(); i-- > 0;) {
        std::free(blocks[i]);
    }
}

}  // namespace

void returnFreeMemory() noexcept {
    // Merges the free blocks that wait in separate lists, which makes room for the exchange.
    malloc_trim(0);
    for (std::size_t size = kSmallest; size <= kLargest; size += kStep) {
        exchangeCachedBlocks(size);
    }
    malloc_trim(0);
}

}  // namespace morvel::ruby::platform
