#include "value/memory_limit.h"

#include <unistd.h>

#include <limits>
#include <new>

namespace morvel::ruby::internal {

namespace {

std::size_t machineMemory() noexcept {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0) {
        return std::numeric_limits<std::ptrdiff_t>::max();
    }
    return static_cast<std::size_t>(pages) * static_cast<std::size_t>(pageSize);
}

}  // namespace

void requireMemory(std::size_t count, std::size_t size) {
    if (size == 0 || count <= kSurelyThere / size) {
        return;
    }
    static const std::size_t memory = machineMemory();
    if (count > memory / size) {
        throw std::bad_alloc();
    }
}

}  // namespace morvel::ruby::internal
