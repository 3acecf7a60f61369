// The pass that makes a compiled or loaded program ready to run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "compiler/program.h"

namespace morvel::ruby::internal {

/// Assigns local slots, fills the per-instruction tables and finds the functions with a fast form. Idempotent.
///
/// In the top-level function every name is global. In every other function the parameters get the first slots, then
/// every name that is assigned anywhere in the function; all reads and writes of such a name address its slot.
void finalizeProgramMetadata(Program& program);

/// Turns the instructions [begin, end) into one expression tree appended to `nodes`; sets `root` and returns true when
/// they are a single expression without calls, indexing or non-parameter locals. May leave nodes behind on failure.
[[nodiscard]] bool buildFastExpressionRange(const CompiledFunction& function, std::size_t begin, std::size_t end,
                                            std::vector<FastNode>& nodes, std::int32_t& root);

/// Sets `message` to the string and returns true when the instructions [begin, end) are exactly the statement
/// `error("message")`.
[[nodiscard]] bool extractFastErrorCall(const CompiledFunction& function, const Program& program, std::size_t begin,
                                        std::size_t end, RubyValue& message);

}  // namespace morvel::ruby::internal
