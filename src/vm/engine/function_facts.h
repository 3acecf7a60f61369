// Facts about a function's stack code that its translation looks up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "compiler/program.h"
#include "vm/engine/flow.h"
#include "vm/engine/global_names.h"

namespace morvel::ruby::internal {

/// Where the guard of a guarded function calls `error`: that call has line 0 and names the global, even when a
/// parameter has the same name.
struct GuardCall {
    std::size_t load = static_cast<std::size_t>(-1);
    std::size_t call = static_cast<std::size_t>(-1);
};

struct FunctionFacts {
    const Program& program;
    const CompiledFunction& function;
    Flow flow;
    /// The function is the top-level code.
    bool isMain = false;
    GuardCall guard{};
    /// By instruction, the global that it addresses, or kNotGlobal.
    std::vector<std::uint32_t> globalSlots{};
    /// By instruction, true for a Pop whose value may be returned at the end of the code.
    std::vector<bool> livePops{};
    /// By instruction, true for such a Pop that returns its value at once.
    std::vector<bool> endingPops{};
    /// True when there are others, whose values have to be kept.
    bool keepsLastValue = false;
    bool hasAppendChains = false;
    /// By instruction: kBeginsAppend and kEndsAppend for additions; kLastValueDies for additions, indexed stores and
    /// calls.
    std::vector<std::uint8_t> flags{};
    /// By instruction, true for a read of a local whose value the statement may consume.
    std::vector<bool> lastReads{};
    /// By instruction, true where a block starts.
    std::vector<bool> blockStarts{};

    /// When the jump at `index` closes a loop whose condition, at `target`, is short and exits to right after the jump:
    /// the index of the condition's JumpIfFalse. Otherwise 0.
    [[nodiscard]] std::size_t loopConditionEnd(std::size_t index, std::size_t target) const;
};

/// The facts about function `functionIndex` of a program that outlives them. The globals that the function mentions get
/// slots.
[[nodiscard]] FunctionFacts findFacts(const Program& program, std::int32_t functionIndex, Flow flow,
                                      GlobalNames& names);

}  // namespace morvel::ruby::internal
