#include "platform/free_memory.h"

#include <malloc.h>

#include <array>
#include <cstddef>
#include <cstdlib>

namespace morvel::ruby::platform {

namespace {

// The allocator's cache for each thread: so many blocks of each size, which count as used. Those freed last are often
// the highest, and keep all below them from the system.
constexpr std::size_t kCachedBlocks = 7;
constexpr std::size_t kSmallest = 24;
constexpr std::size_t kStep = 16;
constexpr std::size_t kLargest = 1032;

/// Puts other blocks of the size into the cache, from where the allocator likes to take them: low in memory.
void exchangeCachedBlocks(std::size_t size) noexcept {
    std::array<void*, kCachedBlocks * 2> blocks{};
    for (void*& block : blocks) {
        block = std::malloc(size);
    }
    // Those taken last fill the cache, so that the others do not get there again.
    for (std::size_t i = blocks.size(); i-- > 0;) {
        std::free(blocks[i]);
    }
}

}  // namespace

void returnFreeMemory() noexcept {
    // Many free blocks hang in lists of their own until they are merged, which makes room for the others.
    malloc_trim(0);
    for (std::size_t size = kSmallest; size <= kLargest; size += kStep) {
        exchangeCachedBlocks(size);
    }
    malloc_trim(0);
}

}  // namespace morvel::ruby::platform
