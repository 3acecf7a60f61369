// Reads of locals after which the value that was read is not needed in the local any more.
#pragma once

#include <cstdint>
#include <vector>

#include "compiler/program.h"
#include "vm/engine/flow.h"

namespace morvel::ruby::internal {

/// By instruction, true for a read of a local whose value may be used up on the way: should the statement fail, the
/// local is gone too. It is written at the end of the same statement, as in `x = x + a + b`, and not read in between;
/// or the function returns at the end of the block, and it is not read before. `takenOver` tells for which reads it is
/// worthwhile beyond those that the new value takes the place of.
///
/// Looks at each instruction once. `globals` gives the global slot that each instruction names, or kNotGlobal.
[[nodiscard]] std::vector<bool> findLastReads(const CompiledFunction& function, const Flow& flow,
                                              const std::vector<std::uint32_t>& globals, std::vector<bool> takenOver);

}  // namespace morvel::ruby::internal
