#include "value/memory_limit.h"

#include <algorithm>

#include "platform/memory_limits.h"

namespace morvel::ruby::internal {

namespace {

// Groups are asked for only where the memory would cost far more than that: their limits stand in files.
constexpr std::size_t kWorthReading = std::size_t{16} << 20;

}  // namespace

bool canHaveMemory(std::size_t count, std::size_t size) {
    if (size == 0 || count <= kSurelyThere / size) {
        return true;
    }
    static const std::size_t memory = platform::machineMemory();
    // Limits may be set at any time, so they are asked for each time.
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
