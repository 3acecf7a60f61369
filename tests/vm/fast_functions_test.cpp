// Functions with a fast form: their observable behaviour, and the evaluator itself.
#include <gtest/gtest.h>

#include "compiler/metadata.h"
#include "morvel/ruby/error.h"
#include "support/assembler.h"
#include "support/describe.h"
#include "support/runs.h"
#include "vm/calling.h"
#include "vm/errors.h"
#include "vm/impl.h"

namespace morvel::ruby::tests {
namespace {

using internal::CompiledFunction;
using internal::FastNode;
using internal::Instruction;
using internal::OpCode;
using internal::Program;

TEST(FastFunctions, GiveTheValueOfTheirExpression) {
    expectScriptValue("[3, \"ab\", 6, 3.5, 1]",
                      "def a(x, y) return x + y end def m(x, y) return x * y end\n"
                      "def d(x, y) return x / y end def r(x, y) return x % y end\n"
                      "return [a(1, 2), a('a', 'b'), m(2, 3), d(7, 2), r(7, 3)]");
    expectScriptValue("[true, false, true, false, true, true]",
                      "def e(x, y) return x == y end def n(x, y) return x != y end\n"
                      "def l(x, y) return x < y end def g(x, y) return x > y end\n"
                      "def le(x, y) return x <= y end def ge(x, y) return x >= y end\n"
                      "return [e(1, 1.0), n(1, 1), l(1, 2), g(1, 2), le(2, 2), ge(2, 2)]");
    expectScriptValue("[-5, [1, [2, \"c\"]], nil, 7]",
                      "def n(x) return -x end def a(x) return [1, [x, 'c']] end\n"
                      "def nothing() return end def c() return 7 end\n"
                      "return [n(5), a(2), nothing(), c()]");
}

TEST(FastFunctions, NotIsTrueForNilAndFalseOnly) {
    expectScriptValue("[true, true, false, false, false, false]",
                      "def f(x) return !x end return [f(nil), f(false), f(true), f(0), f(''), f([])]");
}

TEST(FastFunctions, ANewArrayForEveryCall) {
    expectScriptValue("[[1], []]", "def f() return [] end a = f() array_push(a, 1) return [a, f()]");
}

TEST(FastFunctions, WrongArgumentCountsFailAtLine0) {
    for (const char* body : {"return a + b", "if a then error('m') end return b"}) {
        const std::string def = std::string("def f(a, b) ") + body + " end\n\n";
        expectScriptError("t:0: function 'f' expected 2 arguments but received 1", def + "f(1)");
        expectScriptError("t:0: function 'f' expected 2 arguments but received 3", def + "f(1, 2, 3)");
        expectScriptError("t:0: function 'f' expected 2 arguments but received 0", def + "f()");
    }
}

TEST(FastFunctions, GlobalsAreLookedUpAtEachCall) {
    expectScriptError("t:2: undefined variable or function 'limit'", "def f()\nreturn limit * 2\nend\nf()");
    expectScriptValue("[[true, false, \"t:1: undefined variable or function 'limit'\"], 10, 14]",
                      "def f() return limit * 2 end\n"
                      "a = pcall(f)\nlimit = 5\nb = f()\nlimit = 7\nreturn [a, b, f()]");
}

TEST(FastFunctions, OperandsAreEvaluatedFromLeftToRight) {
    expectScriptError("t:1: undefined variable or function 'left'", "def f() return left + right end f()");
    expectScriptError("t:1: undefined variable or function 'right'", "def f() return (1 + 2) * right end f()");
    expectScriptError("t:1: division by zero", "def f() return 1 / 0 + right end f()");
    // Both operands are evaluated before the operator is applied.
    expectScriptError("t:1: undefined variable or function 'right'", "def f() return nil + right end f()");
    expectScriptError("t:1: undefined variable or function 'second'", "def f() return [1, second, third] end f()");
}

TEST(FastFunctions, OperatorErrorsCarryTheirLine) {
    expectScriptError("t:3: division by zero", "\ndef f(x)\nreturn 1 / x end\nf(0)");
    expectScriptError("t:2: operator '-' expects numeric values", "\ndef f(x) return x - 1 end f('a')");
    expectScriptError("t:2: ordered comparisons require matching numeric or string values",
                      "\ndef f(x) return x <= 1 end f('a')");
    expectScriptError("t:2: unary '-' expects a numeric value", "\ndef f(x) return -x end f('a')");
}

const std::string kHalf = "def half(x)\nif x < 0 then error('negative') end\nreturn x / 2\nend\n";

TEST(GuardedFunctions, RaiseTheStoredMessageWithoutALocation) {
    expectScriptValue("2.5", kHalf + "return half(5)");
    expectScriptError("negative", kHalf + "half(-1)");
    expectScriptError("", "def f(x) if x then error('') end return x end f(1)");
}

TEST(GuardedFunctions, TheGuardHoldsForEverythingButNilAndFalse) {
    const std::string f = "def f(x) if x then error('held') end return 'free' end\n";
    for (const char* value : {"true", "0", "''", "[]", "0.0", "puts"}) {
        expectScriptError("held", f + "f(" + value + ")");
    }
    for (const char* value : {"nil", "false"}) {
        expectScriptValue("\"free\"", f + "return f(" + std::string(value) + ")");
    }
}

TEST(GuardedFunctions, CallWhateverErrorIsAtThatMoment) {
    const Preparation returning = [](RubyVM& vm) {
        vm.setGlobal("seen", RubyValue::makeArray());
        vm.setGlobal("error", nullptr);
        (void)vm.runScriptString("def error(message) array_push(seen, message) return 'ignored' end", "own");
    };
    expectScriptValue("[-0.5, [\"negative\"]]", kHalf + "return [half(-1), seen]", returning);
    expectScriptError("t:0: attempted to call a non-function value", kHalf + "half(-1)",
                      [](RubyVM& vm) { vm.setGlobal("error", nullptr); });
    expectScriptValue("2.0", kHalf + "return half(4)", [](RubyVM& vm) { vm.setGlobal("error", nullptr); });
    expectScriptError("own:0: function 'error' expected 2 arguments but received 1", kHalf + "half(-1)",
                      [](RubyVM& vm) { (void)vm.runScriptString("def error(a, b) end", "own"); });
    expectScriptValue("[true, false, \"t:0: attempted to call a non-function value\"]",
                      kHalf + "def f() x = half(-1) end return pcall(f)", [](RubyVM& vm) { vm.setGlobal("error", 5); });
}

// The interpreter itself implements a host function that was bound as "error"; one bound under another name is called
// like any other.
TEST(GuardedFunctions, WithAHostFunctionAsError) {
    expectScriptError("negative", kHalf + "half(-1)", [](RubyVM& vm) {
        vm.bindFunction("error", [](RubyVM&, RubyArguments) { return RubyValue("never called"); });
    });
    expectScriptValue("-0.5", kHalf + "return half(-1)", [](RubyVM& vm) {
        vm.bindFunction("quiet", [](RubyVM&, RubyArguments) { return RubyValue(); });
        RubyValue quiet;
        ASSERT_TRUE(vm.getGlobal("quiet", quiet));
        vm.setGlobal("error", quiet);
    });
}

// The names in the guard's branch are not looked up again: a parameter named error is not called.
TEST(GuardedFunctions, AParameterNamedError) {
    expectScriptError("m", "def f(error) if error then error('m') end return error end f(5)");
    expectScriptValue("false", "def f(error) if error then error('m') end return error end return f(false)");
}

/// An image whose function 1 is `f` with this code. The top level calls it with constants 0, 1, ... Constants 9 and
/// 10 are "f" and "x".
RubyBytecode callImage(const std::vector<std::string>& params, std::vector<Instruction> code) {
    std::vector<Instruction> main{op(OpCode::DefineFunction, 9, 1), op(OpCode::LoadName, 9)};
    const auto count = static_cast<std::int32_t>(params.size());
    for (std::int32_t i = 0; i < count; ++i) {
        main.push_back(op(OpCode::PushConst, i));
    }
    main.push_back(op(OpCode::Call, count));
    main.push_back(op(OpCode::Return));
    return assemble({0, 1, 2, 3, 4, 5, 6, 7, 8, "f", "x"}, std::move(main), {function("f", params, std::move(code))});
}

TEST(FastFunctions, LeavesThatMeanNothing) {
    for (const std::int32_t index : {-1, 11, -2147483647}) {
        expectError("hand:1: constant index is out of range",
                    callImage({}, {op(OpCode::PushConst, index), op(OpCode::Return)}));
        // The instruction loop would report that the constant index is out of range.
        expectError("hand:1: global name constant is invalid",
                    callImage({}, {op(OpCode::LoadName, index), op(OpCode::Return)}));
    }
    expectError(
        "hand:2: global name constant is invalid",
        callImage({}, {op(OpCode::PushConst, 1), op(OpCode::LoadName, 0), op(OpCode::Add), op(OpCode::Return)}));
    // In a function without a fast form.
    expectError("hand:1: constant is not a string", callImage({}, {op(OpCode::LoadName, 0), op(OpCode::Pop)}));
    expectError("hand:1: constant index is out of range", callImage({}, {op(OpCode::LoadName, -1), op(OpCode::Pop)}));
}

// Source code cannot spread an expression over several lines, but an image can; here every instruction has its own
// line.
TEST(FastFunctions, ErrorsNameTheLineOfTheirOwnOperator) {
    const auto fails = [](const std::string& message, std::int32_t left, OpCode opcode, std::int32_t right) {
        expectError(message, callImage({}, {op(OpCode::PushConst, left), op(OpCode::PushConst, right), op(opcode),
                                            op(OpCode::Return)}));
    };
    fails("hand:3: operator '-' expects numeric values", 9, OpCode::Subtract, 1);
    fails("hand:3: operator '*' expects numeric values", 1, OpCode::Multiply, 9);
    fails("hand:3: division by zero", 1, OpCode::Divide, 0);
    fails("hand:3: modulo by zero", 1, OpCode::Modulo, 0);
    for (const OpCode opcode : {OpCode::Less, OpCode::LessEqual, OpCode::Greater, OpCode::GreaterEqual}) {
        fails("hand:3: ordered comparisons require matching numeric or string values", 9, opcode, 1);
    }
    expectError("hand:2: unary '-' expects a numeric value",
                callImage({}, {op(OpCode::PushConst, 9), op(OpCode::Negate), op(OpCode::Return)}));
    // [] + (1 - 1): the sum fails, at the line of the sum.
    expectError("hand:5: operator '+' expects numbers, strings, or arrays",
                callImage({}, {op(OpCode::MakeArray, 0), op(OpCode::PushConst, 1), op(OpCode::PushConst, 1),
                               op(OpCode::Subtract), op(OpCode::Add), op(OpCode::Return)}));
}

TEST(FastFunctions, FailWhereTheyAreEvaluatedNotWhereTheyAreDefined) {
    expectValue("1",
                assemble({1, "f"}, {op(OpCode::DefineFunction, 1, 1), op(OpCode::PushConst, 0), op(OpCode::Return)},
                         {function("f", {}, {op(OpCode::PushConst, 77), op(OpCode::Return)})}));
}

TEST(FastFunctions, DeepTreesAreAnErrorNotACrash) {
    std::string negations;
    for (int i = 0; i < 300; ++i) {
        negations += "-";
    }
    expectScriptValue("5", "def f(x) return " + negations + "x end return f(5)");

    std::vector<Instruction> code{op(OpCode::PushConst, 1)};
    for (int i = 0; i < 1000000; ++i) {
        code.push_back(op(OpCode::Negate));
    }
    code.push_back(op(OpCode::Return));
    const RubyBytecode image = callImage({}, code);
    for (const bool plain : {false, true}) {
        RubyVM vm;
        if (plain) {
            useBaselineInterpreter(vm);
        }
        const RubyResult result = vm.runBytecode(image);
        // Either executor gives the value or the error.
        EXPECT_TRUE(result.ok ? describe(result.value) == "1"
                              : result.error.find("stack overflow") != std::string::npos)
            << result.error;
    }
}

/// The program of the source, ready to run, and its function 1.
class FastEvaluator : public testing::Test {
protected:
    void load(const std::string& source) {
        m_program = std::make_shared<Program>(internal::deserializeProgram(m_vm.compileScript(source, "t")));
    }

    CompiledFunction& function() { return m_program->functions.at(1); }

    std::string call(const RubyArray& arguments) {
        return outcome(
            [&] { return impl().executeFastFunction(m_program, function(), arguments.data(), arguments.size()); });
    }

    std::string evaluate(std::int32_t node, const RubyArray& arguments) {
        return outcome(
            [&] { return impl().evaluateFastNode(*m_program, function(), node, arguments.data(), arguments.size()); });
    }

    RubyVM m_vm;

private:
    RubyVM::Impl& impl() { return RubyVM::Impl::of(m_vm); }

    static std::string outcome(const std::function<RubyValue()>& run) {
        std::string description;
        const std::string error = errorOf([&] { description = describe(run()); });
        return description.empty() ? error : description;
    }

    std::shared_ptr<Program> m_program;
};

TEST_F(FastEvaluator, ChecksTheArgumentCount) {
    load("def f(a, b) return a - b end");
    EXPECT_EQ("3", call({5, 2}));
    EXPECT_EQ("t:0: function 'f' expected 2 arguments but received 1", call({5}));
    EXPECT_EQ("t:0: function 'f' expected 2 arguments but received 3", call({5, 2, 1}));
}

TEST_F(FastEvaluator, Guards) {
    load(kHalf);
    EXPECT_EQ("2.0", call({4}));
    EXPECT_EQ("negative", call({-4}));
}

TEST_F(FastEvaluator, AGuardNeedsAnErrorFunction) {
    load(kHalf);
    // No script can undefine a global.
    internal::GlobalTable& globals = RubyVM::Impl::of(m_vm).globals;
    globals.setValue(globals.findSlot("error"), internal::makeUndefined());
    EXPECT_EQ("2.0", call({4}));
    EXPECT_EQ("t:0: undefined variable or function 'error'", call({-4}));
}

TEST_F(FastEvaluator, NodesOutOfRange) {
    load("def f(a) return a end");
    EXPECT_EQ("7", evaluate(0, {7}));
    EXPECT_EQ("t:0: fast callable node is out of range", evaluate(-1, {7}));
    EXPECT_EQ("t:0: fast callable node is out of range", evaluate(1, {7}));
    function().fastRoot = 5;
    EXPECT_EQ("t:0: fast callable node is out of range", call({7}));
}

TEST_F(FastEvaluator, ParameterLeavesOutOfRangeAreNil) {
    load("def f(a) return a end");
    EXPECT_EQ("nil", evaluate(0, {}));
    function().fastNodes[0].value = -1;
    EXPECT_EQ("nil", evaluate(0, {7}));
    function().fastNodes[0].value = 1;
    EXPECT_EQ("nil", evaluate(0, {7}));
}

TEST_F(FastEvaluator, LooksNothingUpThatItDoesNotNeed) {
    load("def f(a) return [] end");
    EXPECT_EQ("[]", call({1}));
    // A global that is only read gets no slot.
    load("def f() return never_assigned end");
    EXPECT_EQ("t:1: undefined variable or function 'never_assigned'", call({}));
    EXPECT_EQ(internal::GlobalTable::kNoSlot, RubyVM::Impl::of(m_vm).globals.findSlot("never_assigned"));
}

TEST(Errors, Texts) {
    EXPECT_EQ("t", internal::errorText(RubyError("t")));
    EXPECT_EQ(std::string("a\0b", 3), internal::errorText(RubyError(std::string("a\0b", 3))));
    EXPECT_EQ("out of memory", internal::errorText(std::bad_alloc()));
    EXPECT_EQ("out of memory", internal::errorText(std::bad_array_new_length()));
    struct FullPool : std::bad_alloc {
        [[nodiscard]] const char* what() const noexcept override { return "the host's pool is full"; }
    };
    EXPECT_EQ("the host's pool is full", internal::errorText(FullPool()));
    struct Silent : std::bad_alloc {
        [[nodiscard]] const char* what() const noexcept override { return nullptr; }
    };
    EXPECT_EQ("out of memory", internal::errorText(Silent()));
    EXPECT_EQ("plain", internal::errorText(std::runtime_error("plain")));
}

TEST(Errors, RuntimeErrorsAreLocated) {
    Program program;
    EXPECT_EQ("<string>:7: text", errorOf([&] { internal::runtimeError(program, 7, "text"); }));
    program.name = "main.rb";
    EXPECT_EQ("main.rb:4: division by zero", errorOf([&] { internal::runtimeError(program, 4, "division by zero"); }));
    EXPECT_EQ("main.rb:3: undefined variable or function 'x'",
              errorOf([&] { internal::undefinedName(program, 3, "x"); }));
}

TEST(Errors, RequireStringConstant) {
    const Program program = makeProgram({"name", 5}, {});
    EXPECT_EQ("name", internal::requireStringConstant(program, 0, 1));
    EXPECT_EQ("hand:6: constant is not a string",
              errorOf([&] { (void)internal::requireStringConstant(program, 1, 6); }));
    for (const std::int32_t index : {-1, 2, 2147483647}) {
        EXPECT_EQ("hand:6: constant index is out of range",
                  errorOf([&] { (void)internal::requireStringConstant(program, index, 6); }));
    }
}

TEST(Errors, ArityMessage) {
    CompiledFunction two;
    two.name = "two";
    two.params = {"a", "b"};
    EXPECT_EQ("function 'two' expected 2 arguments but received 0", internal::arityMessage(two, 0));
}

}  // namespace
}  // namespace morvel::ruby::tests
