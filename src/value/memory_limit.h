// Refuses sizes that no machine could serve before any memory is touched.
#pragma once

#include <cstddef>

namespace morvel::ruby::internal {

/// Bytes that are not worth a look at the machine: small requests are the rule.
inline constexpr std::size_t kSurelyThere = 1 << 20;

/// Throws std::bad_alloc when `count` elements of `size` bytes each exceed the machine's memory. Either may be 0.
void requireMemory(std::size_t count, std::size_t size);

}  // namespace morvel::ruby::internal
