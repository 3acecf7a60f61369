// Which stack code the verifier accepts, the blocks that it finds, and where the last value matters.
#include "vm/engine/flow.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/assembler.h"

namespace morvel::ruby::tests {
namespace {

using internal::Flow;
using internal::Instruction;
using internal::OpCode;

using Code = std::vector<Instruction>;

/// The control flow of top-level code with the constants "x" and 1.
std::optional<Flow> flowOf(const Code& code) {
    const internal::Program program = makeProgram({"x", 1}, code);
    return analyzeFlow(program, program.functions[0]);
}

TEST(Flow, HasTheDepthBeforeEachInstruction) {
    const std::optional<Flow> flow = flowOf({op(OpCode::PushConst, 1), op(OpCode::PushConst, 1), op(OpCode::Add),
                                             op(OpCode::Return), op(OpCode::PushConst, 1)});
    ASSERT_TRUE(flow);
    EXPECT_EQ((std::vector<std::int32_t>{0, 1, 2, 1, internal::kUnreachable}), flow->depths);
    EXPECT_EQ(2, flow->deepest);
    ASSERT_EQ(1U, flow->blocks.size());
    EXPECT_EQ(4U, flow->blocks[0].end);
    EXPECT_FALSE(flow->blocks[0].reachesEnd);
}

TEST(Flow, AcceptsOperandsUpToTheirBounds) {
    EXPECT_TRUE(flowOf({}));
    EXPECT_TRUE(flowOf({op(OpCode::PushConst, 1), op(OpCode::Pop)}));
    EXPECT_FALSE(flowOf({op(OpCode::PushConst, 2), op(OpCode::Pop)}));
    EXPECT_FALSE(flowOf({op(OpCode::PushConst, -1), op(OpCode::Pop)}));
    EXPECT_TRUE(flowOf({op(OpCode::LoadName, 0), op(OpCode::Pop)}));
    EXPECT_FALSE(flowOf({op(OpCode::LoadName, 1), op(OpCode::Pop)}));
    EXPECT_TRUE(flowOf({op(OpCode::Jump, 1)}));
    EXPECT_FALSE(flowOf({op(OpCode::Jump, 2)}));
    EXPECT_FALSE(flowOf({op(OpCode::Jump, -1)}));
    EXPECT_TRUE(flowOf({op(OpCode::MakeArray, 0), op(OpCode::Pop)}));
    EXPECT_FALSE(flowOf({op(OpCode::MakeArray, -1), op(OpCode::Pop)}));
    EXPECT_FALSE(flowOf({op(OpCode::MakeArray, std::numeric_limits<std::int32_t>::max()), op(OpCode::Pop)}));
    EXPECT_FALSE(flowOf({op(OpCode::Call, std::numeric_limits<std::int32_t>::max()), op(OpCode::Pop)}));
    EXPECT_FALSE(flowOf({opNumber(27)}));
}

TEST(Flow, WantsTheStackToHoldWhatIsTaken) {
    EXPECT_FALSE(flowOf({op(OpCode::Pop)}));
    EXPECT_FALSE(flowOf({op(OpCode::PushConst, 1), op(OpCode::Add), op(OpCode::Pop)}));
    EXPECT_TRUE(flowOf({op(OpCode::PushConst, 1), op(OpCode::PushConst, 1), op(OpCode::Add), op(OpCode::Pop)}));
    EXPECT_FALSE(flowOf({op(OpCode::PushConst, 1), op(OpCode::MakeArray, 2), op(OpCode::Pop)}));
    EXPECT_FALSE(flowOf({op(OpCode::PushConst, 1), op(OpCode::Call, 1), op(OpCode::Pop)}));
    EXPECT_TRUE(flowOf({op(OpCode::PushConst, 1), op(OpCode::Call, 0), op(OpCode::Pop)}));
    // Even if a later push makes up for the missing value.
    EXPECT_FALSE(flowOf({op(OpCode::Pop), op(OpCode::PushConst, 1)}));
    EXPECT_FALSE(flowOf({op(OpCode::PushConst, 1), op(OpCode::Add)}));
    EXPECT_FALSE(flowOf({op(OpCode::PushConst, 1), op(OpCode::MakeArray, 2)}));
    EXPECT_FALSE(flowOf({op(OpCode::PushConst, 1), op(OpCode::Call, 1)}));
}

TEST(Flow, WantsTheStackEmptyAtTheEnd) {
    EXPECT_FALSE(flowOf({op(OpCode::PushConst, 1)}));
    EXPECT_FALSE(flowOf({op(OpCode::PushConst, 1), op(OpCode::Jump, 2)}));
    EXPECT_TRUE(flowOf({op(OpCode::Return)}));
    EXPECT_TRUE(flowOf({op(OpCode::PushConst, 1), op(OpCode::Return)}));
    EXPECT_FALSE(flowOf({op(OpCode::PushConst, 1), op(OpCode::PushConst, 1), op(OpCode::Return)}));
}

TEST(Flow, WantsOneDepthWherePathsMeet) {
    const auto meeting = [](Instruction onOnePath) {
        return flowOf(
            {op(OpCode::PushConst, 1), op(OpCode::JumpIfFalse, 4), onOnePath, op(OpCode::Jump, 4), op(OpCode::Return)});
    };
    EXPECT_TRUE(meeting(op(OpCode::DefineFunction, 0, 0)));
    EXPECT_FALSE(meeting(op(OpCode::PushConst, 1)));
    // A loop that pushes.
    EXPECT_FALSE(flowOf({op(OpCode::PushConst, 1), op(OpCode::Jump, 0)}));
    // A loop that pops.
    EXPECT_FALSE(flowOf({op(OpCode::PushConst, 1), op(OpCode::PushConst, 1), op(OpCode::Pop), op(OpCode::Jump, 2)}));
}

TEST(Flow, IgnoresWhatIsNotReached) {
    EXPECT_TRUE(flowOf({op(OpCode::Jump, 2), op(OpCode::Pop), op(OpCode::Return)}));
    EXPECT_TRUE(flowOf({op(OpCode::Return), opNumber(99), op(OpCode::Jump, 77)}));
}

// while x do x end: LoadName, JumpIfFalse 5, LoadName, Pop, Jump 0
const Code kLoop{op(OpCode::LoadName, 0), op(OpCode::JumpIfFalse, 5), op(OpCode::LoadName, 0), op(OpCode::Pop),
                 op(OpCode::Jump, 0)};

TEST(Flow, LinksBlocks) {
    const std::optional<Flow> flow = flowOf(kLoop);
    ASSERT_TRUE(flow);
    ASSERT_EQ(2U, flow->blocks.size());
    EXPECT_EQ(2U, flow->blocks[0].end);
    EXPECT_EQ(2U, flow->blocks[1].begin);
    EXPECT_EQ(std::vector<std::size_t>{1}, flow->blocks[0].successors);
    EXPECT_TRUE(flow->blocks[0].reachesEnd);
    EXPECT_EQ(std::vector<std::size_t>{1}, flow->blocks[0].predecessors);
    EXPECT_EQ(std::vector<std::size_t>{0}, flow->blocks[1].successors);
    EXPECT_FALSE(flow->blocks[1].reachesEnd);
}

TEST(Flow, AConstantConditionLeadsOneWay) {
    const auto loopWhile = [](const RubyValue& condition) {
        const internal::Program program =
            makeProgram({condition}, {op(OpCode::PushConst, 0), op(OpCode::JumpIfFalse, 3), op(OpCode::Jump, 0)});
        return analyzeFlow(program, program.functions[0]).value();
    };
    const Flow endless = loopWhile(true);
    EXPECT_EQ(std::vector<std::size_t>{1}, endless.blocks.at(0).successors);
    EXPECT_FALSE(endless.blocks[0].reachesEnd);
    const Flow skipped = loopWhile(nullptr);
    EXPECT_EQ(std::vector<std::size_t>{}, skipped.blocks.at(0).successors);
    EXPECT_TRUE(skipped.blocks[0].reachesEnd);
}

internal::LastValue lastValueOf(const Code& code) {
    const internal::Program program = makeProgram({"x", 1}, code);
    return findLastValue(program.functions[0], analyzeFlow(program, program.functions[0]).value());
}

TEST(LastValue, IsThatOfTheLastPopOnEachPath) {
    const internal::LastValue straight =
        lastValueOf({op(OpCode::PushConst, 1), op(OpCode::Pop), op(OpCode::PushConst, 1), op(OpCode::Pop),
                     op(OpCode::LoadName, 0), op(OpCode::StoreName, 0), op(OpCode::JumpIfFalse, 7)});
    EXPECT_TRUE(straight.isKept);
    EXPECT_EQ((std::vector<bool>{false, false, false, true, false, false, false}), straight.livePops);
    // After the live Pop, its value can be returned.
    EXPECT_EQ(std::vector<std::size_t>{4}, straight.deadUntil);

    const internal::LastValue loop = lastValueOf(kLoop);
    EXPECT_TRUE(loop.isKept);
    EXPECT_TRUE(loop.livePops[3]);
    // The loop's test can leave the loop and return it.
    EXPECT_EQ((std::vector<std::size_t>{0, 4}), loop.deadUntil);
}

TEST(LastValue, IsNotKeptBeforeAReturn) {
    const internal::LastValue found = lastValueOf({op(OpCode::PushConst, 1), op(OpCode::Pop), op(OpCode::Return)});
    EXPECT_FALSE(found.isKept);
    EXPECT_EQ((std::vector<bool>{false, false, false}), found.livePops);
    EXPECT_EQ(std::vector<std::size_t>{3}, found.deadUntil);
}

TEST(LastValue, IsReplacedByThatOfALaterBlock) {
    // x; if x then end; x
    const internal::LastValue found =
        lastValueOf({op(OpCode::LoadName, 0), op(OpCode::Pop), op(OpCode::LoadName, 0), op(OpCode::JumpIfFalse, 4),
                     op(OpCode::LoadName, 0), op(OpCode::Pop)});
    EXPECT_FALSE(found.livePops[1]);
    EXPECT_TRUE(found.livePops[5]);
}

}  // namespace
}  // namespace morvel::ruby::tests
