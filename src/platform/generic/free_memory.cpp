// For allocators that cannot be asked.
#include "platform/free_memory.h"

namespace morvel::ruby::platform {

void returnFreeMemory() noexcept {}

}  // namespace morvel::ruby::platform
