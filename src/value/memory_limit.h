// Refuses impossible allocation sizes before any memory is touched.
#pragma once

#include <cstddef>
#include <new>

namespace morvel::ruby::internal {

/// Requests up to this size, which are nearly all, pass without asking the system for its limits.
inline constexpr std::size_t kSurelyThere = 1 << 20;

/// Reports a size that was refused before any memory was touched, which does not mean that memory has run out.
class SizeRefused : public std::bad_alloc {};

/// False when `count` elements of `size` bytes each exceed the machine's memory, the limits of the process or, for
/// large requests, those of its group of processes. `count` and `size` may be 0.
[[nodiscard]] bool canHaveMemory(std::size_t count, std::size_t size);

/// Throws SizeRefused when the process cannot have that much memory.
void requireMemory(std::size_t count, std::size_t size);

}  // namespace morvel::ruby::internal
