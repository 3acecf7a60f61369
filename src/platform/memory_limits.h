// How much memory the process can have.
#pragma once

#include <cstddef>
#include <limits>

namespace morvel::ruby::platform {

/// Returned by the functions below when there is no limit, or none is known.
inline constexpr std::size_t kNoMemoryLimit = std::numeric_limits<std::ptrdiff_t>::max();

/// The memory of the machine, which does not change.
[[nodiscard]] std::size_t machineMemory() noexcept;

/// The smallest limit currently set for the process. Costs system calls.
[[nodiscard]] std::size_t processMemoryLimit() noexcept;

/// The smallest limit currently set for the container or group of processes that this process belongs to. Reads files.
/// Throws std::bad_alloc.
[[nodiscard]] std::size_t groupMemoryLimit();

}  // namespace morvel::ruby::platform
