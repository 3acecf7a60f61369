// Joining the elements of an array, shared by array_join and table_concat.
#pragma once

#include "stdlib/arguments.h"

namespace morvel::ruby::internal {

/// The rendered elements, separated by the call's optional argument 1, which must be a string.
[[nodiscard]] RubyValue joinElements(const BuiltinCall& call, const RubyArray& elements);

}  // namespace morvel::ruby::internal
