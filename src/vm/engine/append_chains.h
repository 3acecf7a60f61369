// Where the stack code may build texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "compiler/program.h"
#include "vm/engine/flow.h"

namespace morvel::ruby::internal {

/// A statement `v = v + a + b ...` or `v[i] = v[i] + a + b ...`, by the places of its first and its last addition.
///
/// Carried out one by one, the first addition would copy the whole text each time, as the variable or the element still
/// holds it.
struct AppendChain {
    std::size_t firstAdd = 0;
    std::size_t lastAdd = 0;
};

struct TextUses {
    /// Chains of two additions and more. No two of them overlap.
    std::vector<AppendChain> chains;
    /// By instruction, true for a LoadName whose value is the left operand of an addition or an argument of a call:
    /// what gets the only hold on a text there can append to it in place.
    std::vector<bool> takenOver;
};

/// Looks at each instruction once. `globals` gives the global slot that each instruction names, or kNotGlobal.
[[nodiscard]] TextUses findTextUses(const CompiledFunction& function, const Flow& flow,
                                    const std::vector<std::uint32_t>& globals);

}  // namespace morvel::ruby::internal
