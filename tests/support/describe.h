// Renders values as text that shows their kinds, for comparisons in tests.
#pragma once

#include <string>

#include "morvel/ruby/value.h"

namespace morvel::ruby::tests {

/// `nil`, `7`, `7.0` for a float, `true`, `"text"`, `[1, "a"]`, `{"k": 1}`, `function f`. Unlike toString, every kind
/// looks different, and floats keep all their digits.
[[nodiscard]] std::string describe(const RubyValue& value);

}  // namespace morvel::ruby::tests
