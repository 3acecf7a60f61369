// Where stack code may build strings.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "compiler/program.h"
#include "vm/engine/flow.h"

namespace morvel::ruby::internal {

/// A statement `v = v + a + b ...` or `v[i] = v[i] + a + b ...`, given by its first and its last addition.
///
/// If the additions ran one by one, the first would copy the whole string each time, because the variable or element
/// still holds it.
struct AppendChain {
    std::size_t firstAdd = 0;
    std::size_t lastAdd = 0;
};

struct TextUses {
    /// Chains of two or more additions. No two of them overlap.
    std::vector<AppendChain> chains;
    /// By instruction, true for a LoadName whose value is the left operand of an addition or an argument of a call:
    /// whoever becomes the only holder of a string there can append to it in place.
    std::vector<bool> takenOver;
};

/// Looks at each instruction once. `globals` gives the global slot that each instruction names, or kNotGlobal.
[[nodiscard]] TextUses findTextUses(const CompiledFunction& function, const Flow& flow,
                                    const std::vector<std::uint32_t>& globals);

}  // namespace morvel::ruby::internal
