// Finds the basic blocks and loops of register code.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "vm/engine/instruction.h"

namespace morvel::ruby::internal {

/// How the code of a function divides. Instructions are named by their index, in ascending order.
struct CodeBlocks {
    /// Where blocks start. Control enters a block only there and leaves it only at its end, except by a failure. A Drop
    /// that an ArrayPush skips belongs to the block of the ArrayPush, and so does a jump that a comparison makes.
    std::vector<std::uint32_t> starts;
    /// The jumps that go backwards. Code can run forever only by taking these or by calling functions.
    std::vector<std::uint32_t> backEdges;
};

/// The instruction that the jump at `position` goes to; nothing when that is not a jump.
[[nodiscard]] std::optional<std::size_t> jumpTarget(std::span<const EngineInstruction> code, std::size_t position);

/// The blocks of code whose jumps have their distances.
[[nodiscard]] CodeBlocks findBlocks(std::span<const EngineInstruction> code);

}  // namespace morvel::ruby::internal
