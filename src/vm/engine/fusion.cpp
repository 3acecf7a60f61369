#include "vm/engine/fusion.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "vm/engine/instruction_table.h"

namespace morvel::ruby::internal {

namespace {

/// By opcode, whether it is the first of some pair.
constexpr auto kBeginsPair = [] {
    std::array<bool, kEngineOps.size()> begins{};
    for (const FusedPair& pair : kFusedPairs) {
        begins[static_cast<std::size_t>(pair.first)] = true;
    }
    return begins;
}();

/// The flag that says that operand `index` of an instruction dies.
std::uint8_t deathFlag(const EngineInstruction& instruction, std::size_t index) {
    const auto& uses = infoOf(instruction.op).does().uses;
    const auto mayDie = [](char use) { return use == 'd' || use == 'u'; };
    return std::none_of(uses.begin(), uses.begin() + index, mayDie) ? kFirstDies : kSecondDies;
}

/// True when the pair is that of these instructions. A result that the fused instruction does not store must be a
/// temporary that the second instruction uses up. The element of a container that dies would have to be counted.
bool fits(const FusedPair& pair, const EngineInstruction& first, const EngineInstruction& second,
          std::uint16_t firstTemporary) {
    if (pair.first != first.op || pair.second != second.op) {
        return false;
    }
    const std::array<std::uint16_t, 3> operands{second.a, second.b, second.c};
    if (operands[pair.taking] != first.a) {
        return false;
    }
    if (infoOf(pair.fused).operation == Operation::IncreaseThenJump) {
        return true;
    }
    const bool isCounted = infoOf(first.op).operation == Operation::GetIndex && (first.n & kFirstDies) != 0;
    return !isCounted && first.a >= firstTemporary && (second.n & deathFlag(second, pair.taking)) != 0;
}

}  // namespace

void fusePairs(std::span<EngineInstruction> code, std::uint16_t firstTemporary) {
    for (std::size_t i = 0; i + 1 < code.size(); ++i) {
        if (!kBeginsPair[static_cast<std::size_t>(code[i].op)]) {
            continue;
        }
        for (const FusedPair& pair : kFusedPairs) {
            if (fits(pair, code[i], code[i + 1], firstTemporary)) {
                code[i].op = pair.fused;
                break;
            }
        }
    }
}

}  // namespace morvel::ruby::internal
