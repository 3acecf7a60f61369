// Refuses sizes that the process cannot have before any memory is touched.
#pragma once

#include <cstddef>
#include <new>

namespace morvel::ruby::internal {

/// Requests up to this size are granted without asking the system for its limits: nearly all are this small.
inline constexpr std::size_t kSurelyThere = 1 << 20;

/// A size that was refused before any memory was touched: no sign that memory has run short.
class SizeRefused : public std::bad_alloc {};

/// False when `count` elements of `size` bytes each exceed the machine's memory, the limits of the process or, for
/// requests that are large, those of its group of processes. Either may be 0.
[[nodiscard]] bool canHaveMemory(std::size_t count, std::size_t size);

/// Throws SizeRefused when the process cannot have that much memory.
void requireMemory(std::size_t count, std::size_t size);

}  // namespace morvel::ruby::internal
