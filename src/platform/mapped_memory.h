// Memory that comes from the system itself, past the general allocator.
#pragma once

#include <cstddef>

namespace morvel::ruby::platform {

/// Zeroed memory in whole pages, which takes room in the machine only as it is touched. Null when the system has none.
[[nodiscard]] void* mapZeroed(std::size_t bytes) noexcept;

/// Gives back at once what mapZeroed gave for that size.
void unmap(void* block, std::size_t bytes) noexcept;

}  // namespace morvel::ruby::platform
