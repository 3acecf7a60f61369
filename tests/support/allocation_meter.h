// Measures requests to the general allocator.
#pragma once

#include <cstddef>

namespace morvel::ruby::tests {

/// Counts the allocations of the current thread while it exists. Meters do not nest.
class AllocationMeter {
public:
    AllocationMeter();
    ~AllocationMeter();
    AllocationMeter(const AllocationMeter&) = delete;
    AllocationMeter& operator=(const AllocationMeter&) = delete;

    /// Number of allocations so far.
    [[nodiscard]] static std::size_t count();
    /// Size of the largest single allocation so far.
    [[nodiscard]] static std::size_t largest();
};

}  // namespace morvel::ruby::tests
