// Compiled code as text, for comparisons in tests.
#pragma once

#include <cstddef>
#include <string>

namespace morvel::ruby::tests {

/// The instructions that function `index` of the source compiles to, such as
/// `LoadName f; PushConst "a"; Call 1; Pop` or `DefineFunction f 1`.
[[nodiscard]] std::string code(const std::string& source, std::size_t index = 0);

/// The source lines of these instructions, such as `1 1 2 1`.
[[nodiscard]] std::string lines(const std::string& source, std::size_t index = 0);

/// The constants of the source's pool, such as `1, "x", 2.5`.
[[nodiscard]] std::string constants(const std::string& source);

/// The message with which compiling the source under the chunk name "t" fails.
[[nodiscard]] std::string compileError(const std::string& source);

}  // namespace morvel::ruby::tests
