#include "vm/engine/flow.h"

#include <algorithm>
#include <optional>

namespace morvel::ruby::internal {

namespace {

/// Follows every path through the stack code and notes the depth at each instruction.
class DepthVerifier {
public:
    DepthVerifier(const Program& program, const CompiledFunction& function)
        : m_program(program), m_code(function.code), m_depths(m_code.size(), kUnreachable) {}

    bool verify() {
        if (!reach(0, 0)) {
            return false;
        }
        while (!m_pending.empty()) {
            const std::size_t index = m_pending.back();
            m_pending.pop_back();
            if (!step(index)) {
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] std::int32_t deepest() const { return m_deepest; }
    std::vector<std::int32_t> takeDepths() { return std::move(m_depths); }

private:
    bool step(std::size_t index) {
        const Instruction& instruction = m_code[index];
        const OpcodeInfo* info = opcodeInfo(instruction.op);
        if (info == nullptr || !operandsFit(instruction, *info)) {
            return false;
        }
        const std::int32_t depth = m_depths[index];
        if (instruction.op == OpCode::Return) {
            return depth <= 1;
        }
        const std::int32_t pops = info->pops == kCounted         ? instruction.a
                                  : info->pops == kCountedAndOne ? instruction.a + 1
                                                                 : info->pops;
        if (depth < pops) {
            return false;
        }
        const std::int32_t after = depth - pops + info->pushes;
        m_deepest = std::max(m_deepest, after);
        if (info->operand == OperandKind::JumpTarget && !reach(static_cast<std::size_t>(instruction.a), after)) {
            return false;
        }
        return !fallsThrough(instruction.op) || reach(index + 1, after);
    }

    [[nodiscard]] bool operandsFit(const Instruction& instruction, const OpcodeInfo& info) const {
        const auto unsignedA = static_cast<std::size_t>(instruction.a);
        switch (info.operand) {
            case OperandKind::None:
                return true;
            case OperandKind::Constant:
                return instruction.a >= 0 && unsignedA < m_program.constants.size();
            case OperandKind::NameConstant:
                return getStringConstantPtr(m_program, instruction.a) != nullptr;
            case OperandKind::JumpTarget:
                return instruction.a >= 0 && unsignedA <= m_code.size();
            case OperandKind::Count:
                break;
        }
        // Each counted value needs an instruction that pushes it.
        return instruction.a >= 0 && unsignedA < m_code.size();
    }

    bool reach(std::size_t index, std::int32_t depth) {
        if (index == m_code.size()) {
            return depth == 0;
        }
        if (m_depths[index] == kUnreachable) {
            m_depths[index] = depth;
            m_pending.push_back(index);
            return true;
        }
        return m_depths[index] == depth;
    }

    const Program& m_program;
    const std::vector<Instruction>& m_code;
    std::vector<std::int32_t> m_depths;
    std::vector<std::size_t> m_pending;
    std::int32_t m_deepest = 0;
};

std::vector<bool> findBlockStarts(const std::vector<Instruction>& code, const std::vector<std::int32_t>& depths) {
    std::vector<bool> starts(code.size() + 1, false);
    starts[0] = true;
    for (std::size_t i = 0; i < code.size(); ++i) {
        if (depths[i] == kUnreachable || !endsBlock(code[i].op)) {
            continue;
        }
        starts[i + 1] = true;
        if (isJump(code[i].op)) {
            starts[static_cast<std::size_t>(code[i].a)] = true;
        }
    }
    return starts;
}

/// The truth of the condition that a block ends with, if that is a constant.
std::optional<bool> constantCondition(const Program& program, const std::vector<Instruction>& code,
                                      const Block& block) {
    if (classOf(code[block.end - 1].op) != OpcodeClass::ConditionalJump || block.end - block.begin < 2 ||
        code[block.end - 2].op != OpCode::PushConst) {
        return std::nullopt;
    }
    return program.constants[static_cast<std::size_t>(code[block.end - 2].a)].isTruthy();
}

void linkBlocks(const Program& program, const std::vector<Instruction>& code, Flow& flow) {
    constexpr auto kNoBlock = static_cast<std::size_t>(-1);
    std::vector<std::size_t> blockAt(code.size() + 1, kNoBlock);
    for (std::size_t block = 0; block < flow.blocks.size(); ++block) {
        blockAt[flow.blocks[block].begin] = block;
    }
    for (std::size_t number = 0; number < flow.blocks.size(); ++number) {
        Block& block = flow.blocks[number];
        const auto follow = [&](std::size_t index) {
            if (index == code.size()) {
                block.reachesEnd = true;
            } else {
                block.successors.push_back(blockAt[index]);
                flow.blocks[blockAt[index]].predecessors.push_back(number);
            }
        };
        const Instruction& last = code[block.end - 1];
        const std::optional<bool> condition = constantCondition(program, code, block);
        if (isJump(last.op) && condition != true) {
            follow(static_cast<std::size_t>(last.a));
        }
        if (fallsThrough(last.op) && condition != false) {
            follow(block.end);
        }
    }
}

std::vector<Block> findBlocks(const std::vector<Instruction>& code, const std::vector<std::int32_t>& depths) {
    const std::vector<bool> starts = findBlockStarts(code, depths);
    std::vector<Block> blocks;
    for (std::size_t i = 0; i < code.size(); ++i) {
        if (depths[i] == kUnreachable) {
            continue;
        }
        if (starts[i] || blocks.empty() || blocks.back().end != i) {
            blocks.emplace_back().begin = i;
        }
        blocks.back().end = i + 1;
    }
    return blocks;
}

bool containsPop(const std::vector<Instruction>& code, const Block& block) {
    return std::any_of(code.begin() + static_cast<std::ptrdiff_t>(block.begin),
                       code.begin() + static_cast<std::ptrdiff_t>(block.end),
                       [](const Instruction& instruction) { return instruction.op == OpCode::Pop; });
}

/// For each block, whether a value popped before its end can still be returned. Works backwards from the end of the
/// code, visiting each block once.
std::vector<bool> findLiveOut(const std::vector<Instruction>& code, const Flow& flow) {
    std::vector<bool> liveOut(flow.blocks.size(), false);
    std::vector<std::size_t> pending;
    const auto mark = [&](std::size_t block) {
        if (!liveOut[block]) {
            liveOut[block] = true;
            pending.push_back(block);
        }
    };
    for (std::size_t block = 0; block < flow.blocks.size(); ++block) {
        if (flow.blocks[block].reachesEnd) {
            mark(block);
        }
    }
    while (!pending.empty()) {
        const Block& block = flow.blocks[pending.back()];
        pending.pop_back();
        if (!containsPop(code, block)) {
            std::for_each(block.predecessors.begin(), block.predecessors.end(), mark);
        }
    }
    return liveOut;
}

/// True when only the end of the code follows the Pop at `index`.
bool endsCode(const std::vector<Instruction>& code, const Flow& flow, std::size_t index) {
    const std::size_t next = index + 1;
    return flow.depths[index] == 1 && (next == code.size() || (code[next].op == OpCode::Jump &&
                                                               static_cast<std::size_t>(code[next].a) == code.size()));
}

}  // namespace

std::optional<Flow> analyzeFlow(const Program& program, const CompiledFunction& function) {
    Flow flow;
    if (function.code.empty()) {
        return flow;
    }
    DepthVerifier verifier(program, function);
    if (!verifier.verify()) {
        return std::nullopt;
    }
    flow.deepest = verifier.deepest();
    flow.depths = verifier.takeDepths();
    flow.blocks = findBlocks(function.code, flow.depths);
    linkBlocks(program, function.code, flow);
    return flow;
}

LastValue findLastValue(const CompiledFunction& function, const Flow& flow) {
    LastValue found;
    found.livePops.resize(function.code.size(), false);
    found.endingPops.resize(function.code.size(), false);
    found.deadUntil.reserve(flow.blocks.size());
    const std::vector<bool> liveOut = findLiveOut(function.code, flow);
    for (std::size_t block = 0; block < flow.blocks.size(); ++block) {
        const std::size_t begin = flow.blocks[block].begin;
        std::size_t deadUntil = flow.blocks[block].end;
        if (liveOut[block]) {
            // Only the last Pop of a block is visible after it.
            while (deadUntil > begin && function.code[deadUntil - 1].op != OpCode::Pop) {
                --deadUntil;
            }
            if (deadUntil > begin) {
                const std::size_t pop = deadUntil - 1;
                const bool ends = endsCode(function.code, flow, pop);
                found.livePops[pop] = true;
                found.endingPops[pop] = ends;
                found.isKept = found.isKept || !ends;
            }
        }
        found.deadUntil.push_back(deadUntil);
    }
    return found;
}

}  // namespace morvel::ruby::internal
