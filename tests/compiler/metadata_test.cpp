#include "compiler/metadata.h"

#include <gtest/gtest.h>

#include "compiler/compiler.h"
#include "support/assembler.h"
#include "support/describe.h"

namespace morvel::ruby::tests {
namespace {

using internal::CompiledFunction;
using internal::FastKind;
using internal::FastLeafSource;
using internal::FastNode;
using internal::Instruction;
using internal::OpCode;
using internal::Program;

/// An expression tree: `Add(parameter 0, 1)`, `MakeArray(global x)`.
std::string tree(const Program& program, const std::vector<FastNode>& nodes, std::int32_t root) {
    const FastNode& node = nodes.at(static_cast<std::size_t>(root));
    if (node.isLeaf()) {
        switch (node.source) {
            case FastLeafSource::Constant:
                return describe(program.constants.at(static_cast<std::size_t>(node.value)));
            case FastLeafSource::Parameter:
                return "parameter " + std::to_string(node.value);
            case FastLeafSource::Global:
                return "global " + program.constants.at(static_cast<std::size_t>(node.value)).asString();
        }
    }
    EXPECT_EQ(0, node.value);
    std::vector<std::int32_t> operands = node.children;
    for (const std::int32_t operand : {node.left, node.right}) {
        if (operand != -1) {
            operands.push_back(operand);
        }
    }
    std::string text;
    for (const std::int32_t operand : operands) {
        text += (text.empty() ? "" : ", ") + tree(program, nodes, operand);
    }
    return std::string(internal::opcodeInfo(node.op)->name) + "(" + text + ")";
}

/// `none`, the tree of a fast expression, or `guard TREE, error MESSAGE, TREE`.
std::string fastForm(const Program& program, std::size_t index) {
    const CompiledFunction& function = program.functions.at(index);
    switch (function.fastKind) {
        case FastKind::None:
            EXPECT_TRUE(function.fastNodes.empty());
            EXPECT_EQ(-1, function.fastRoot);
            EXPECT_EQ(-1, function.fastGuardRoot);
            EXPECT_TRUE(function.fastErrorMessage.isNil());
            return "none";
        case FastKind::Expression:
            EXPECT_EQ(-1, function.fastGuardRoot);
            EXPECT_TRUE(function.fastErrorMessage.isNil());
            return tree(program, function.fastNodes, function.fastRoot);
        case FastKind::Guarded:
            return "guard " + tree(program, function.fastNodes, function.fastGuardRoot) + ", error " +
                   function.fastErrorMessage.asString() + ", " + tree(program, function.fastNodes, function.fastRoot);
    }
    return "unknown";
}

Program analyse(const std::string& source) {
    Program program = internal::compileSource(source, "t");
    internal::finalizeProgramMetadata(program);
    return program;
}

std::string fastForm(const std::string& source) { return fastForm(analyse(source), 1); }

std::string fastForm(std::vector<RubyValue> constants, std::vector<std::string> params, std::vector<Instruction> code) {
    Program program = makeProgram(std::move(constants), {}, {function("f", std::move(params), std::move(code))});
    internal::finalizeProgramMetadata(program);
    return fastForm(program, 1);
}

/// The local slot of every instruction of function `index`, with "-" for none.
std::string slots(const Program& program, std::size_t index) {
    const CompiledFunction& function = program.functions.at(index);
    std::string text;
    for (std::size_t i = 0; i < function.code.size(); ++i) {
        const std::int32_t slot = internal::localSlotAt(function, i);
        text += (text.empty() ? "" : " ") + (slot == internal::kNoLocalSlot ? "-" : std::to_string(slot));
    }
    return text;
}

TEST(Locals, TheTopLevelHasNone) {
    const Program program = analyse("x = 1\ny = x\nreturn x");
    EXPECT_TRUE(program.functions[0].localNames.empty());
    EXPECT_EQ("- - - - - - - -", slots(program, 0));
}

TEST(Locals, ParametersFirstThenAssignedNamesInCodeOrder) {
    const Program program = analyse("def f(b, a)\n  y = z\n  if a then x = 1 end\n  y = 2\n  a = 3\n  w[0] = x\nend");
    const CompiledFunction& function = program.functions[1];
    EXPECT_EQ((std::vector<std::string_view>{"b", "a", "y", "x", "w"}), function.localNames);
    // z, y =, pop | a, jump, 1, x =, pop, jump | 2, y =, pop | 3, a =, pop | w, 0, x, set, w =, pop
    EXPECT_EQ("- 2 - 1 - - 3 - - - 2 - - 1 - 4 - 3 - 4 -", slots(program, 1));
}

TEST(Locals, ReadsBeforeTheFirstAssignmentAreLocalToo) {
    EXPECT_EQ("0 - - 0 -", slots(analyse("def f() g\n g = 1 end"), 1));
}

TEST(Locals, ANestedDefIsNoLocal) {
    const Program program = analyse("def f()\n def g() end\n g()\nend");
    EXPECT_TRUE(program.functions[1].localNames.empty());
    EXPECT_EQ("- - - -", slots(program, 1));
}

TEST(Locals, BelongToTheirFunctionOnly) {
    const Program program = analyse("def f()\n a = 1\n def g() return a end\nend");
    EXPECT_EQ((std::vector<std::string_view>{"a"}), program.functions[1].localNames);
    EXPECT_TRUE(program.functions[2].localNames.empty());
    EXPECT_EQ("- -", slots(program, 2));
}

TEST(Locals, DuplicateParametersShareASlot) {
    const Program program = analyse("def f(a, a, c) return c end");
    EXPECT_EQ((std::vector<std::string_view>{"a", "c"}), program.functions[1].localNames);
    EXPECT_EQ(3u, program.functions[1].params.size());
    EXPECT_EQ("1 -", slots(program, 1));
}

TEST(Locals, InvalidNameConstantsAreIgnored) {
    Program program =
        makeProgram({"x", 5}, {},
                    {function("f", {},
                              {op(OpCode::StoreName, 1), op(OpCode::StoreName, -1), op(OpCode::StoreName, 2),
                               op(OpCode::StoreName, 0), op(OpCode::LoadName, 1), op(OpCode::LoadName, 0),
                               op(OpCode::DefineFunction, 0), op(OpCode::PushConst, 0)})});
    internal::finalizeProgramMetadata(program);
    EXPECT_EQ((std::vector<std::string_view>{"x"}), program.functions[1].localNames);
    EXPECT_EQ("- - - 0 - 0 - -", slots(program, 1));
}

TEST(Locals, AnEmptyNameIsANameLikeOthers) {
    Program program = makeProgram({""}, {}, {function("f", {}, {op(OpCode::StoreName, 0), op(OpCode::LoadName, 0)})});
    internal::finalizeProgramMetadata(program);
    EXPECT_EQ((std::vector<std::string_view>{""}), program.functions[1].localNames);
    EXPECT_EQ("0 0", slots(program, 1));
}

TEST(Metadata, RunningTwiceGivesTheSameTables) {
    Program program = analyse(
        "def f(x) return x + y end\n"
        "def g(x) if x then error('m') end return x end\n"
        "def h(a) b = a return b end\n");
    const auto summary = [&program] {
        std::string text;
        for (std::size_t i = 0; i < program.functions.size(); ++i) {
            text += fastForm(program, i) + " | " + slots(program, i) + " | " +
                    std::to_string(program.functions[i].fastNodes.size()) + " nodes | " +
                    std::to_string(program.functions[i].localNames.size()) + " locals\n";
        }
        return text;
    };
    const std::string once = summary();
    internal::finalizeProgramMetadata(program);
    EXPECT_EQ(once, summary());
    EXPECT_EQ(
        "none | - - - | 0 nodes | 0 locals\n"
        "Add(parameter 0, global y) | 0 - - - | 3 nodes | 1 locals\n"
        "guard parameter 0, error m, parameter 0 | 0 - - - - - - 0 - | 2 nodes | 1 locals\n"
        "none | 0 1 - 1 - | 0 nodes | 2 locals\n",
        once);
}

TEST(Metadata, ResetsWhatItComputes) {
    Program program = analyse("def f(x) return x end");
    program.functions[1].code.clear();
    program.functions[1].params.clear();
    internal::finalizeProgramMetadata(program);
    EXPECT_EQ("none", fastForm(program, 1));
    EXPECT_TRUE(program.functions[1].localNames.empty());
}

TEST(FastForm, OneReturnedExpression) {
    EXPECT_EQ("Add(parameter 0, 1)", fastForm("def f(x) return x + 1 end"));
    EXPECT_EQ("Multiply(parameter 0, parameter 1)", fastForm("def area(w, h) return w * h end"));
    EXPECT_EQ("Multiply(global limit, 2)", fastForm("def f() return limit * 2 end"));
    EXPECT_EQ("MakeArray(1, 2, global x)", fastForm("def f() return [1, 2, x] end"));
    EXPECT_EQ("MakeArray()", fastForm("def f() return [] end"));
    EXPECT_EQ("nil", fastForm("def f() return end"));
    EXPECT_EQ("\"text\"", fastForm("def f() return 'text' end"));
    EXPECT_EQ("parameter 1", fastForm("def f(a, b) return b end"));
}

TEST(FastForm, EveryOperator) {
    for (const auto& [spelling, name] : std::vector<std::pair<std::string, std::string>>{{"+", "Add"},
                                                                                         {"-", "Subtract"},
                                                                                         {"*", "Multiply"},
                                                                                         {"/", "Divide"},
                                                                                         {"%", "Modulo"},
                                                                                         {"==", "Equal"},
                                                                                         {"!=", "NotEqual"},
                                                                                         {"<", "Less"},
                                                                                         {"<=", "LessEqual"},
                                                                                         {">", "Greater"},
                                                                                         {">=", "GreaterEqual"}}) {
        EXPECT_EQ(name + "(parameter 0, parameter 1)", fastForm("def f(a, b) return a " + spelling + " b end"));
    }
    EXPECT_EQ("Negate(Not(parameter 0))", fastForm("def f(a) return -!a end"));
    EXPECT_EQ("Subtract(Subtract(1, 2), MakeArray(Negate(3), MakeArray(4)))",
              fastForm("def f() return 1 - 2 - [-3, [4]] end"));
}

TEST(FastForm, NodesCarryTheLinesOfTheirInstructions) {
    const Program program = analyse("\n\ndef f(a)\n\nreturn a + 1\nend");
    ASSERT_EQ("Add(parameter 0, 1)", fastForm(program, 1));
    for (const FastNode& node : program.functions[1].fastNodes) {
        EXPECT_EQ(5u, node.line);
    }
}

TEST(FastForm, WhatHasNone) {
    const std::vector<std::string> bodies{
        "x",                        // no return
        "",                         // no code
        "y = x return y",           // a local that is no parameter
        "y = 1 return 2",           // several statements
        "return g(x)",              // a call
        "return x[0]",              // indexing
        "return x and 1",           // and, or
        "return 1 or x",            //
        "return 1 return 2",        // two returns
        "1 return 2",               // an expression before
        "while x do end return x",  // a loop
        "return x x",               // code after the return
        "def g end return x",       // a def
        "x[0] = 1 return x",        // indexed assignment
        "x = 1 return x",           // assigning the parameter
        "if x then return 1 end return 2",
    };
    for (const std::string& body : bodies) {
        EXPECT_EQ("none", fastForm("def f(x) " + body + " end")) << body;
    }
}

TEST(FastForm, TheTopLevelNeverHasOne) {
    EXPECT_EQ("none", fastForm(analyse("return 1 + 2"), 0));
    EXPECT_EQ("none", fastForm(analyse("if x then error('m') end return 1"), 0));
}

TEST(GuardedForm, AConditionAnErrorAndAnExpression) {
    EXPECT_EQ("guard parameter 0, error bad, parameter 0",
              fastForm("def f(x) if x then error('bad') end return x end"));
    EXPECT_EQ("guard Less(parameter 0, 0), error negative, Divide(parameter 0, 2)",
              fastForm("def half(x)\n  if x < 0 then\n    error(\"negative\")\n  end\n  return x / 2\nend"));
    EXPECT_EQ("guard global g, error , nil", fastForm("def f() if g do error('') end return end"));
}

// The analysis looks at names only, so a parameter or a local named error does not matter.
TEST(GuardedForm, LooksAtTheNameErrorOnly) {
    EXPECT_EQ("guard parameter 0, error m, parameter 0",
              fastForm("def f(error) if error then error('m') end return error end"));
    EXPECT_EQ("none", fastForm("def f(x) if x then Error('m') end return x end"));
    EXPECT_EQ("none", fastForm("def f(x) if x then errors('m') end return x end"));
}

TEST(GuardedForm, WhatHasNone) {
    const std::vector<std::string> bodies{
        "if x then error('m') else 1 end return x",
        "if x then error('m') else end return 1 and x",
        "if x then error('m', 2) end return x",
        "if x then error() end return x",
        "if x then error(msg) end return x",
        "if x then error(5) end return x",
        "if x then error('a' + 'b') end return x",
        "if x then puts('m') end return x",
        "if x then error('m') 1 end return x",
        "if x then end return x",
        "if x then return error('m') end return x",
        "if x then y = error('m') end return x",
        "if x then error('m') end x",
        "if x then error('m') end",
        "if x then error('m') end return g(x)",
        "if x then error('m') end y = 1 return y",
        "if g(x) then error('m') end return x",
        "if x then error('m') end if x then error('n') end return x",
        "if x then error('m') elsif x then error('n') end return x",
        "while x do error('m') end return x",
        "1 if x then error('m') end return x",
    };
    for (const std::string& body : bodies) {
        EXPECT_EQ("none", fastForm("def f(x) " + body + " end")) << body;
    }
}

// An else branch without code compiles to the same instructions as none.
TEST(GuardedForm, AnEmptyElseIsNoElse) {
    EXPECT_EQ("guard parameter 0, error m, parameter 0",
              fastForm("def f(x) if x then error('m') else end return x end"));
}

/// The code of `def f(x) if x then error("m") end return x end`, over the constants of kGuardConstants.
std::vector<Instruction> guardCode() {
    return {op(OpCode::LoadName, 0),  op(OpCode::JumpIfFalse, 7), op(OpCode::LoadName, 1),
            op(OpCode::PushConst, 2), op(OpCode::Call, 1),        op(OpCode::Pop),
            op(OpCode::Jump, 7),      op(OpCode::LoadName, 0),    op(OpCode::Return)};
}

std::string guardForm(const std::vector<Instruction>& code) { return fastForm({"x", "error", "m", 5}, {"x"}, code); }

TEST(GuardedForm, HandMadeShapes) {
    EXPECT_EQ("guard parameter 0, error m, parameter 0", guardForm(guardCode()));

    const auto changed = [](std::size_t index, Instruction instruction) {
        std::vector<Instruction> code = guardCode();
        code[index] = instruction;
        return guardForm(code);
    };
    // The targets must be equal and directly after the jump.
    EXPECT_EQ("none", changed(1, op(OpCode::JumpIfFalse, 8)));
    EXPECT_EQ("none", changed(1, op(OpCode::JumpIfFalse, 6)));
    EXPECT_EQ("none", changed(6, op(OpCode::Jump, 8)));
    EXPECT_EQ("none", changed(6, op(OpCode::Jump, -1)));
    EXPECT_EQ("none", changed(1, op(OpCode::JumpIfFalse, -1)));
    // Exactly one of each.
    EXPECT_EQ("none", changed(7, op(OpCode::Jump, 8)));
    EXPECT_EQ("none", changed(0, op(OpCode::JumpIfFalse, 7)));
    EXPECT_EQ("none", changed(6, op(OpCode::Pop)));
    EXPECT_EQ("none", changed(1, op(OpCode::Pop)));
    // The branch must be exactly error("text").
    EXPECT_EQ("none", changed(2, op(OpCode::PushConst, 1)));
    EXPECT_EQ("none", changed(2, op(OpCode::LoadName, 0)));
    EXPECT_EQ("none", changed(2, op(OpCode::LoadName, 9)));
    EXPECT_EQ("none", changed(2, op(OpCode::LoadName, 3)));
    EXPECT_EQ("none", changed(3, op(OpCode::PushConst, 3)));
    EXPECT_EQ("none", changed(3, op(OpCode::PushConst, -1)));
    EXPECT_EQ("none", changed(3, op(OpCode::LoadName, 2)));
    EXPECT_EQ("none", changed(4, op(OpCode::Call, 0)));
    EXPECT_EQ("none", changed(5, op(OpCode::Return)));
    // The end must be a return.
    EXPECT_EQ("none", changed(8, op(OpCode::Pop)));
}

TEST(GuardedForm, TheBodyMustHaveCode) {
    // Condition, branch, and a return that both jumps lead to.
    std::vector<Instruction> code = guardCode();
    code.erase(code.begin() + 7);
    EXPECT_EQ("none", guardForm(code));
}

TEST(GuardedForm, AJumpBeforeTheConditionalOneIsNoGuard) {
    EXPECT_EQ("none", guardForm({op(OpCode::Jump, 1), op(OpCode::LoadName, 0), op(OpCode::JumpIfFalse, 1),
                                 op(OpCode::LoadName, 0), op(OpCode::Return)}));
}

// The nodes of guard and body share one list, guard first.
TEST(GuardedForm, SharesOneNodeList) {
    const Program program = analyse("def f(x) if x < 1 then error('m') end return x + 2 end");
    const CompiledFunction& function = program.functions[1];
    EXPECT_EQ(6u, function.fastNodes.size());
    EXPECT_EQ(2, function.fastGuardRoot);
    EXPECT_EQ(5, function.fastRoot);
}

TEST(FastForm, HandMadeCode) {
    const std::vector<RubyValue> constants{"x", 5};
    // Operands are not checked: a leaf may refer to a constant that does not exist.
    Program program = makeProgram({}, {}, {function("f", {}, {op(OpCode::PushConst, 7), op(OpCode::Return)})});
    internal::finalizeProgramMetadata(program);
    ASSERT_EQ(FastKind::Expression, program.functions[1].fastKind);
    EXPECT_EQ(7, program.functions[1].fastNodes[0].value);
    EXPECT_EQ(FastLeafSource::Constant, program.functions[1].fastNodes[0].source);

    program = makeProgram({}, {}, {function("f", {}, {op(OpCode::LoadName, -3), op(OpCode::Return)})});
    internal::finalizeProgramMetadata(program);
    ASSERT_EQ(FastKind::Expression, program.functions[1].fastKind);
    EXPECT_EQ(-3, program.functions[1].fastNodes[0].value);
    EXPECT_EQ(FastLeafSource::Global, program.functions[1].fastNodes[0].source);

    EXPECT_EQ("none", fastForm(constants, {}, {op(OpCode::Return)}));
    EXPECT_EQ("none",
              fastForm(constants, {}, {op(OpCode::PushConst, 1), op(OpCode::PushConst, 1), op(OpCode::Return)}));
    EXPECT_EQ("none", fastForm(constants, {}, {op(OpCode::PushConst, 1), op(OpCode::Add), op(OpCode::Return)}));
    EXPECT_EQ("none", fastForm(constants, {}, {op(OpCode::Negate), op(OpCode::Return)}));
    EXPECT_EQ("none", fastForm(constants, {}, {op(OpCode::Not), op(OpCode::PushConst, 1), op(OpCode::Return)}));
    EXPECT_EQ("none", fastForm(constants, {}, {op(OpCode::MakeArray, 1), op(OpCode::Return)}));
    EXPECT_EQ("none", fastForm(constants, {}, {op(OpCode::MakeArray, -1), op(OpCode::Return)}));
    EXPECT_EQ("none", fastForm(constants, {}, {op(OpCode::PushConst, 1), opNumber(27), op(OpCode::Return)}));
    EXPECT_EQ("none", fastForm(constants, {}, {op(OpCode::PushConst, 1), opNumber(255), op(OpCode::Return)}));
    EXPECT_EQ("none", fastForm(constants, {}, {op(OpCode::PushConst, 1), op(OpCode::Return), op(OpCode::Return)}));
}

TEST(BuildFastExpressionRange, TakesTheRangeOnly) {
    const Program program = makeProgram({1}, {op(OpCode::Pop), op(OpCode::PushConst, 0), op(OpCode::Pop)});
    std::vector<FastNode> nodes(1);
    std::int32_t root = -1;
    EXPECT_TRUE(internal::buildFastExpressionRange(program.functions[0], 1, 2, nodes, root));
    EXPECT_EQ(2u, nodes.size());
    EXPECT_EQ(1, root);
    EXPECT_FALSE(internal::buildFastExpressionRange(program.functions[0], 0, 2, nodes, root));
    EXPECT_FALSE(internal::buildFastExpressionRange(program.functions[0], 1, 1, nodes, root));
    EXPECT_FALSE(internal::buildFastExpressionRange(program.functions[0], 2, 1, nodes, root));
}

TEST(BuildFastExpressionRange, ReadsNoLocalsButParameters) {
    Program program = makeProgram({"a", "b"}, {op(OpCode::LoadName, 0), op(OpCode::LoadName, 1)});
    CompiledFunction& function = program.functions[0];
    function.params = {"a"};
    function.localNames = {"a", "b"};
    function.instructionSlots = {0, 1};
    std::vector<FastNode> nodes;
    std::int32_t root = -1;
    EXPECT_TRUE(internal::buildFastExpressionRange(function, 0, 1, nodes, root));
    EXPECT_FALSE(internal::buildFastExpressionRange(function, 1, 2, nodes, root));
}

TEST(ExtractFastErrorCall, LeavesTheMessageAloneOnFailure) {
    const Program program = makeProgram({"error", "m"}, {op(OpCode::LoadName, 0), op(OpCode::PushConst, 1),
                                                         op(OpCode::Call, 1), op(OpCode::Pop), op(OpCode::Pop)});
    const CompiledFunction& function = program.functions[0];
    RubyValue message = "untouched";
    EXPECT_FALSE(internal::extractFastErrorCall(function, program, 0, 3, message));
    EXPECT_FALSE(internal::extractFastErrorCall(function, program, 0, 5, message));
    EXPECT_FALSE(internal::extractFastErrorCall(function, program, 1, 5, message));
    EXPECT_FALSE(internal::extractFastErrorCall(function, program, 4, 0, message));
    EXPECT_EQ("untouched", message.toString());
    EXPECT_TRUE(internal::extractFastErrorCall(function, program, 0, 4, message));
    EXPECT_EQ("m", message.toString());
}

}  // namespace
}  // namespace morvel::ruby::tests
