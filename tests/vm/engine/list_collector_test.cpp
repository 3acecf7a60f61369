// The steps in which long lists are built.
#include <gtest/gtest.h>

#include <string>

#include "support/assembler.h"
#include "support/engine_facts.h"
#include "vm/engine/long_lists.h"

namespace morvel::ruby::tests {
namespace {

using internal::LongListStep;
using internal::OpCode;

/// Each step as instruction, kind and number of values moved, for top-level lists of more than `part` values.
std::string stepsOf(TranslatedProgram program, std::uint32_t part) {
    const internal::FunctionFacts facts = program.facts(0);
    std::string text;
    for (const LongListStep& step : findLongLists(facts.function, facts.flow, part)) {
        const char* kind = step.kind == LongListStep::Kind::Begin  ? "begin"
                           : step.kind == LongListStep::Kind::Part ? "part"
                                                                   : "end";
        text += (text.empty() ? "" : ", ") + std::to_string(step.instruction) + ' ' + kind;
        text += step.kind == LongListStep::Kind::Begin ? "" : ' ' + std::to_string(step.count);
    }
    return text;
}

std::string stepsIn(const std::string& statement, std::uint32_t part) {
    return stepsOf(TranslatedProgram(statement), part);
}

TEST(LongListSteps, MovePartAfterPart) {
    EXPECT_EQ("0 begin, 2 part 2, 4 part 2, 5 end 1", stepsIn("[1, 2, 3, 4, 5]", 2));
    EXPECT_EQ("0 begin, 2 part 2, 4 end 2", stepsIn("[1, 2, 3, 4]", 2));
    EXPECT_EQ("0 begin, 1 part 1, 2 end 1", stepsIn("[1, 2]", 1));
    EXPECT_EQ("0 begin, 3 part 3, 4 end 1", stepsIn("[1, 2, 3, 4]", 3));
}

TEST(LongListSteps, AreNoneForListsOfOnePart) {
    EXPECT_EQ("", stepsIn("[1, 2]", 2));
    EXPECT_EQ("", stepsIn("[1, 2, 3, 4]", 4));
    EXPECT_EQ("", stepsIn("[[1, 2], [3, 4]]", 2));
    EXPECT_EQ("", stepsIn("x = 1 + 2 * 3", 1));
}

TEST(LongListSteps, OfACallAreThoseOfItsArguments) {
    EXPECT_EQ("1 begin, 3 part 2, 4 end 1", stepsIn("f(1, 2, 3)", 2));
    EXPECT_EQ("", stepsIn("f(1, 2)", 2));
}

TEST(LongListSteps, BeginWithWholeValues) {
    // The second part begins with the product.
    EXPECT_EQ("0 begin, 2 part 2, 5 end 1", stepsIn("[1, 2, 3 * 4]", 2));
    EXPECT_EQ("0 begin, 6 part 2, 7 end 1", stepsIn("[1 + 2, 3 + 4, 5]", 2));
}

TEST(LongListSteps, OfTheOuterListComeFirst) {
    EXPECT_EQ("0 begin, 0 begin, 2 part 2, 3 end 1, 5 part 2, 6 end 1", stepsIn("[[1, 2, 3], 4, 5]", 2));
    EXPECT_EQ("0 begin, 2 part 2, 2 begin, 4 part 2, 5 end 1, 6 end 1", stepsIn("[1, 2, [3, 4, 5]]", 2));
}

TEST(LongListSteps, AreNoneForValuesOfAnotherBlock) {
    // The first value comes from before the jump.
    const auto one = op(OpCode::PushConst, 0);
    EXPECT_EQ("", stepsOf(TranslatedProgram(makeProgram(
                              {1}, {one, op(OpCode::Jump, 2), one, one, op(OpCode::MakeArray, 3), op(OpCode::Pop)})),
                          2));
    EXPECT_EQ("2 begin, 4 part 2, 5 end 1",
              stepsOf(TranslatedProgram(makeProgram({1}, {one, op(OpCode::Jump, 2), one, one, one,
                                                          op(OpCode::MakeArray, 3), op(OpCode::Pop), op(OpCode::Pop)})),
                      2));
}

TEST(ListCollector, TakesTheRegistersOfOnePart) {
    for (const int length : {256, 600, 5000}) {
        TranslatedProgram program("[" + repeated("1, ", length - 1) + "1]");
        const auto code = program.code(0);
        ASSERT_NE(nullptr, code);
        // The array, one part, and a spare register.
        EXPECT_EQ(code->firstTemporary + 1 + internal::kLongestPart + 1, code->registerCount) << length;
    }
}

}  // namespace
}  // namespace morvel::ruby::tests
