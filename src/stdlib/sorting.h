// The ordering of table_sort.
#pragma once

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// Sorts in place: two numbers by their value as doubles, any other pair by their renderings, byte by byte. Nothing
/// is changed when a rendering fails. Safe for orders that contradict themselves, as NaN and mixed kinds make them.
void sortElements(RubyArray& elements);

}  // namespace morvel::ruby::internal
