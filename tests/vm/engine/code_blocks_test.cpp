// Where register code divides into blocks, and where it loops.
#include "vm/engine/code_blocks.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/engine_facts.h"

namespace morvel::ruby::tests {
namespace {

using Indexes = std::vector<std::uint32_t>;

internal::CodeBlocks blocksOf(const std::string& body) {
    return TranslatedProgram("def f(a, b) " + body + " end").code(1)->blocks;
}

TEST(CodeBlocks, StraightCodeIsOneBlockAndWhatFollowsItsReturn) {
    // ReturnLocal ReturnNil
    EXPECT_EQ((Indexes{0, 1}), blocksOf("return a").starts);
    EXPECT_EQ(Indexes{}, blocksOf("return a").backEdges);
}

TEST(CodeBlocks, EndAfterJumpsAndStartAtTargets) {
    // JumpUnlessLessRR CopyLocal Jump CopyLocal ReturnLocal ReturnNil
    const internal::CodeBlocks blocks = blocksOf("if a < b then a = b else b = a end return a");
    EXPECT_EQ((Indexes{0, 1, 3, 4, 5}), blocks.starts);
    EXPECT_EQ(Indexes{}, blocks.backEdges);
}

TEST(CodeBlocks, LoopsGoBack) {
    // JumpUnlessLessRR JumpUnlessLessRR IncreaseK JumpIfLessRR IncreaseK JumpIfLessRR ReturnLocal ReturnNil
    const internal::CodeBlocks blocks = blocksOf("while a < b do while b < a do b = b + 1 end a = a + 1 end return a");
    EXPECT_EQ((Indexes{0, 1, 2, 4, 6, 7}), blocks.starts);
    EXPECT_EQ((Indexes{3, 5}), blocks.backEdges);
}

TEST(CodeBlocks, AJumpToItselfGoesBack) {
    // Jump ReturnNil
    const internal::CodeBlocks blocks = blocksOf("while true do end");
    EXPECT_EQ((Indexes{0, 1}), blocks.starts);
    EXPECT_EQ(Indexes{0}, blocks.backEdges);
}

TEST(CodeBlocks, AJumpMadeByAComparisonBelongsToItsBlock) {
    // LessRR CombineLessRR JumpIfFalse CopyLocal ReturnLocal ReturnNil
    EXPECT_EQ((Indexes{0, 3, 4, 5}), blocksOf("if a < b and b < 7 then a = b end return a").starts);
}

TEST(CodeBlocks, TargetsOfJumps) {
    const auto code = TranslatedProgram("def f(a) while a do a = a - 1 end return a end").code(1);
    const std::vector<internal::EngineInstruction>& instructions = code->instructions;
    // JumpIfFalse SubtractRK JumpIfTrue ReturnLocal ReturnNil
    EXPECT_EQ(3U, jumpTarget(instructions, 0));
    EXPECT_EQ(std::nullopt, jumpTarget(instructions, 1));
    EXPECT_EQ(1U, jumpTarget(instructions, 2));
    EXPECT_EQ(std::nullopt, jumpTarget(instructions, 3));
}

}  // namespace
}  // namespace morvel::ruby::tests
