// The standard library of a new VM.
#pragma once

#include <string>
#include <vector>

namespace morvel::ruby::tests {

/// The names of the built-ins in registration order.
[[nodiscard]] std::vector<std::string> builtinNames();

}  // namespace morvel::ruby::tests
