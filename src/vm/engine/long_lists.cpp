#include "vm/engine/long_lists.h"

#include <algorithm>
#include <tuple>

namespace morvel::ruby::internal {

namespace {

/// The length of the list that the instruction takes; 0 when it takes none.
std::uint32_t listLength(const Instruction& instruction) {
    const bool isList = instruction.op == OpCode::MakeArray || instruction.op == OpCode::Call;
    return isList ? static_cast<std::uint32_t>(instruction.a) : 0;
}

/// Adds the steps of the list of `length` values that ends at `end`; `begins` tells where the value at each stack depth
/// begins.
void addSteps(std::vector<LongListStep>& steps, std::size_t end, std::int32_t base, std::uint32_t length,
              std::uint32_t part, const std::vector<std::size_t>& begins) {
    using Kind = LongListStep::Kind;
    const std::size_t* const valueBegins = begins.data() + base;
    steps.push_back({valueBegins[0], Kind::Begin, base, 0, length});
    std::uint32_t made = part;
    for (; made < length; made += part) {
        steps.push_back({valueBegins[made], Kind::Part, base, part, length});
    }
    steps.push_back({end, Kind::End, base, length - (made - part), length});
}

}  // namespace

std::vector<LongListStep> findLongLists(const CompiledFunction& function, const Flow& flow, std::uint32_t part) {
    std::vector<LongListStep> steps;
    if (static_cast<std::uint32_t>(flow.deepest) <= part) {
        return steps;
    }
    // By depth, the latest instruction to start with that many values on the stack. The value just above them when a
    // list ends began with it: an instruction pushes at most one value, so after one that pops below this depth, a
    // later one starts at it again.
    std::vector<std::size_t> begins(static_cast<std::size_t>(flow.deepest) + 1);
    for (const Block& block : flow.blocks) {
        for (std::size_t i = block.begin; i < block.end; ++i) {
            const std::uint32_t length = listLength(function.code[i]);
            const std::int32_t base = flow.depths[i] - static_cast<std::int32_t>(length);
            if (length > part && base >= flow.depths[block.begin]) {
                addSteps(steps, i, base, length, part, begins);
            }
            begins[static_cast<std::size_t>(flow.depths[i])] = i;
        }
    }
    // Of lists that begin together, the outer ones come first.
    std::sort(steps.begin(), steps.end(), [](const LongListStep& left, const LongListStep& right) {
        return std::tie(left.instruction, left.base) < std::tie(right.instruction, right.base);
    });
    return steps;
}

}  // namespace morvel::ruby::internal
