// Facts about the control flow of stack code, found before translation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "compiler/program.h"

namespace morvel::ruby::internal {

/// Depth of an instruction that no path reaches.
inline constexpr std::int32_t kUnreachable = -1;

/// A basic block: instructions entered only at the start and left only at the end.
struct Block {
    std::size_t begin = 0;
    std::size_t end = 0;
    /// Blocks that may follow; none after a Return or at the end of the code.
    std::vector<std::size_t> successors;
    std::vector<std::size_t> predecessors;
    /// True when control may run off the end of the code next.
    bool reachesEnd = false;
};

/// The control flow of a function whose reachable code is sound.
struct Flow {
    /// Stack depth before each instruction.
    std::vector<std::int32_t> depths;
    /// Reachable blocks in code order.
    std::vector<Block> blocks;
    std::int32_t deepest = 0;
};

/// Verifies a function: operands in range, constants of the right kind, jump targets inside the code, the stack depth
/// the same on every path and never below zero. Returns nothing when any check fails; the baseline interpreter then
/// reports the fault if and when it executes it.
[[nodiscard]] std::optional<Flow> analyzeFlow(const Program& program, const CompiledFunction& function);

/// Where the value of the last expression statement matters.
struct LastValue {
    /// True when the value of some Pop may be returned at the end of the code, and the code does not end with the Pop.
    bool isKept = false;
    /// By instruction, true for such a Pop.
    std::vector<bool> livePops;
    /// By instruction, true for such a Pop at the end of the code, which returns its value at once.
    std::vector<bool> endingPops;
    /// For each block, the instruction up to which the value popped last can no longer be returned.
    std::vector<std::size_t> deadUntil;
};

[[nodiscard]] LastValue findLastValue(const CompiledFunction& function, const Flow& flow);

}  // namespace morvel::ruby::internal
