// Statements that append several parts to a global text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "compiler/program.h"
#include "vm/engine/flow.h"

namespace morvel::ruby::internal {

/// A statement `g = g + a + b ...` on one global, by the places of its instructions.
struct AppendChain {
    std::size_t load = 0;
    std::size_t firstAdd = 0;
    std::size_t store = 0;
};

/// The append chains of a function that may build a text: a part is a literal text, or none is surely a number.
/// `globals` gives the global slot that each instruction names, or `notGlobal`.
///
/// Carried out one by one, the first addition would copy the whole text each time, as the global still holds it.
[[nodiscard]] std::vector<AppendChain> findAppendChains(const Program& program, const CompiledFunction& function,
                                                        const Flow& flow, const std::vector<std::uint32_t>& globals,
                                                        std::uint32_t notGlobal);

}  // namespace morvel::ruby::internal
