// Refuses sizes that the process cannot have before any memory is touched.
#pragma once

#include <cstddef>
#include <new>
#include <string>

namespace morvel::ruby::internal {

/// Requests up to this size are granted without asking the system for its limits: nearly all are this small.
inline constexpr std::size_t kSurelyThere = 1 << 20;

/// A size that was refused before any memory was touched: no sign that memory has run short.
class SizeRefused : public std::bad_alloc {};

/// False when `count` elements of `size` bytes each exceed the machine's memory, the limits of the process (RLIMIT_AS,
/// RLIMIT_DATA) or, for requests that are large, those of its control group. Either may be 0.
[[nodiscard]] bool canHaveMemory(std::size_t count, std::size_t size);

/// Throws SizeRefused when the process cannot have that much memory.
void requireMemory(std::size_t count, std::size_t size);

/// The memory that control groups of version 1 or 2 leave to a process; a huge number when they set no limit.
/// `groupsOfProcess` is the file that names its groups, `root` the folder of all groups.
[[nodiscard]] std::size_t controlGroupLimit(const std::string& groupsOfProcess, const std::string& root);

}  // namespace morvel::ruby::internal
