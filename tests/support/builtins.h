// The library as a new VM has it.
#pragma once

#include <string>
#include <vector>

namespace morvel::ruby::tests {

/// The names of the built-ins in the order of their registration.
[[nodiscard]] std::vector<std::string> builtinNames();

}  // namespace morvel::ruby::tests
