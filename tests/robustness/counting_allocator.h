// Replaces a program's global operator new and delete: counts live memory and fails on demand.
//
// Linking counting_allocator.cpp is enough to put it in place. The counts belong to the whole process; the programs
// that read them allocate from one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>

namespace morvel::ruby::tests {

struct AllocationCounts {
    /// Blocks and bytes allocated and not yet freed.
    std::size_t liveBlocks;
    std::size_t liveBytes;
    /// The most live bytes since the last call of resetPeak.
    std::size_t peakBytes;
    /// Requests since the program started.
    std::size_t requests;
    /// Requests refused because of limitLiveBytes.
    std::size_t refused;
    /// Bytes of all requests since the program started.
    std::size_t requestedBytes;
};

[[nodiscard]] AllocationCounts allocationCounts() noexcept;

/// Restarts the peak at the current number of live bytes.
void resetPeak() noexcept;

/// From now on, requests that would take the live bytes above `bytes` fail.
void limitLiveBytes(std::size_t bytes) noexcept;

enum class FailureMode : std::uint8_t { OnlyOne, FromThereOn };

/// During its lifetime, allocations of this thread fail: the `first`-th request from now (1 is the next), and in mode
/// FromThereOn all later ones too.
class FailingAllocations {
public:
    FailingAllocations(std::size_t first, FailureMode mode) noexcept;
    ~FailingAllocations();
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;

    /// Ends the failures early; true if any request has failed.
    bool stop() noexcept;
};

}  // namespace morvel::ruby::tests
