// For allocators without a function to return their free memory.
#include "platform/free_memory.h"

namespace morvel::ruby::platform {

void returnFreeMemory() noexcept {}

}  // namespace morvel::ruby::platform
