// Joining the elements of an array, shared by array_join and table_concat.
#pragma once

#include "stdlib/arguments.h"

namespace morvel::ruby::internal {

/// The renderings of the elements with the call's optional argument 1 between them, which must be a string.
[[nodiscard]] RubyValue joinElements(const BuiltinCall& call, const RubyArray& elements);

}  // namespace morvel::ruby::internal
