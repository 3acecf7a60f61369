// The program model, the opcode table and the diagnostics.
#include "compiler/program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "compiler/compiler.h"
#include "compiler/diagnostics.h"
#include "compiler/operators.h"
#include "support/assembler.h"
#include "support/runs.h"

namespace morvel::ruby::tests {
namespace {

using internal::CompiledFunction;
using internal::OpCode;
using internal::Program;

TEST(Opcodes, NumbersAndNames) {
    const std::vector<std::string> names{
        "PushConst", "LoadName",       "StoreName",    "Pop",       "Add",      "Subtract", "Multiply",
        "Divide",    "Modulo",         "Negate",       "Not",       "Equal",    "NotEqual", "Less",
        "LessEqual", "Greater",        "GreaterEqual", "And",       "Or",       "Jump",     "JumpIfFalse",
        "Call",      "DefineFunction", "Return",       "MakeArray", "GetIndex", "SetIndex"};
    ASSERT_EQ(27u, internal::kOpcodes.size());
    ASSERT_EQ(27u, names.size());
    for (std::size_t number = 0; number < names.size(); ++number) {
        const auto* info = internal::opcodeInfo(static_cast<OpCode>(number));
        ASSERT_NE(nullptr, info);
        EXPECT_EQ(names[number], info->name);
    }
    EXPECT_EQ(13, static_cast<int>(OpCode::Less));
    EXPECT_EQ(26, static_cast<int>(OpCode::SetIndex));
}

TEST(Opcodes, NumbersWithoutAnOpcode) {
    EXPECT_EQ(nullptr, internal::opcodeInfo(static_cast<OpCode>(27)));
    EXPECT_EQ(nullptr, internal::opcodeInfo(static_cast<OpCode>(255)));
    EXPECT_EQ(nullptr, internal::opcodeInfo(static_cast<OpCode>(0xffffffff)));
}

TEST(Opcodes, Classes) {
    using internal::OpcodeClass;
    EXPECT_EQ(OpcodeClass::Arithmetic, internal::classOf(OpCode::Modulo));
    EXPECT_EQ(OpcodeClass::Unary, internal::classOf(OpCode::Negate));
    EXPECT_EQ(OpcodeClass::SetElement, internal::classOf(OpCode::SetIndex));
    EXPECT_EQ(OpcodeClass::Unknown, internal::classOf(static_cast<OpCode>(internal::kOpcodes.size())));
    EXPECT_EQ(OpcodeClass::Unknown, internal::classOf(static_cast<OpCode>(0xffffffff)));
}

TEST(Opcodes, ClassesAgreeWithTheEffectsOnTheStack) {
    for (std::size_t number = 0; number < internal::kOpcodes.size(); ++number) {
        const auto op = static_cast<OpCode>(number);
        const internal::OpcodeInfo& info = internal::kOpcodes[number];
        SCOPED_TRACE(info.name);
        EXPECT_NE(internal::OpcodeClass::Unknown, internal::classOf(op));
        EXPECT_EQ(info.operand == internal::OperandKind::JumpTarget, internal::isJump(op));
        if (internal::isBinary(op)) {
            EXPECT_EQ(2, info.pops);
            EXPECT_EQ(1, info.pushes);
        }
        if (internal::classOf(op) == internal::OpcodeClass::Unary) {
            EXPECT_EQ(1, info.pops);
            EXPECT_EQ(1, info.pushes);
        }
    }
}

TEST(Opcodes, WhereControlGoesOn) {
    EXPECT_FALSE(internal::fallsThrough(OpCode::Jump));
    EXPECT_FALSE(internal::fallsThrough(OpCode::Return));
    EXPECT_TRUE(internal::fallsThrough(OpCode::JumpIfFalse));
    EXPECT_TRUE(internal::endsBlock(OpCode::JumpIfFalse));
    EXPECT_TRUE(internal::endsBlock(OpCode::Return));
    EXPECT_FALSE(internal::endsBlock(OpCode::Call));
}

TEST(Operators, EveryBinaryOpcodeIsWritten) {
    for (std::size_t number = 0; number < internal::kOpcodes.size(); ++number) {
        const auto op = static_cast<OpCode>(number);
        const bool isWritten = std::any_of(internal::kOperators.begin(), internal::kOperators.end(),
                                           [op](const internal::OperatorInfo& row) { return row.op == op; });
        EXPECT_EQ(internal::isBinary(op), isWritten) << internal::kOpcodes[number].name;
    }
}

TEST(Operators, TheLexerReadsTheSpellings) {
    for (const internal::OperatorInfo& row : internal::kOperators) {
        const std::string source = "1 " + std::string(row.spelling) + " 2";
        const Program program = internal::compileSource(source, "t");
        ASSERT_LT(2u, program.functions[0].code.size()) << row.spelling;
        EXPECT_EQ(row.op, program.functions[0].code[2].op) << row.spelling;
    }
}

TEST(Program, StartsUnnamedAndEmpty) {
    const Program program;
    EXPECT_EQ("<string>", program.name);
    EXPECT_TRUE(program.constants.empty());
    EXPECT_TRUE(program.functions.empty());
}

TEST(Program, AFreshFunctionIsEmpty) {
    const CompiledFunction fresh;
    EXPECT_EQ("", fresh.name);
    EXPECT_TRUE(fresh.params.empty());
    EXPECT_TRUE(fresh.code.empty());
    EXPECT_TRUE(fresh.localNames.empty());
    EXPECT_EQ(internal::FastKind::None, fresh.fastKind);
    EXPECT_TRUE(fresh.fastNodes.empty());
    EXPECT_EQ(-1, fresh.fastRoot);
    EXPECT_EQ(-1, fresh.fastGuardRoot);
    EXPECT_TRUE(fresh.fastErrorMessage.isNil());
}

TEST(Program, CompilingLeavesTheDerivedFieldsFresh) {
    const Program program = internal::compileSource("def f(a) b = a return b end", "t");
    ASSERT_EQ(2u, program.functions.size());
    EXPECT_TRUE(program.functions[1].localNames.empty());
    EXPECT_EQ(internal::FastKind::None, program.functions[1].fastKind);
}

TEST(Program, StringConstantPointers) {
    const Program program = makeProgram({"name", 5, ""}, {});
    ASSERT_NE(nullptr, internal::getStringConstantPtr(program, 0));
    EXPECT_EQ("name", *internal::getStringConstantPtr(program, 0));
    ASSERT_NE(nullptr, internal::getStringConstantPtr(program, 2));
    EXPECT_EQ("", *internal::getStringConstantPtr(program, 2));
    EXPECT_EQ(nullptr, internal::getStringConstantPtr(program, 1));
    EXPECT_EQ(nullptr, internal::getStringConstantPtr(program, -1));
    EXPECT_EQ(nullptr, internal::getStringConstantPtr(program, 3));
    EXPECT_EQ(nullptr, internal::getStringConstantPtr(program, std::numeric_limits<std::int32_t>::max()));
    EXPECT_EQ(nullptr, internal::getStringConstantPtr(program, std::numeric_limits<std::int32_t>::min()));
}

TEST(Program, OperandsThatDoNotFit) {
    EXPECT_EQ(0, internal::toOperand(0));
    EXPECT_EQ(2147483647, internal::toOperand(2147483647));
    for (const std::size_t number : {std::size_t{2147483648u}, std::numeric_limits<std::size_t>::max()}) {
        EXPECT_EQ("bytecode image is too large", errorOf([&] { (void)internal::toOperand(number); })) << number;
    }
}

TEST(Diagnostics, FormatAndFail) {
    EXPECT_EQ("<repl>:1:5: expected expression", internal::formatError("<repl>", 1, 5, "expected expression"));
    EXPECT_EQ(":4294967295:0: ", internal::formatError("", 4294967295U, 0, ""));
    EXPECT_EQ("t:1:4294967297: text", internal::formatError("t", 1, 4294967297, "text"));
    EXPECT_EQ("a message", errorOf([] { internal::fail("a message"); }));
}

}  // namespace
}  // namespace morvel::ruby::tests
