// Reads of locals after which the local no longer needs its value.
#pragma once

#include <cstdint>
#include <vector>

#include "compiler/program.h"
#include "vm/engine/flow.h"

namespace morvel::ruby::internal {

/// By instruction, true for a read of a local whose value the statement may consume; if the statement fails, the value
/// is lost. Either the same statement writes the local at its end, as in `x = x + a + b`, without reading it in
/// between, or the function returns at the end of the block without reading it again. `takenOver` marks further reads
/// for which this pays off, besides those whose stack entry the new value takes.
///
/// Looks at each instruction once. `globals` gives the global slot that each instruction names, or kNotGlobal.
[[nodiscard]] std::vector<bool> findLastReads(const CompiledFunction& function, const Flow& flow,
                                              const std::vector<std::uint32_t>& globals, std::vector<bool> takenOver);

}  // namespace morvel::ruby::internal
