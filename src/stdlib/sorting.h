// The ordering of table_sort.
#pragma once

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// Sorts in place: two numbers by their values as doubles, any other pair by their rendered text, byte by byte. When
/// rendering fails, nothing has changed. Safe for inconsistent orders, which NaN and mixed kinds cause.
void sortElements(RubyArray& elements);

}  // namespace morvel::ruby::internal
