// Indexing and indexed assignment.
#pragma once

#include "morvel/ruby/value.h"
#include "value/fault.h"

namespace morvel::ruby::internal {

/// Gives the value of `container[index]`: nil beyond the end of an array or string and for an absent map key. Faults:
/// "array index must be non-negative", "array index must be numeric", "indexing expects an array, map, or string",
/// kNoMapKey.
[[nodiscard]] Fault getElement(const RubyValue& container, const RubyValue& index, RubyValue& result);

/// Carries out `container[index] = value`. Arrays and maps change for all holders, and an array grows as needed; a
/// string in `container` is replaced by a changed copy. Faults: "index must be numeric", "index must be non-negative",
/// "string index is out of range", "string assignment requires a non-empty replacement",
/// "indexed assignment expects an array, map, or string", kNoMapKey, kStackOverflow for a value that has no text.
/// Throws std::bad_alloc for a size beyond memory.
[[nodiscard]] Fault setElement(RubyValue& container, const RubyValue& index, const RubyValue& value);

/// Stores `value` at `index`, growing the array with nils as needed. Throws std::bad_alloc for a size beyond memory.
void storeElement(RubyArray& elements, std::size_t index, const RubyValue& value);

/// A one-byte string.
[[nodiscard]] RubyValue byteString(char byte);

}  // namespace morvel::ruby::internal
