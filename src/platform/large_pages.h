// Large pages for large blocks of memory.
#pragma once

#include <cstddef>

namespace morvel::ruby::platform {

/// Asks the system to back a block that is about to be filled by large pages, where it has them. Reaching into a block
/// of many ordinary pages at random costs a walk through the page tables each time; with large pages it mostly does
/// not. Small blocks are left alone. A refusal changes nothing but speed.
void preferLargePages(void* block, std::size_t bytes) noexcept;

}  // namespace morvel::ruby::platform
