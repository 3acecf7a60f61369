// Large pages for large blocks of memory.
#pragma once

#include <cstddef>

namespace morvel::ruby::platform {

/// Asks the system to use large pages, where it has them, for a block that is about to be filled. Random access to a
/// block of many ordinary pages walks the page tables each time; with large pages it rarely does. Small blocks are left
/// alone. A refusal affects only speed.
void preferLargePages(void* block, std::size_t bytes) noexcept;

}  // namespace morvel::ruby::platform
