// The general allocator's own free memory.
#pragma once

namespace morvel::ruby::platform {

/// Has the general allocator give what is free to the system, as far as it can: address space and memory that it keeps
/// for small blocks is of no use to large ones. Takes time in proportion to the number of free blocks.
void returnFreeMemory() noexcept;

}  // namespace morvel::ruby::platform
