#include "vm/engine/fusion.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "vm/engine/instruction_table.h"

namespace morvel::ruby::internal {

namespace {

/// The flag that says that operand `index` of an instruction dies.
std::uint8_t deathFlag(const EngineInstruction& instruction, std::size_t index) {
    const auto& uses = infoOf(instruction.op).does().uses;
    const auto mayDie = [](char use) { return use == 'd' || use == 'u'; };
    return std::none_of(uses.begin(), uses.begin() + index, mayDie) ? kFirstDies : kSecondDies;
}

/// True for a lookup in a container that dies with it.
bool usesUpContainer(const EngineInstruction& instruction) {
    return infoOf(instruction.op).operation == Operation::GetIndex && (instruction.n & kFirstDies) != 0;
}

/// True when the pair is that of these instructions. A result that the fused instruction does not store must be a
/// temporary that the second instruction uses up.
bool fits(const FusedPair& pair, const EngineInstruction& first, const EngineInstruction& second,
          std::uint16_t firstTemporary) {
    if (pair.first != first.op || pair.second != second.op) {
        return false;
    }
    const std::array<std::uint16_t, 3> operands{second.a, second.b, second.c};
    if (operands[pair.taking] != first.a || usesUpContainer(first)) {
        return false;
    }
    if (infoOf(pair.fused).operation == Operation::IncreaseThenJump) {
        return true;
    }
    constexpr std::size_t kContainer = 1;
    return first.a >= firstTemporary && (second.n & deathFlag(second, pair.taking)) != 0 &&
           (pair.taking == kContainer || !usesUpContainer(second));
}

}  // namespace

void fusePairs(std::span<EngineInstruction> code, std::uint16_t firstTemporary) {
    for (std::size_t i = 0; i + 1 < code.size(); ++i) {
        const auto* const pair = std::find_if(kFusedPairs.begin(), kFusedPairs.end(), [&](const FusedPair& candidate) {
            return fits(candidate, code[i], code[i + 1], firstTemporary);
        });
        if (pair != kFusedPairs.end()) {
            code[i].op = pair->fused;
        }
    }
}

}  // namespace morvel::ruby::internal
