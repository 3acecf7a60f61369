// How the translator handles code that the compiler never produces, and code at the limits of the instruction encoding.
#include <gtest/gtest.h>

#include <string>

#include "support/assembler.h"
#include "support/engine_facts.h"

namespace morvel::ruby::tests {
namespace {

using internal::Instruction;
using internal::OpCode;

const Instruction kLoad = op(OpCode::LoadName, 0);
const Instruction kLoadOther = op(OpCode::LoadName, 2);
const Instruction kStore = op(OpCode::StoreName, 0);
const Instruction kOne = op(OpCode::PushConst, 1);
const Instruction kLess = op(OpCode::Less);
const Instruction kPop = op(OpCode::Pop);
const Instruction kReturn = op(OpCode::Return);

/// The instruction names of a function f(a, b) with this code.
std::string translated(std::vector<Instruction> code) {
    return TranslatedProgram(makeProgram({"a", 1, "b"}, {}, {function("f", {"a", "b"}, std::move(code))})).names(1);
}

TEST(Translator, ChangesAContainerInPlaceWhereNothingElseStandsForIt) {
    const Instruction set = op(OpCode::SetIndex);
    EXPECT_EQ("SetIndexRKK ReturnLocal ReturnNil", translated({kLoad, kOne, kOne, set, kStore, kReturn}));
    // a[a] = 1
    EXPECT_EQ("PassLocal SetIndexRRK MoveTemporary ReturnLocal ReturnNil",
              translated({kLoad, kLoad, kOne, set, kStore, kReturn}));
    // The variable's value is also further down the stack.
    EXPECT_EQ("PassLocal SetIndexRKK PassLocal MoveTemporary EqualRR ReturnLocal ReturnNil",
              translated({kLoad, kLoad, kOne, kOne, set, kStore, op(OpCode::Equal), kReturn}));
    // The result is stored in another variable.
    EXPECT_EQ("PassLocal SetIndexRKK MoveTemporary ReturnLocal ReturnNil",
              translated({kLoadOther, kOne, kOne, set, kStore, kReturn}));
}

TEST(Translator, ChangesAContainerInPlaceWhereTheStoreIsInTheSameBlock) {
    // The SetIndex, to which the other branch jumps, is followed at once by the store.
    EXPECT_EQ("JumpIfFalse PassLocal Jump PassLocal SetIndexRKK MoveTemporary ReturnLocal ReturnNil",
              translated({kLoadOther, op(OpCode::JumpIfFalse, 4), kLoadOther, op(OpCode::Jump, 8), kLoad, kOne, kOne,
                          op(OpCode::SetIndex), kStore, kReturn}));
}

TEST(Translator, FusesATestOnlyWhereNothingWaitsBelow) {
    EXPECT_EQ("JumpUnlessLessRK ReturnNil ReturnLocal ReturnNil",
              translated({kLoad, kOne, kLess, op(OpCode::JumpIfFalse, 5), kReturn, kLoad, kReturn}));
    EXPECT_EQ("LessRK PassLocal JumpIfFalse AddRK ReturnLocal ReturnNil",
              translated({kLoadOther, kLoad, kOne, kLess, op(OpCode::JumpIfFalse, 7), kOne, op(OpCode::Add), kReturn}));
}

TEST(Translator, RepeatsTheConditionOfALoopThatItLeavesToJustBehindIt) {
    // while a < 1 do end
    EXPECT_EQ("JumpUnlessLessRK JumpIfLessRK ReturnNil",
              translated({kLoad, kOne, kLess, op(OpCode::JumpIfFalse, 5), op(OpCode::Jump, 0)}));
    // The loop exits to another place.
    EXPECT_EQ("JumpUnlessLessRK Jump ReturnNil",
              translated({kLoad, kOne, kLess, op(OpCode::JumpIfFalse, 6), op(OpCode::Jump, 0), kReturn}));
    // Something jumps into the condition.
    EXPECT_EQ("JumpIfFalse PassLocal Jump PassLocal JumpUnlessLessRK Jump ReturnNil",
              translated({kLoadOther, op(OpCode::JumpIfFalse, 4), kLoadOther, op(OpCode::Jump, 5), kLoad, kOne, kLess,
                          op(OpCode::JumpIfFalse, 9), op(OpCode::Jump, 4)}));
    // The condition leaves a value on the stack.
    EXPECT_EQ(
        "LessRK PassLocal JumpIfFalse Drop Jump ReturnLocal ReturnNil",
        translated({kLoadOther, kLoad, kOne, kLess, op(OpCode::JumpIfFalse, 7), kPop, op(OpCode::Jump, 0), kReturn}));
    // The condition jumps to itself.
    EXPECT_EQ("Jump ReturnNil", translated({op(OpCode::Jump, 0)}));
}

TEST(Translator, FusesTestsWithJumpsThatAreSurelyShort) {
    // Each statement is four stack instructions. Before the first there are the JumpIfFalse and, at the end, a Jump.
    const auto jumpOver = [](int statements) {
        return TranslatedProgram("def f(a) if a < 1 then " + repeated("a(1) ", statements) + "end return a end")
            .names(1);
    };
    EXPECT_EQ("JumpUnlessLessRK", jumpOver(1023).substr(0, 16));
    EXPECT_EQ("LessRK JumpIfFalse", jumpOver(1024).substr(0, 18));
}

/// The instruction names of a condition up to the statement that depends on it.
std::string conditionOf(const std::string& condition) {
    const std::string names =
        TranslatedProgram("def f(a, b) if " + condition + " then b = 0 end return a end").names(1);
    return names.substr(0, names.find(" LoadConstant"));
}

TEST(Translator, FusesChainsOfUpTo65Tests) {
    EXPECT_EQ(repeated("JumpUnlessEqualRK ", 64) + "JumpUnlessEqualRK",
              conditionOf(repeated("a == 1 and ", 64) + "a == 1"));
    EXPECT_EQ("EqualRK CombineEqualRK JumpIfFalse " + repeated("JumpUnlessEqualRK ", 63) + "JumpUnlessEqualRK",
              conditionOf(repeated("a == 1 and ", 65) + "a == 1"));
}

TEST(Translator, KnowsALocalsKindFromTheSixteenTestsBefore) {
    EXPECT_EQ("JumpUnlessLessRK " + repeated("JumpUnlessEqualRK ", 15) + "JumpUnlessLessRK",
              conditionOf("a < 1 and " + repeated("b == 1 and ", 15) + "a < 2"));
    EXPECT_EQ("LessRK " + repeated("CombineEqualRK ", 16) + "CombineLessRK JumpIfFalse",
              conditionOf("a < 1 and " + repeated("b == 1 and ", 16) + "a < 2"));
}

TEST(Translator, RepeatsConditionsThatAreNear) {
    const auto loop = [](int statements) {
        const std::string names =
            TranslatedProgram("def f(a) while a < 1 do " + repeated("a(1) ", statements) + "end return a end").names(1);
        return names.substr(names.rfind("Drop"));
    };
    EXPECT_EQ("Drop JumpIfLessRK ReturnLocal ReturnNil", loop(1022));
    EXPECT_EQ("Drop LessRK JumpIfTrue ReturnLocal ReturnNil", loop(1100));
}

TEST(Translator, AGlobalOnTheStackKeepsTheValueThatWasRead) {
    const auto main = [](std::vector<Instruction> code) {
        return TranslatedProgram(makeProgram({"a", 1, "b"}, std::move(code))).names(0);
    };
    const Instruction equal = op(OpCode::Equal);
    EXPECT_EQ("CheckGlobal PassGlobal PassConstant StoreGlobalMove EqualRG ReturnLocal ReturnNil",
              main({kLoad, kOne, kStore, equal, kReturn}));
    EXPECT_EQ("CheckGlobal PassConstant StoreGlobalMove EqualGG ReturnLocal ReturnNil",
              main({kLoad, kOne, op(OpCode::StoreName, 2), equal, kReturn}));
    EXPECT_EQ("CheckGlobal PassGlobal DefineFunction ReturnLocal ReturnNil",
              main({kLoad, op(OpCode::DefineFunction, 0, 0), kReturn}));
    EXPECT_EQ("CheckGlobal DefineFunction ReturnGlobal ReturnNil",
              main({kLoad, op(OpCode::DefineFunction, 2, 0), kReturn}));
}

/// A call whose `count` arguments were pushed in an earlier block.
internal::Program callWithArguments(std::int32_t count) {
    std::vector<Instruction> code{kLoad};
    code.insert(code.end(), static_cast<std::size_t>(count), kOne);
    code.push_back(op(OpCode::Jump, count + 2));
    code.push_back(op(OpCode::Call, count));
    code.push_back(kReturn);
    return makeProgram({"a", 1}, {}, {function("f", {"a"}, std::move(code))});
}

TEST(Translator, CallsTakeUpTo255ArgumentsFromRegisters) {
    EXPECT_NE(nullptr, TranslatedProgram(callWithArguments(255)).code(1));
    EXPECT_EQ(nullptr, TranslatedProgram(callWithArguments(256)).code(1));
}

TEST(Translator, RegistersAreThoseThatOperandsCanName) {
    const auto withLocals = [](std::size_t count) {
        std::vector<std::string> params;
        for (std::size_t i = 0; i < count; ++i) {
            params.push_back("p" + std::to_string(i));
        }
        return TranslatedProgram(makeProgram({"p0"}, {}, {function("f", params, {kLoad, kReturn})})).code(1);
    };
    // One temporary for the value, and a spare one.
    const auto most = withLocals(32'765);
    ASSERT_NE(nullptr, most);
    EXPECT_EQ(32'767U, most->registerCount);
    EXPECT_EQ(nullptr, withLocals(32'766));
}

TEST(Translator, AnAppendChainTakesOneTemporaryMore) {
    const auto temporaries = [](const std::string& statement) {
        const auto code = TranslatedProgram("def f(s, t) " + statement + " return s end").code(1);
        return code->registerCount - code->firstTemporary;
    };
    EXPECT_EQ(3U, temporaries("s = s + t"));
    EXPECT_EQ(4U, temporaries("s = s + t + 1"));
}

TEST(Translator, SurplusParametersHaveRegisters) {
    // f(a, a, a, a): all arguments arrive, one is kept.
    TranslatedProgram program(makeProgram({"a"}, {}, {function("f", {"a", "a", "a", "a"}, {kLoad, kReturn})}));
    const auto code = program.code(1);
    ASSERT_NE(nullptr, code);
    EXPECT_EQ(1U, code->localCount);
    EXPECT_GE(code->registerCount, 4U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(internal::EngineOp::Drop, code->instructions[i].op);
        EXPECT_EQ((i + 1) * 2, code->instructions[i].a);
    }
}

TEST(Translator, ResultsGoIntoGlobalsThatAnOperandCanName) {
    const auto statement = [](std::size_t globalsBefore) {
        TranslatedProgram program("g = 1 + 2 return nil");
        for (std::size_t i = 0; i < globalsBefore; ++i) {
            (void)program.slotOf("other" + std::to_string(i));
        }
        return program.names(0);
    };
    EXPECT_EQ("PassConstant AddToGRK ReturnConstant ReturnNil", statement(0));
    EXPECT_EQ("PassConstant AddToGRK ReturnConstant ReturnNil", statement(32'767));
    EXPECT_EQ("PassConstant AddRK StoreFarGlobal Drop ReturnConstant ReturnNil", statement(32'768));
}

TEST(Translator, OnlyTheResultJustComputedGoesIntoAGlobal) {
    const auto main = [](std::vector<Instruction> code) {
        return TranslatedProgram(makeProgram({"a", 1, "b"}, std::move(code))).names(0);
    };
    const Instruction jump = op(OpCode::Jump, 2);
    const Instruction add = op(OpCode::Add);
    EXPECT_EQ("PassConstant PassConstant AddToGRK ReturnLocal ReturnNil",
              main({kOne, jump, kOne, kOne, add, kStore, kPop, kPop}));
    // The block before computed it.
    EXPECT_EQ("PassConstant StoreGlobalMove ReturnGlobal ReturnNil", main({kOne, jump, kStore, kPop}));
    EXPECT_EQ("PassConstant PassConstant AddRK Drop StoreGlobalMove ReturnGlobal ReturnNil",
              main({kOne, jump, kOne, kOne, add, kPop, kStore, kPop}));
    // Constants, the first and the second.
    EXPECT_EQ("PassConstant AddRK PassConstant StoreGlobalMove ReturnLocal ReturnNil",
              main({kOne, kOne, add, kOne, kStore, kPop, kPop}));
    EXPECT_EQ("PassConstant AddRK PassConstant StoreGlobalMove ReturnLocal ReturnNil",
              main({kOne, kOne, add, op(OpCode::PushConst, 2), kStore, kPop, kPop}));
}

}  // namespace
}  // namespace morvel::ruby::tests
