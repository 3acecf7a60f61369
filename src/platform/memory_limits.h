// How much memory the process can have.
#pragma once

#include <cstddef>
#include <limits>

namespace morvel::ruby::platform {

/// What the functions below give where there is no limit, or none is known.
inline constexpr std::size_t kNoMemoryLimit = std::numeric_limits<std::ptrdiff_t>::max();

/// The memory of the machine, which stays the same.
[[nodiscard]] std::size_t machineMemory() noexcept;

/// The smallest limit that is set for the process now. Costs system calls.
[[nodiscard]] std::size_t processMemoryLimit() noexcept;

/// The smallest limit that is set now for the container or the group of processes that this one belongs to. Reads
/// files. Throws std::bad_alloc.
[[nodiscard]] std::size_t groupMemoryLimit();

}  // namespace morvel::ruby::platform
