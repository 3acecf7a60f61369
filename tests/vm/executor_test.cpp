// The effect of every instruction, tested with hand-made images, some of which the compiler never produces. Both
// executors must agree.
#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "morvel/ruby/error.h"
#include "support/assembler.h"
#include "support/describe.h"
#include "support/runs.h"
#include "vm/impl.h"

namespace morvel::ruby::tests {
namespace {

using internal::CompiledFunction;
using internal::Instruction;
using internal::OpCode;

using Code = std::vector<Instruction>;

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

Code operator+(Code left, const Code& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// Code that pushes the constants 0, 1, ... `count` - 1.
Code pushes(std::int32_t count) {
    Code code;
    for (std::int32_t i = 0; i < count; ++i) {
        code.push_back(op(OpCode::PushConst, i));
    }
    return code;
}

const Code kReturn{op(OpCode::Return)};

TEST(Executor, NoCodeGivesNil) { expectValue("nil", assemble({1}, {})); }

TEST(Executor, TheEndGivesTheLastPoppedValue) {
    expectValue("nil", assemble({1}, {op(OpCode::PushConst, 0)}));
    expectValue("1", assemble({1, 2}, {op(OpCode::PushConst, 0), op(OpCode::Pop)}));
    expectValue("2", assemble({1, 2}, pushes(2) + Code{op(OpCode::Pop)}));
    expectValue("1", assemble({1, 2}, pushes(2) + Code{op(OpCode::Pop), op(OpCode::Pop)}));
    expectValue("1", assemble({1, 2}, {op(OpCode::PushConst, 0), op(OpCode::Pop), op(OpCode::PushConst, 1)}));
}

TEST(Executor, ReturnGivesTheTopAndDropsTheRest) {
    expectValue("3", assemble({1, 2, 3}, pushes(3) + kReturn));
    expectValue("nil", assemble({1}, kReturn));
    // Not the last popped value.
    expectValue("nil", assemble({1}, {op(OpCode::PushConst, 0), op(OpCode::Pop), op(OpCode::Return)}));
    expectValue("1", assemble({1, 2}, pushes(1) + kReturn + Code{op(OpCode::PushConst, 1), op(OpCode::Return)}));
}

TEST(Executor, PushConst) {
    expectValue("nil", assemble({nullptr}, pushes(1) + kReturn));
    expectValue("-5", assemble({-5}, pushes(1) + kReturn));
    expectValue("2.0", assemble({2.0}, pushes(1) + kReturn));
    expectValue("false", assemble({false}, pushes(1) + kReturn));
    expectValue("\"x\"", assemble({"x"}, pushes(1) + kReturn));
    for (const std::int32_t index : {-1, 1, kLowest, kHighest}) {
        expectError("hand:2: constant index is out of range",
                    assemble({7}, pushes(1) + Code{op(OpCode::PushConst, index)}));
    }
    expectError("hand:1: constant index is out of range", assemble({}, pushes(1)));
}

TEST(Executor, ConstantsStayUnchanged) {
    // s[0] = "x" changes a copy of the constant.
    expectScriptValue("[\"xbc\", \"abc\", \"xbc\", \"abc\"]",
                      "def f() s = 'abc' t = s s[0] = 'x' return [s, t] end return f() + f()");
}

TEST(Executor, TheContainerStoredByAnIndexedAssignmentMayBeTested) {
    // x = [1], then x[0] = 2 with the stored array left on the stack for the jump.
    const RubyBytecode image = assemble(
        {"f", "x", 0, 1, 2},
        {op(OpCode::DefineFunction, 0, 1), op(OpCode::LoadName, 0), op(OpCode::Call, 0), kReturn[0]},
        {function("f", {},
                  {op(OpCode::PushConst, 3), op(OpCode::MakeArray, 1), op(OpCode::StoreName, 1), op(OpCode::Pop),
                   op(OpCode::LoadName, 1), op(OpCode::PushConst, 2), op(OpCode::PushConst, 4), op(OpCode::SetIndex),
                   op(OpCode::StoreName, 1), op(OpCode::JumpIfFalse, 10), op(OpCode::LoadName, 1), kReturn[0]})});
    expectValue("[2]", image);
}

// SetIndex makes a new string; only the assignment that follows changes the variable.
TEST(Executor, AStringThatIsNotStoredBackLeavesTheVariableAlone) {
    const Code work{op(OpCode::PushConst, 2), op(OpCode::StoreName, 1),
                    op(OpCode::Pop),          op(OpCode::LoadName, 1),
                    op(OpCode::PushConst, 3), op(OpCode::PushConst, 4),
                    op(OpCode::SetIndex),     op(OpCode::LoadName, 1),
                    op(OpCode::MakeArray, 2), kReturn[0]};
    const std::vector<RubyValue> constants{"f", "x", "abc", 0, "z"};
    constexpr const char* kExpected = "[\"zbc\", \"abc\"]";
    expectValue(kExpected, assemble(constants, work));
    expectValue(kExpected,
                assemble(constants,
                         {op(OpCode::DefineFunction, 0, 1), op(OpCode::LoadName, 0), op(OpCode::Call, 0), kReturn[0]},
                         {function("f", {}, work)}));
}

TEST(Executor, PopsOfAnEmptyStack) {
    const std::vector<std::pair<OpCode, std::int32_t>> pops{
        {OpCode::Pop, 1},         {OpCode::Add, 2},          {OpCode::Subtract, 2}, {OpCode::Multiply, 2},
        {OpCode::Divide, 2},      {OpCode::Modulo, 2},       {OpCode::Negate, 1},   {OpCode::Not, 1},
        {OpCode::Equal, 2},       {OpCode::NotEqual, 2},     {OpCode::Less, 2},     {OpCode::LessEqual, 2},
        {OpCode::Greater, 2},     {OpCode::GreaterEqual, 2}, {OpCode::And, 2},      {OpCode::Or, 2},
        {OpCode::JumpIfFalse, 1}, {OpCode::GetIndex, 2},     {OpCode::SetIndex, 3},
    };
    for (const auto& [opcode, needed] : pops) {
        for (std::int32_t there = 0; there < needed; ++there) {
            SCOPED_TRACE(internal::opcodeInfo(opcode)->name);
            expectError("hand:" + std::to_string(there + 1) + ": stack underflow",
                        assemble({nullptr, "a"}, pushes(there) + Code{op(opcode)}));
        }
    }
}

TEST(Executor, CodeThatIsNotReachedDoesNotMatter) {
    expectValue("1", assemble({1}, {op(OpCode::Jump, 4), op(OpCode::Pop), opNumber(99), op(OpCode::PushConst, 50),
                                    op(OpCode::PushConst, 0), op(OpCode::Return), op(OpCode::SetIndex),
                                    op(OpCode::Call, -1), op(OpCode::Jump, -7), op(OpCode::LoadName, 0)}));
}

TEST(Executor, OneBadFunctionDoesNotHarmTheOthers) {
    expectValue("3", assemble({"good", 3},
                              {op(OpCode::DefineFunction, 0, 2), op(OpCode::LoadName, 0), op(OpCode::Call, 0),
                               op(OpCode::Return)},
                              {function("bad", {}, {op(OpCode::Pop), opNumber(77)}),
                               function("good", {}, {op(OpCode::PushConst, 1), op(OpCode::Return)})}));
}

TEST(Executor, UnknownOpcodes) {
    for (const int number : {27, 28, 100, 128, 255}) {
        expectError("hand:2: unknown opcode",
                    assemble({1}, pushes(1) + Code{opNumber(static_cast<std::uint8_t>(number), 3, -4)}));
    }
    // The instructions before the error took effect.
    RubyVM vm;
    EXPECT_EQ(
        "hand:3: unknown opcode",
        vm.runBytecode(assemble({1, "x"}, {op(OpCode::PushConst, 0), op(OpCode::StoreName, 1), opNumber(27)})).error);
    RubyValue stored;
    ASSERT_TRUE(vm.getGlobal("x", stored));
    EXPECT_EQ("1", describe(stored));
}

TEST(Executor, LoadNameOfGlobals) {
    const Preparation setX = [](RubyVM& vm) { vm.setGlobal("x", 5); };
    expectValue("5", assemble({"x"}, {op(OpCode::LoadName, 0), op(OpCode::Return)}), setX);
    expectError("hand:1: undefined variable or function 'y'", assemble({"y"}, {op(OpCode::LoadName, 0)}), setX);
    expectError("hand:1: undefined variable or function ''", assemble({""}, {op(OpCode::LoadName, 0)}));
    expectError("hand:1: undefined variable or function 'a b'", assemble({"a b"}, {op(OpCode::LoadName, 0)}));
}

TEST(Executor, NamesThatAreNoConstants) {
    for (const std::int32_t index : {-1, 2, kLowest, kHighest}) {
        const std::string message = "hand:2: constant index is out of range";
        expectError(message, assemble({1, 2}, {op(OpCode::PushConst, 0), op(OpCode::LoadName, index)}));
        expectError(message, assemble({1, 2}, {op(OpCode::PushConst, 0), op(OpCode::StoreName, index)}));
        expectError(message, assemble({1, 2}, {op(OpCode::PushConst, 0), op(OpCode::DefineFunction, index)}));
    }
    for (const RubyValue& constant : {RubyValue(5), RubyValue(2.5), RubyValue(true), RubyValue()}) {
        const std::string message = "hand:2: constant is not a string";
        expectError(message, assemble({constant}, {op(OpCode::PushConst, 0), op(OpCode::LoadName, 0)}));
        expectError(message, assemble({constant}, {op(OpCode::PushConst, 0), op(OpCode::StoreName, 0)}));
        expectError(message, assemble({constant}, {op(OpCode::PushConst, 0), op(OpCode::DefineFunction, 0)}));
    }
}

/// An image that defines f(params) with this code as function 1, calls it with constants 0, 1, ... and returns the
/// result. Constant 9 is "f", constants 10 to 12 are "x", "y" and "z".
RubyBytecode callImage(const std::vector<std::string>& params, Code code) {
    const auto count = static_cast<std::int32_t>(params.size());
    return assemble({0, 1, 2, 3, 4, 5, 6, 7, 8, "f", "x", "y", "z"},
                    Code{op(OpCode::DefineFunction, 9, 1), op(OpCode::LoadName, 9)} + pushes(count) +
                        Code{op(OpCode::Call, count), op(OpCode::Return)},
                    {function("f", params, std::move(code))});
}

TEST(Executor, NamesThatAreNoConstantsInsideFunctions) {
    const Code popped{op(OpCode::Pop)};
    expectError("hand:1: constant is not a string", callImage({"x"}, Code{op(OpCode::LoadName, 0)} + popped));
    expectError("hand:2: constant is not a string",
                callImage({"x"}, {op(OpCode::PushConst, 0), op(OpCode::StoreName, 0)}));
    expectError("hand:1: constant index is out of range", callImage({"x"}, Code{op(OpCode::LoadName, 99)} + popped));
    expectError("hand:2: constant index is out of range",
                callImage({"x"}, {op(OpCode::PushConst, 0), op(OpCode::StoreName, -1)}));
}

TEST(Executor, StoreNameKeepsTheValueOnTheStack) {
    expectValue("7", assemble({7, "x"}, {op(OpCode::PushConst, 0), op(OpCode::StoreName, 1), op(OpCode::Return)}));
    expectValue("[7, 7]", assemble({7, "x"}, {op(OpCode::PushConst, 0), op(OpCode::StoreName, 1),
                                              op(OpCode::LoadName, 1), op(OpCode::MakeArray, 2), op(OpCode::Return)}));
    expectValue("[1, 2]", callImage({}, {op(OpCode::PushConst, 1), op(OpCode::StoreName, 10), op(OpCode::PushConst, 2),
                                         op(OpCode::StoreName, 11), op(OpCode::MakeArray, 2), op(OpCode::Return)}));
}

TEST(Executor, AValueOnTheStackIsNotTheVariable) {
    // Push x, then change x: the pushed value stays.
    expectValue("[1, 2]", callImage({}, {op(OpCode::PushConst, 1), op(OpCode::StoreName, 10), op(OpCode::Pop),
                                         op(OpCode::LoadName, 10), op(OpCode::PushConst, 2), op(OpCode::StoreName, 10),
                                         op(OpCode::Pop), op(OpCode::LoadName, 10), op(OpCode::MakeArray, 2),
                                         op(OpCode::Return)}));
    expectValue("[1, 2]", assemble({0, 1, 2, "x"}, {op(OpCode::PushConst, 1), op(OpCode::StoreName, 3), op(OpCode::Pop),
                                                    op(OpCode::LoadName, 3), op(OpCode::PushConst, 2),
                                                    op(OpCode::StoreName, 3), op(OpCode::Pop), op(OpCode::LoadName, 3),
                                                    op(OpCode::MakeArray, 2), op(OpCode::Return)}));
}

TEST(Executor, StoreNameNeedsAValueBeforeAName) {
    expectError("hand:1: assignment requires a value", assemble({"x"}, {op(OpCode::StoreName, 0)}));
    expectError("hand:1: assignment requires a value", assemble({}, {op(OpCode::StoreName, -1)}));
    expectError("hand:1: assignment requires a value", callImage({}, {op(OpCode::StoreName, 10)}));
}

TEST(Executor, LocalsShadowGlobalsOnceAssigned) {
    const Preparation setX = [](RubyVM& vm) { vm.setGlobal("x", "global"); };
    const Code code{op(OpCode::LoadName, 10), op(OpCode::PushConst, 5), op(OpCode::StoreName, 10), op(OpCode::Pop),
                    op(OpCode::LoadName, 10), op(OpCode::MakeArray, 2), op(OpCode::Return)};
    expectValue("[\"global\", 5]", callImage({}, code), setX);
    expectError("hand:1: undefined variable or function 'x'", callImage({}, code));
    expectValue("[0, 5]", callImage({"x"}, code), setX);
}

TEST(Executor, ALocalAssignedOnOnePathOnly) {
    // if y then x = 5 end return x
    const Code code{
        op(OpCode::LoadName, 11), op(OpCode::JumpIfFalse, 5), op(OpCode::PushConst, 5), op(OpCode::StoreName, 10),
        op(OpCode::Pop),          op(OpCode::LoadName, 10),   op(OpCode::Return)};
    for (const bool taken : {false, true}) {
        const Preparation prepare = [taken](RubyVM& vm) {
            vm.setGlobal("y", taken);
            vm.setGlobal("x", "global");
        };
        expectValue(taken ? "5" : "\"global\"", callImage({}, code), prepare);
        expectValue("0", callImage({"x"}, {op(OpCode::LoadName, 10), op(OpCode::Return)}), prepare);
    }
    expectError("hand:6: undefined variable or function 'x'", callImage({}, code),
                [](RubyVM& vm) { vm.setGlobal("y", false); });
}

TEST(Executor, EveryCallStartsWithUnassignedLocals) {
    expectScriptError("t:1: undefined variable or function 'x'",
                      "def f(first) if first then x = 1 end return x + 0 and true end f(true) f(false)");
}

TEST(Executor, ManyLocals) {
    for (const int count : {15, 16, 17, 40, 300}) {
        std::string body;
        std::string sum = "0";
        for (int i = 0; i < count; ++i) {
            const std::string name = "v" + std::to_string(i);
            body += name + " = " + std::to_string(i) + "\n";
            sum += " + " + name;
        }
        expectScriptValue(std::to_string(count * (count - 1) / 2),
                          "def f()\n" + body + "return " + sum + "\nend\nreturn f()");
        expectScriptError("t:2: undefined variable or function 'v3'",
                          "def f()\nv3\n" + body + "return " + sum + "\nend\nreturn f()");
    }
}

TEST(Executor, ManyParameters) {
    std::string params = "p0";
    std::string arguments = "0";
    for (int i = 1; i < 200; ++i) {
        params += ", p" + std::to_string(i);
        arguments += ", " + std::to_string(i);
    }
    expectScriptValue("[0, 150, 199]",
                      "def f(" + params + ") x = [p0, p150, p199] return x end return f(" + arguments + ")");
}

TEST(Executor, SurplusArgumentsOfDuplicateParameters) {
    // Argument i goes to local i if that exists.
    expectScriptValue("2", "def f(a, a, c) return c end return f(1, 2, 3)");
    expectScriptValue("1", "def f(a, a, c) return a end return f(1, 2, 3)");
    expectScriptValue("[1, 2]", "def f(a, a, c) b = 0 return [a, c] end return f(1, 2, 3)");
    expectScriptValue("1", "def f(a, a) if true then end return a end return f(1, 2)");
    expectScriptValue("1", "def f(a, a) return a end return f(1, 2)");
    // The third local starts with the third argument, though it is not a parameter.
    expectScriptValue("3", "def f(a, a, c) if false then x = 9 end return x end return f(1, 2, 3)");
    expectScriptError("t:0: function 'f' expected 3 arguments but received 2",
                      "def f(a, a, c) b = 0 return c end return f(1, 2)");
}

TEST(Executor, SurplusArgumentsAreReleased) {
    expectScriptValue("[[5]]", "def f(a, a, a) b = a return b end x = [5] f(1, x, x) return [x]");
    expectScriptValue("[[5]]", "def f(a, a, a) b = a return b end x = [5] pcall(f, 1, x, x) return [x]");
}

TEST(Executor, TheTopLevelAlwaysAssignsGlobals) {
    RubyVM vm;
    EXPECT_TRUE(vm.runBytecode(assemble({1, "x"}, {op(OpCode::PushConst, 0), op(OpCode::StoreName, 1)})).ok);
    RubyValue stored;
    EXPECT_TRUE(vm.getGlobal("x", stored));
}

TEST(Executor, TruthOfEveryKind) {
    const Preparation prepare = [](RubyVM& vm) {
        vm.setGlobal("array", RubyValue::makeArray());
        vm.setGlobal("map", RubyValue::makeMap());
    };
    for (const char* value : {"0", "0.0", "''", "true", "array", "map", "puts", "-1"}) {
        const std::string v = value;
        expectScriptValue(
            "[false, true, true, \"yes\"]",
            "r = 'no' if " + v + " then r = 'yes' end return [!" + v + ", " + v + " and true, false or " + v + ", r]",
            prepare);
    }
    for (const char* value : {"nil", "false"}) {
        const std::string v = value;
        expectScriptValue("[true, false, false, \"no\"]", "r = 'no' if " + v + " then r = 'yes' end return [!" + v +
                                                              ", " + v + " and true, false or " + v + ", r]");
    }
}

TEST(Executor, AndOrGiveBooleansOfBothOperands) {
    for (const auto& [left, right, both, either] :
         std::vector<std::tuple<RubyValue, RubyValue, std::string, std::string>>{{1, "x", "true", "true"},
                                                                                 {1, nullptr, "false", "true"},
                                                                                 {nullptr, 0, "false", "true"},
                                                                                 {false, nullptr, "false", "false"},
                                                                                 {nullptr, true, "false", "true"}}) {
        expectValue(both, assemble({left, right}, pushes(2) + Code{op(OpCode::And)} + kReturn));
        expectValue(either, assemble({left, right}, pushes(2) + Code{op(OpCode::Or)} + kReturn));
    }
    expectScriptValue("[false, true, 2]",
                      "def g() count() return true end\nreturn [false and g(), true or g(), calls[0]]", [](RubyVM& vm) {
                          RubyValue calls(RubyArray{0});
                          vm.setGlobal("calls", calls);
                          vm.bindFunction("count", [calls](RubyVM&, RubyArguments) mutable {
                              calls.asArray()[0] = calls.asArray()[0].asInteger() + 1;
                              return RubyValue();
                          });
                      });
}

TEST(Executor, Operators) {
    const auto result = [](const RubyValue& left, const RubyValue& right, OpCode opcode) {
        return assemble({left, right}, pushes(2) + Code{op(opcode)} + kReturn);
    };
    expectValue("5", result(2, 3, OpCode::Add));
    expectValue("\"23\"", result("2", 3, OpCode::Add));
    expectValue("-9223372036854775808", result(std::numeric_limits<std::int64_t>::max(), 1, OpCode::Add));
    expectValue("-1", result(2, 3, OpCode::Subtract));
    expectValue("6", result(2, 3, OpCode::Multiply));
    expectValue("3.5", result(7, 2, OpCode::Divide));
    expectValue("2.0", result(6, 3, OpCode::Divide));
    expectValue("-1", result(-7, 3, OpCode::Modulo));
    expectValue("1.5", result(7.5, 2, OpCode::Modulo));
    expectValue("true", result(1, 1.0, OpCode::Equal));
    expectValue("false", result(1, "1", OpCode::Equal));
    expectValue("false", result(1, 1.0, OpCode::NotEqual));
    expectValue("true", result("a", "b", OpCode::NotEqual));
    expectValue("true", result(1, 2, OpCode::Less));
    expectValue("true", result(2, 2, OpCode::LessEqual));
    expectValue("false", result("a", "b", OpCode::Greater));
    expectValue("true", result("b", "a", OpCode::GreaterEqual));
    expectValue("-5", assemble({5}, pushes(1) + Code{op(OpCode::Negate)} + kReturn));
    expectValue("-1.0", assemble({true}, pushes(1) + Code{op(OpCode::Negate)} + kReturn));
    expectValue("true", assemble({nullptr}, pushes(1) + Code{op(OpCode::Not)} + kReturn));
}

TEST(Executor, OperatorErrorsAreLocated) {
    const auto result = [](const RubyValue& left, const RubyValue& right, OpCode opcode) {
        return assemble({left, right}, pushes(2) + Code{op(opcode)} + kReturn);
    };
    expectError("hand:3: operator '+' expects numbers, strings, or arrays", result(nullptr, 1, OpCode::Add));
    expectError("hand:3: operator '-' expects numeric values", result("a", 1, OpCode::Subtract));
    expectError("hand:3: operator '*' expects numeric values", result(1, "a", OpCode::Multiply));
    expectError("hand:3: operator '/' expects numeric values", result("a", 0, OpCode::Divide));
    expectError("hand:3: operator '%' expects numeric values", result("a", 0, OpCode::Modulo));
    expectError("hand:3: division by zero", result(1, 0, OpCode::Divide));
    expectError("hand:3: division by zero", result(1, 1e-17, OpCode::Divide));
    expectError("hand:3: modulo by zero", result(1, 0, OpCode::Modulo));
    expectError("hand:3: modulo by zero", result(1.5, 1e-20, OpCode::Modulo));
    for (const OpCode opcode : {OpCode::Less, OpCode::LessEqual, OpCode::Greater, OpCode::GreaterEqual}) {
        expectError("hand:3: ordered comparisons require matching numeric or string values", result(1, "2", opcode));
        expectError("hand:3: ordered comparisons require matching numeric or string values",
                    result(nullptr, nullptr, opcode));
    }
    expectError("hand:2: unary '-' expects a numeric value",
                assemble({"a"}, pushes(1) + Code{op(OpCode::Negate)} + kReturn));
}

TEST(Executor, AnEmptyProgramNameIsAnEmptyPrefix) {
    internal::Program program = makeProgram({}, {op(OpCode::Pop)});
    program.name = "";
    expectError(":1: stack underflow", internal::serializeProgram(program));
}

TEST(Executor, LinesAreUnsigned) {
    internal::Program program = makeProgram({}, {op(OpCode::Pop)});
    program.functions[0].code[0].line = 4294967295U;
    expectError("hand:4294967295: stack underflow", internal::serializeProgram(program));
}

// A value that was read from a variable survives when the variable is then consumed and written again.
TEST(Executor, ReadsTakeTheValueOfTheirTime) {
    const Code before{op(OpCode::LoadName, 0), op(OpCode::LoadName, 0)};
    const Code after{op(OpCode::StoreName, 0), op(OpCode::MakeArray, 2), op(OpCode::Return)};
    const std::vector<std::tuple<const char*, RubyValue, OpCode>> uses{
        {"[\"q\", false]", "a", OpCode::Equal}, {"[\"q\", true]", "a", OpCode::NotEqual},
        {"[\"q\", \"qa\"]", "a", OpCode::Add},  {"[\"q\", \"q\"]", 0, OpCode::GetIndex},
        {"[\"q\", false]", "a", OpCode::Less},
    };
    for (const auto& [expected, operand, use] : uses) {
        expectValue(expected,
                    assemble({"x", operand, "f", "q"},
                             {op(OpCode::DefineFunction, 2, 1), op(OpCode::LoadName, 2), op(OpCode::PushConst, 3),
                              op(OpCode::Call, 1), op(OpCode::Return)},
                             {function("f", {"x"}, before + Code{op(OpCode::PushConst, 1), op(use)} + after)}));
    }
}

// Too many branches and variables for the definite-assignment analysis to be worth its cost.
TEST(Executor, ABranchAmongThousandsDefinesNothingForTheOthers) {
    constexpr int kBranches = 8'000;
    std::string branches;
    for (int i = 0; i < kBranches; ++i) {
        branches += "if never then v" + std::to_string(i) + " = 1 end\n";
    }
    const std::string last = "v" + std::to_string(kBranches - 1);
    for (const std::string& name : {std::string("v0"), last}) {
        expectScriptError("t:8002: undefined variable or function '" + name + "'",
                          "never = nil\n" + branches + "x = " + name);
        expectScriptError("t:8003: undefined variable or function '" + name + "'",
                          "never = nil\ndef f()\n" + branches + "return " + name + "\nend\nf()");
    }
    expectScriptValue("2", "never = 1\n" + branches + "return v0 + " + last);
    expectScriptValue("2", "never = 1\ndef f()\n" + branches + "return v0 + " + last + "\nend\nreturn f()");
}

TEST(Executor, Jumps) {
    expectValue("2", assemble({1, 2}, {op(OpCode::Jump, 3), op(OpCode::PushConst, 0), op(OpCode::Return),
                                       op(OpCode::PushConst, 1), op(OpCode::Return)}));
    // Jumps exactly to the end.
    expectValue("1", assemble({1, 2}, {op(OpCode::PushConst, 0), op(OpCode::Pop), op(OpCode::Jump, 5),
                                       op(OpCode::PushConst, 1), op(OpCode::Pop)}));
    for (const std::int32_t target : {-1, 3, kLowest, kHighest}) {
        expectError("hand:2: jump target is out of range", assemble({1}, pushes(1) + Code{op(OpCode::Jump, target)}));
    }
}

TEST(Executor, ConditionalJumps) {
    for (const auto& [condition, jumps] : std::vector<std::pair<RubyValue, bool>>{
             {nullptr, true}, {false, true}, {true, false}, {0, false}, {"", false}, {0.0, false}}) {
        expectValue(
            jumps ? "2" : "1",
            assemble({condition, 1, 2}, {op(OpCode::PushConst, 0), op(OpCode::JumpIfFalse, 4), op(OpCode::PushConst, 1),
                                         op(OpCode::Return), op(OpCode::PushConst, 2), op(OpCode::Return)}));
        // Jumps to the end: the condition was popped, but not as the last value.
        expectValue("nil", assemble({condition}, {op(OpCode::PushConst, 0), op(OpCode::JumpIfFalse, 2)}));
    }
    for (const std::int32_t target : {-1, 4, kLowest, kHighest}) {
        const auto image = [target](const RubyValue& condition) {
            return assemble({condition, 1},
                            {op(OpCode::PushConst, 0), op(OpCode::JumpIfFalse, target), op(OpCode::PushConst, 1)});
        };
        expectError("hand:2: conditional jump target is out of range", image(nullptr));
        expectError("hand:2: conditional jump target is out of range", image(false));
        // The target of a jump that is not taken is not checked.
        expectValue("nil", image(true));
    }
}

TEST(Executor, AConditionalJumpNeedsACondition) {
    expectError("hand:1: stack underflow", assemble({}, {op(OpCode::JumpIfFalse, -1)}));
}

TEST(Executor, BackwardJumps) {
    // x = 3, then while x: count down, until x is nil.
    expectValue("[1, 2, 3]",
                assemble({"list", 4, "i", 1, "array_push", 0},
                         {op(OpCode::MakeArray, 0),    op(OpCode::StoreName, 0), op(OpCode::Pop),   // list = []
                          op(OpCode::PushConst, 3),    op(OpCode::StoreName, 2), op(OpCode::Pop),   // i = 1
                          op(OpCode::LoadName, 2),     op(OpCode::PushConst, 1), op(OpCode::Less),  // while i < 4
                          op(OpCode::JumpIfFalse, 21),                                              //
                          op(OpCode::LoadName, 4),     op(OpCode::LoadName, 0),  op(OpCode::LoadName, 2),  //
                          op(OpCode::Call, 2),         op(OpCode::Pop),                                    // push
                          op(OpCode::LoadName, 2),     op(OpCode::PushConst, 3), op(OpCode::Add),          //
                          op(OpCode::StoreName, 2),    op(OpCode::Pop),          op(OpCode::Jump, 6),      // i = i + 1
                          op(OpCode::LoadName, 0),     op(OpCode::Return)}));
}

TEST(Executor, TheStackMayGrowInALoop) {
    // Pushes 3, 2, 1 in a loop that pops nothing, then makes an array of the three.
    const Code code{op(OpCode::LoadName, 0),  op(OpCode::LoadName, 0),    op(OpCode::PushConst, 1),
                    op(OpCode::Subtract),     op(OpCode::StoreName, 0),   op(OpCode::PushConst, 2),
                    op(OpCode::Greater),      op(OpCode::JumpIfFalse, 9), op(OpCode::Jump, 0),
                    op(OpCode::MakeArray, 3), op(OpCode::Return)};
    expectValue("[3, 2, 1]", assemble({"n", 1, 0}, code), [](RubyVM& vm) { vm.setGlobal("n", 3); });
}

TEST(Executor, PathsMayMeetWithDifferentStacks) {
    // If x is true, the stack holds 1 and 2 where the branches meet, otherwise only 1.
    const Code code{op(OpCode::PushConst, 1), op(OpCode::LoadName, 0), op(OpCode::JumpIfFalse, 4),
                    op(OpCode::PushConst, 2), op(OpCode::Add),         op(OpCode::Return)};
    for (const bool taken : {true, false}) {
        const Preparation prepare = [taken](RubyVM& vm) { vm.setGlobal("x", taken); };
        if (taken) {
            expectValue("3", assemble({"x", 1, 2}, code), prepare);
        } else {
            expectError("hand:5: stack underflow", assemble({"x", 1, 2}, code), prepare);
        }
    }
}

TEST(Executor, MakeArray) {
    expectValue("[]", assemble({}, {op(OpCode::MakeArray, 0), op(OpCode::Return)}));
    expectValue("[1, \"b\", 3]", assemble({1, "b", 3}, pushes(3) + Code{op(OpCode::MakeArray, 3)} + kReturn));
    expectValue("3", assemble({1, 2, 3, "len"}, Code{op(OpCode::LoadName, 3)} + pushes(3) +
                                                    Code{op(OpCode::MakeArray, 3), op(OpCode::Call, 1)} + kReturn));
    expectValue("1", assemble({1, 2, 3}, pushes(3) + Code{op(OpCode::MakeArray, 2), op(OpCode::Pop)} + kReturn));
    for (const std::int32_t count : {-1, kLowest}) {
        expectError("hand:2: array element count is invalid",
                    assemble({1}, pushes(1) + Code{op(OpCode::MakeArray, count)}));
    }
    for (const std::int32_t count : {3, kHighest}) {
        expectError("hand:3: array literal is missing values",
                    assemble({1, 2}, pushes(2) + Code{op(OpCode::MakeArray, count)}));
    }
    expectError("hand:1: array literal is missing values", assemble({}, {op(OpCode::MakeArray, 1)}));
}

TEST(Executor, MakeArrayMakesANewArrayEachTime) {
    expectScriptValue("[[1], []]", "def f() x = [] return x end a = f() array_push(a, 1) return [a, f()]");
}

TEST(Executor, CallCounts) {
    for (const std::int32_t count : {-1, kLowest}) {
        expectError("hand:2: argument count is invalid",
                    assemble({"len"}, {op(OpCode::LoadName, 0), op(OpCode::Call, count)}));
        expectError("hand:1: argument count is invalid", assemble({}, {op(OpCode::Call, count)}));
    }
    for (const std::int32_t count : {1, 2, kHighest}) {
        expectError("hand:2: call stack is incomplete",
                    assemble({"len"}, {op(OpCode::LoadName, 0), op(OpCode::Call, count)}));
    }
    expectError("hand:1: call stack is incomplete", assemble({}, {op(OpCode::Call, 0)}));
}

TEST(Executor, CallsTakeTheirValuesOffTheStack) {
    // 1 len([2, 3]) 4
    expectValue("[1, 2, 4]", assemble({1, 2, 3, 4, "len"},
                                      {op(OpCode::PushConst, 0), op(OpCode::LoadName, 4), op(OpCode::PushConst, 1),
                                       op(OpCode::PushConst, 2), op(OpCode::MakeArray, 2), op(OpCode::Call, 1),
                                       op(OpCode::PushConst, 3), op(OpCode::MakeArray, 3), op(OpCode::Return)}));
}

TEST(Executor, CallsOfWhatIsNoFunction) {
    for (const RubyValue& callee : {RubyValue(), RubyValue(5), RubyValue("puts"), RubyValue(2.5), RubyValue(true)}) {
        expectError("hand:2: attempted to call a non-function value",
                    assemble({callee}, {op(OpCode::PushConst, 0), op(OpCode::Call, 0)}));
        expectError("hand:3: attempted to call a non-function value",
                    assemble({callee, 1}, {op(OpCode::PushConst, 0), op(OpCode::PushConst, 1), op(OpCode::Call, 1)}));
    }
}

TEST(Executor, ArgumentsArriveInSourceOrder) {
    expectValue("[0, 1, 2]",
                callImage({"x", "y", "z"}, {op(OpCode::LoadName, 10), op(OpCode::LoadName, 11),
                                            op(OpCode::LoadName, 12), op(OpCode::MakeArray, 3), op(OpCode::Return)}));
}

TEST(Executor, ArityIsReportedAtLine0OfTheCalleesProgram) {
    const CompiledFunction two = function("two", {"a", "b"}, {op(OpCode::PushConst, 0), op(OpCode::Pop)});
    for (const std::int32_t count : {0, 1, 3}) {
        expectError("hand:0: function 'two' expected 2 arguments but received " + std::to_string(count),
                    assemble({1, 2, 3, "g"},
                             Code{op(OpCode::DefineFunction, 3, 1), op(OpCode::LoadName, 3)} + pushes(count) +
                                 Code{op(OpCode::Call, count)},
                             {two}));
    }
    expectError("hand:0: function 'e' expected 1 arguments but received 0",
                assemble({"e"}, {op(OpCode::DefineFunction, 0, 1), op(OpCode::LoadName, 0), op(OpCode::Call, 0)},
                         {function("e", {"a"}, {})}));
}

TEST(Executor, ATopLevelWithParametersLacksItsArguments) {
    internal::Program program = makeProgram({}, {});
    program.functions[0].params = {"a", "b"};
    expectError("hand:0: function '<main>' expected 2 arguments but received 0", internal::serializeProgram(program));
    program.functions[0].name = "odd";
    expectError("hand:0: function 'odd' expected 2 arguments but received 0", internal::serializeProgram(program));
}

TEST(Executor, DefineFunctionBindsAGlobalAndPushesNothing) {
    expectValue("function f",
                assemble({"f"}, {op(OpCode::DefineFunction, 0, 1), op(OpCode::LoadName, 0), op(OpCode::Return)},
                         {function("other name", {}, {})}));
    expectValue("nil",
                assemble({"f"}, {op(OpCode::DefineFunction, 0, 1), op(OpCode::Return)}, {function("f", {}, {})}));
    // Inside a function too.
    expectValue("function x",
                callImage({}, {op(OpCode::DefineFunction, 10, 1), op(OpCode::LoadName, 10), op(OpCode::Return)}));
}

TEST(Executor, DefineFunctionTakesAnyIndex) {
    for (const std::int32_t index : {-1, 1, kLowest, kHighest}) {
        const std::vector<RubyValue> constants{"f", "pcall"};
        expectValue("function f", assemble(constants, {op(OpCode::DefineFunction, 0, index), op(OpCode::LoadName, 0),
                                                       op(OpCode::Return)}));
        expectError(
            "hand:3: function index is out of range",
            assemble(constants, {op(OpCode::DefineFunction, 0, index), op(OpCode::LoadName, 0), op(OpCode::Call, 0)}));
        expectValue("[true, false, \"hand:4: function index is out of range\"]",
                    assemble(constants, {op(OpCode::DefineFunction, 0, index), op(OpCode::LoadName, 1),
                                         op(OpCode::LoadName, 0), op(OpCode::Call, 1), op(OpCode::Return)}));
    }
}

TEST(Executor, TheTopLevelCanBeAFunctionToo) {
    // n = n + 1; if n < 3 then main() end; n
    expectValue("3",
                assemble({"main", "n", 1, 3},
                         {op(OpCode::DefineFunction, 0, 0), op(OpCode::LoadName, 1), op(OpCode::PushConst, 2),
                          op(OpCode::Add), op(OpCode::StoreName, 1), op(OpCode::PushConst, 3), op(OpCode::Less),
                          op(OpCode::JumpIfFalse, 11), op(OpCode::LoadName, 0), op(OpCode::Call, 0), op(OpCode::Pop),
                          op(OpCode::LoadName, 1), op(OpCode::Return)}),
                [](RubyVM& vm) { vm.setGlobal("n", 0); });
}

TEST(Executor, UnusedOperandsDoNotMatter) {
    expectValue("3", assemble({1, 2}, {op(OpCode::PushConst, 0, 77), op(OpCode::PushConst, 1, -1),
                                       op(OpCode::Add, -5, 9), op(OpCode::Return, kHighest, kLowest)}));
}

TEST(ExecuteFunction, ChecksItsProgramAndIndex) {
    RubyVM vm;
    auto& impl = RubyVM::Impl::of(vm);
    EXPECT_EQ("script function program is missing",
              errorOf([&] { (void)impl.executeFunction(nullptr, 0, nullptr, 0); }));
    const auto program = std::make_shared<internal::Program>(makeProgram({}, {}));
    for (const std::int32_t index : {-1, 1, kHighest}) {
        EXPECT_EQ("hand:0: function index is out of range",
                  errorOf([&] { (void)impl.executeFunction(program, index, nullptr, 0); }));
    }
    EXPECT_EQ("nil", describe(impl.executeFunction(program, 0, nullptr, 0)));
}

}  // namespace
}  // namespace morvel::ruby::tests
