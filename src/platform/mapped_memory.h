// Memory directly from the system, bypassing the general allocator.
#pragma once

#include <cstddef>

namespace morvel::ruby::platform {

/// Zeroed memory in whole pages, which takes physical memory only as it is touched. Null when the system has none.
[[nodiscard]] void* mapZeroed(std::size_t bytes) noexcept;

/// Returns a block that mapZeroed gave for that size to the system at once.
void unmap(void* block, std::size_t bytes) noexcept;

}  // namespace morvel::ruby::platform
