#include "vm/engine/function_facts.h"

#include <algorithm>
#include <utility>

#include "vm/engine/append_chains.h"
#include "vm/engine/assignment.h"
#include "vm/engine/instruction.h"
#include "vm/engine/last_reads.h"

namespace morvel::ruby::internal {

namespace {

GuardCall findGuardCall(const CompiledFunction& function) {
    GuardCall guard;
    if (function.fastKind == FastKind::Guarded) {
        std::size_t jump = 0;
        while (function.code[jump].op != OpCode::JumpIfFalse) {
            ++jump;
        }
        guard.load = jump + 1;
        guard.call = jump + 3;
    }
    return guard;
}

bool addressesGlobal(const FunctionFacts& facts, std::size_t index) {
    const CompiledFunction& function = facts.function;
    const OpCode op = function.code[index].op;
    const bool isLocal = localSlotAt(function, index) != kNoLocalSlot;
    return op == OpCode::DefineFunction || (op == OpCode::StoreName && (facts.isMain || !isLocal)) ||
           (op == OpCode::LoadName && (index == facts.guard.load || !isLocal));
}

std::vector<std::uint32_t> resolveGlobals(const FunctionFacts& facts, GlobalNames& names) {
    const CompiledFunction& function = facts.function;
    std::vector<std::uint32_t> slots(function.code.size(), kNotGlobal);
    for (std::size_t i = 0; i < function.code.size(); ++i) {
        if (facts.flow.depths[i] != kUnreachable && addressesGlobal(facts, i)) {
            slots[i] = names.slotOf(function.code[i].a);
        }
    }
    return slots;
}

std::vector<bool> findBlockStarts(const CompiledFunction& function, const Flow& flow) {
    std::vector<bool> starts(function.code.size() + 1, false);
    for (const Block& block : flow.blocks) {
        starts[block.begin] = true;
    }
    return starts;
}

std::vector<std::uint8_t> findFlags(const CompiledFunction& function, const Flow& flow, const LastValue& lastValue,
                                    const std::vector<AppendChain>& chains) {
    std::vector<std::uint8_t> flags(function.code.size(), 0);
    for (std::size_t block = 0; lastValue.isKept && block < flow.blocks.size(); ++block) {
        for (std::size_t i = flow.blocks[block].begin; i < lastValue.deadUntil[block]; ++i) {
            const OpCode op = function.code[i].op;
            if (op == OpCode::Add || op == OpCode::SetIndex || op == OpCode::Call) {
                flags[i] = kLastValueDies;
            }
        }
    }
    for (const AppendChain& chain : chains) {
        flags[chain.firstAdd] |= kBeginsAppend;
        flags[chain.lastAdd] |= kEndsAppend;
    }
    return flags;
}

}  // namespace

std::size_t FunctionFacts::loopConditionEnd(std::size_t index, std::size_t target) const {
    // Repeating a longer one would cost more space than the saved jump is worth.
    constexpr std::size_t kLongestCondition = 24;
    if (target >= index || flow.depths[target] != 0) {
        return 0;
    }
    for (std::size_t i = target; i < index && i - target < kLongestCondition; ++i) {
        const Instruction& instruction = function.code[i];
        if (instruction.op == OpCode::JumpIfFalse) {
            const bool leaves = static_cast<std::size_t>(instruction.a) == index + 1 && flow.depths[i] == 1;
            return leaves && function.code[i - 1].op != OpCode::PushConst ? i : 0;
        }
        if (!fallsThrough(instruction.op) || (i != target && blockStarts[i])) {
            return 0;
        }
    }
    return 0;
}

FunctionFacts findFacts(const Program& program, std::int32_t functionIndex, Flow flow, GlobalNames& names) {
    const CompiledFunction& function = program.functions[static_cast<std::size_t>(functionIndex)];
    FunctionFacts facts{program, function, std::move(flow)};
    facts.isMain = functionIndex == 0;
    facts.guard = findGuardCall(function);
    facts.globalSlots = resolveGlobals(facts, names);
    TextUses texts = findTextUses(function, facts.flow, facts.globalSlots);
    LastValue lastValue = findLastValue(function, facts.flow);
    facts.hasAppendChains = !texts.chains.empty();
    facts.flags = findFlags(function, facts.flow, lastValue, texts.chains);
    facts.lastReads = findLastReads(function, facts.flow, facts.globalSlots, std::move(texts.takenOver));
    facts.livePops = std::move(lastValue.livePops);
    facts.endingPops = std::move(lastValue.endingPops);
    facts.keepsLastValue = lastValue.isKept;
    facts.blockStarts = findBlockStarts(function, facts.flow);
    return facts;
}

}  // namespace morvel::ruby::internal
