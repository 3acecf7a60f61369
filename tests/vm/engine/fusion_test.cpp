// Which instructions become fused pairs.
#include "vm/engine/fusion.h"

#include <gtest/gtest.h>

#include <array>

#include "vm/engine/instruction_table.h"

namespace morvel::ruby::tests {
namespace {

using internal::EngineInstruction;
using internal::EngineOp;
using internal::kFirstDies;
using internal::kSecondDies;

constexpr std::uint16_t kFirstTemporary = 10;

/// The opcode that the first of two instructions gets.
EngineOp fused(const EngineInstruction& first, const EngineInstruction& second) {
    std::array<EngineInstruction, 2> code{first, second};
    internal::fusePairs(code, kFirstTemporary);
    EXPECT_EQ(second.op, code[1].op);
    return code[0].op;
}

TEST(Fusion, EveryPairIsFoundInItsOwnPlaces) {
    for (const internal::FusedPair& pair : internal::kFusedPairs) {
        EngineInstruction second{pair.second, kFirstDies | kSecondDies, 0, 2, 4};
        const std::array<std::uint16_t*, 3> operands{&second.a, &second.b, &second.c};
        *operands[pair.taking] = 12;
        EXPECT_EQ(pair.fused, fused({pair.first, 0, 12, 6, 8}, second));
        EXPECT_EQ(pair.first, fused({pair.first, 0, 14, 6, 8}, second));
        EXPECT_EQ(internal::infoOf(pair.first).operands, internal::infoOf(pair.fused).operands);
        ASSERT_TRUE(internal::pairOf(pair.fused));
        EXPECT_EQ(pair.first, internal::pairOf(pair.fused)->first);
        EXPECT_EQ(pair.second, internal::pairOf(pair.fused)->second);
    }
    EXPECT_FALSE(internal::pairOf(EngineOp::AddRR));
}

TEST(Fusion, WantsResultsThatAreUsedUp) {
    const EngineInstruction load{EngineOp::GetIndexRR, 0, 12, 0, 2};
    EXPECT_EQ(EngineOp::GetIndexRRThenGetIndexRR, fused(load, {EngineOp::GetIndexRR, kFirstDies, 14, 12, 4}));
    EXPECT_EQ(EngineOp::GetIndexRR, fused(load, {EngineOp::GetIndexRR, kSecondDies, 14, 12, 4}));
    EXPECT_EQ(EngineOp::GetIndexRRThenAddRR, fused(load, {EngineOp::AddRR, kSecondDies, 14, 4, 12}));
    EXPECT_EQ(EngineOp::GetIndexRR, fused(load, {EngineOp::AddRR, kFirstDies, 14, 4, 12}));
    // A local keeps its value.
    EXPECT_EQ(EngineOp::GetIndexRR,
              fused({EngineOp::GetIndexRR, 0, 8, 0, 2}, {EngineOp::GetIndexRR, kFirstDies, 14, 8, 4}));
    EXPECT_EQ(EngineOp::IncreaseKThenJumpIfLessRR,
              fused({EngineOp::IncreaseK, 0, 8, 2, 0}, {EngineOp::JumpIfLessRR, 0, 8, 4, 0}));
}

TEST(Fusion, WantsAContainerThatOutlivesItsElement) {
    const EngineInstruction dying{EngineOp::GetIndexRR, kFirstDies, 12, 12, 2};
    EXPECT_EQ(EngineOp::GetIndexRR, fused(dying, {EngineOp::GetIndexRR, kFirstDies, 14, 12, 4}));
    EXPECT_EQ(EngineOp::GetIndexRR, fused(dying, {EngineOp::AddRR, kSecondDies, 14, 4, 12}));
    EXPECT_EQ(EngineOp::GetIndexRR, fused(dying, {EngineOp::SetIndexRRR, kSecondDies, 0, 4, 12}));
}

}  // namespace
}  // namespace morvel::ruby::tests
