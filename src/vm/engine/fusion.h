// Fused pairs of instructions: one dispatch, and no temporary, for two instructions that often follow each other.
#pragma once

#include <cstdint>
#include <span>

#include "vm/engine/instruction.h"

namespace morvel::ruby::internal {

/// Makes each instruction that forms a fused pair with the next one the fused instruction. Operands from
/// `firstTemporary` on, an operand itself, are temporaries. The code keeps its length, so it may hold jumps already.
void fusePairs(std::span<EngineInstruction> code, std::uint16_t firstTemporary);

}  // namespace morvel::ruby::internal
