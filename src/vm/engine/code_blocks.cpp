#include "vm/engine/code_blocks.h"

#include <algorithm>

namespace morvel::ruby::internal {

std::optional<std::size_t> jumpTarget(std::span<const EngineInstruction> code, std::size_t position) {
    const EngineInstruction& jump = code[position];
    const EngineOperands& operands = infoOf(jump.op).operands;
    std::int64_t distance = 0;
    if (operands[1] == EngineOperand::WideDistance) {
        distance = jump.wide();
    } else if (operands[2] == EngineOperand::Distance) {
        distance = static_cast<std::int16_t>(jump.c);
    } else {
        return std::nullopt;
    }
    return static_cast<std::size_t>(static_cast<std::int64_t>(position) + 1 + distance);
}

CodeBlocks findBlocks(std::span<const EngineInstruction> code) {
    CodeBlocks blocks;
    // One more than the code has: a jump ends the last block as well.
    std::vector<bool> isStart(code.size() + 1, false);
    isStart[0] = true;
    for (std::size_t i = 0; i < code.size(); ++i) {
        const std::uint8_t effects = infoOf(code[i].op).does().effects;
        if ((effects & (kMayJump | kNeverFallsThrough)) == 0) {
            continue;
        }
        const std::optional<std::size_t> target = jumpTarget(code, i);
        if (target) {
            isStart[*target] = true;
            if (*target <= i) {
                blocks.backEdges.push_back(static_cast<std::uint32_t>(i));
            }
        }
        // A comparison that makes the jump after it has no target of its own.
        if (target || (effects & kNeverFallsThrough) != 0) {
            isStart[i + 1] = true;
        }
    }
    isStart.pop_back();
    blocks.starts.reserve(static_cast<std::size_t>(std::count(isStart.begin(), isStart.end(), true)));
    for (std::size_t i = 0; i < code.size(); ++i) {
        if (isStart[i]) {
            blocks.starts.push_back(static_cast<std::uint32_t>(i));
        }
    }
    return blocks;
}

}  // namespace morvel::ruby::internal
