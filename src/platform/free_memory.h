// The general allocator's own free memory.
#pragma once

namespace morvel::ruby::platform {

/// Makes the general allocator return its free memory to the system, as far as it can: what it keeps for small blocks
/// is of no use to large ones. Takes time in proportion to the number of free blocks.
void returnFreeMemory() noexcept;

}  // namespace morvel::ruby::platform
