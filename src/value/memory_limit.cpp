#include "value/memory_limit.h"

#include <algorithm>

#include "platform/memory_limits.h"

namespace morvel::ruby::internal {

namespace {

// Limits of groups stand in files, so they are read only for requests that cost far more than reading.
constexpr std::size_t kWorthReading = std::size_t{16} << 20;

}  // namespace

bool canHaveMemory(std::size_t count, std::size_t size) {
    if (size == 0 || count <= kSurelyThere / size) {
        return true;
    }
    static const std::size_t memory = platform::machineMemory();
    // Limits may change at any time, so they are queried each time.
    std::size_t most = std::min(memory, platform::processMemoryLimit());
    if (count <= most / size && count > kWorthReading / size) {
        most = std::min(most, platform::groupMemoryLimit());
    }
    return count <= most / size;
}

void requireMemory(std::size_t count, std::size_t size) {
    if (!canHaveMemory(count, size)) {
        throw SizeRefused();
    }
}

}  // namespace morvel::ruby::internal
