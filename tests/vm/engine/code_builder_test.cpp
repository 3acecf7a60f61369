// How register code grows: jumps at the ends of their ranges, constants, lines.
#include "vm/engine/code_builder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace morvel::ruby::tests {
namespace {

using internal::Code;
using internal::CodeBuilder;
using internal::EngineOp;

CodeBuilder makeBuilder(std::size_t stackLength) { return {std::make_unique<Code>(), stackLength}; }

void emitNils(CodeBuilder& builder, int count) {
    for (int i = 0; i < count; ++i) {
        builder.emit(EngineOp::ReturnNil, 0, 0, 0, 0);
    }
}

TEST(CodeBuilder, TargetsAreNearUpToAnEighthOfTheShortRange) {
    CodeBuilder builder = makeBuilder(10'000);
    builder.markStart(5000);
    EXPECT_TRUE(builder.isNear(5000));
    EXPECT_TRUE(builder.isNear(5000 + 4095));
    EXPECT_FALSE(builder.isNear(5000 + 4096));
    EXPECT_TRUE(builder.isNear(5000 - 4095));
    EXPECT_FALSE(builder.isNear(5000 - 4096));
}

/// The distance of a short jump over `skipped` instructions; nothing when it does not fit.
std::optional<int> distanceForward(int skipped) {
    CodeBuilder builder = makeBuilder(2);
    builder.markStart(0);
    builder.emitShortJump(EngineOp::JumpIfLessRR, 0, 0, 0, 1);
    emitNils(builder, skipped);
    builder.markStart(1);
    const std::unique_ptr<Code> code = builder.finish();
    return code == nullptr ? std::nullopt : std::optional<int>(static_cast<std::int16_t>(code->instructions[0].c));
}

/// The same back over itself and `skipped` instructions.
std::optional<int> distanceBackward(int skipped) {
    CodeBuilder builder = makeBuilder(2);
    builder.markStart(0);
    emitNils(builder, skipped);
    builder.emitShortJump(EngineOp::JumpIfLessRR, 0, 0, 0, 0);
    const std::unique_ptr<Code> code = builder.finish();
    return code == nullptr ? std::nullopt : std::optional<int>(static_cast<std::int16_t>(code->instructions.back().c));
}

TEST(CodeBuilder, ShortJumpsReachAsFarAsTheirField) {
    EXPECT_EQ(0, distanceForward(0));
    EXPECT_EQ(32767, distanceForward(32767));
    EXPECT_EQ(std::nullopt, distanceForward(32768));
    EXPECT_EQ(-1, distanceBackward(0));
    EXPECT_EQ(-32768, distanceBackward(32767));
    EXPECT_EQ(std::nullopt, distanceBackward(32768));
}

TEST(CodeBuilder, LongJumpsReachAnywhere) {
    CodeBuilder builder = makeBuilder(3);
    builder.markStart(0);
    builder.emitJump(EngineOp::JumpIfFalse, 0, 0, 2);
    emitNils(builder, 70'000);
    builder.markStart(1);
    builder.emitJump(EngineOp::JumpIfTrue, 1, 6, 0);
    builder.markStart(2);
    const std::unique_ptr<Code> code = builder.finish();
    ASSERT_NE(nullptr, code);
    EXPECT_EQ(70'001, code->instructions[0].wide());
    EXPECT_EQ(-70'002, code->instructions[70'001].wide());
    EXPECT_EQ(6, code->instructions[70'001].a);
    EXPECT_EQ(1, code->instructions[70'001].n);
}

TEST(CodeBuilder, EqualConstantsAreOne) {
    CodeBuilder builder = makeBuilder(0);
    const RubyValue text("text");
    const std::vector<RubyValue> different{RubyValue(),
                                           RubyValue(true),
                                           RubyValue(false),
                                           RubyValue(0),
                                           RubyValue(1),
                                           RubyValue(0.0),
                                           RubyValue(-0.0),
                                           RubyValue(1.0),
                                           RubyValue(std::numeric_limits<double>::quiet_NaN()),
                                           text};
    for (int round = 0; round < 2; ++round) {
        for (std::size_t i = 0; i < different.size(); ++i) {
            EXPECT_EQ(i, builder.addConstant(different[i])) << i;
        }
    }
    EXPECT_EQ(different.size(), builder.code().constants.size());
    EXPECT_TRUE(std::signbit(builder.constant(6).asFloat()));
    EXPECT_TRUE(builder.constant(1).asBoolean());
}

TEST(CodeBuilder, LeavesOutAJumpToWhereTheCodeContinues) {
    CodeBuilder builder = makeBuilder(4);
    builder.markStart(0);
    builder.emitJump(EngineOp::JumpIfFalse, 0, 0, 1);
    builder.markStart(1);
    builder.emitJump(EngineOp::Jump, 0, 0, 2);
    builder.beginBlock(2);
    builder.markStart(2);
    builder.emitJump(EngineOp::Jump, 0, 0, 0);
    builder.beginBlock(3);
    builder.markStart(3);
    builder.emitJump(EngineOp::JumpIfFalse, 0, 0, 4);
    builder.beginBlock(4);
    builder.markStart(4);
    const std::unique_ptr<Code> code = builder.finish();
    ASSERT_NE(nullptr, code);
    ASSERT_EQ(3U, code->instructions.size());
    EXPECT_EQ(EngineOp::JumpIfFalse, code->instructions[0].op);
    // What went to the jump goes to its target, another jump.
    EXPECT_EQ(-1, code->instructions[0].wide());
    EXPECT_EQ(EngineOp::Jump, code->instructions[1].op);
    EXPECT_EQ(EngineOp::JumpIfFalse, code->instructions[2].op);
    EXPECT_EQ(0, code->instructions[2].wide());
}

TEST(CodeBuilder, AJumpToAJumpGoesToTheLastTarget) {
    CodeBuilder builder = makeBuilder(4);
    builder.markStart(0);
    builder.emitShortJump(EngineOp::JumpIfLessRR, 0, 0, 0, 1);
    emitNils(builder, 1);
    builder.markStart(1);
    builder.emitJump(EngineOp::Jump, 0, 0, 2);
    emitNils(builder, 1);
    builder.markStart(2);
    builder.emitJump(EngineOp::Jump, 0, 0, 3);
    emitNils(builder, 1);
    builder.markStart(3);
    builder.emitJump(EngineOp::Jump, 0, 0, 3);
    const std::unique_ptr<Code> code = builder.finish();
    ASSERT_NE(nullptr, code);
    EXPECT_EQ(5, code->instructions[0].c);
    EXPECT_EQ(3, code->instructions[2].wide());
    EXPECT_EQ(1, code->instructions[4].wide());
    EXPECT_EQ(-1, code->instructions[6].wide());
}

TEST(CodeBuilder, AShortJumpStopsAtAJumpBeyondItsRange) {
    CodeBuilder builder = makeBuilder(3);
    builder.markStart(0);
    builder.emitShortJump(EngineOp::JumpIfLessRR, 0, 0, 0, 1);
    emitNils(builder, 1);
    builder.markStart(1);
    builder.emitJump(EngineOp::Jump, 0, 0, 2);
    emitNils(builder, 40'000);
    builder.markStart(2);
    const std::unique_ptr<Code> code = builder.finish();
    ASSERT_NE(nullptr, code);
    EXPECT_EQ(1, code->instructions[0].c);
    EXPECT_EQ(40'000, code->instructions[2].wide());
}

TEST(CodeBuilder, TheLastInstructionCountsInItsBlockOnly) {
    CodeBuilder builder = makeBuilder(0);
    builder.beginBlock(0);
    EXPECT_EQ(nullptr, builder.lastInBlock());
    builder.emit(EngineOp::Drop, 0, 2, 0, 0);
    ASSERT_NE(nullptr, builder.lastInBlock());
    EXPECT_EQ(EngineOp::Drop, builder.lastInBlock()->op);
    builder.beginBlock(0);
    EXPECT_EQ(nullptr, builder.lastInBlock());
}

TEST(CodeBuilder, WhatReplacesAnInstructionGetsItsLine) {
    CodeBuilder builder = makeBuilder(0);
    builder.setLine(3);
    builder.emit(EngineOp::LessRR, 0, 0, 0, 0);
    builder.setLine(4);
    builder.dropLast();
    EXPECT_EQ(3U, builder.line());
    builder.emit(EngineOp::ReturnNil, 0, 0, 0, 0);
    EXPECT_EQ(std::vector<std::uint32_t>{3}, builder.code().lines);
    EXPECT_EQ(1U, builder.code().instructions.size());
}

}  // namespace
}  // namespace morvel::ruby::tests
