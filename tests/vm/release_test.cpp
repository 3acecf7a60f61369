// Whatever a script does, and wherever it fails, the run releases everything that it used.
#include <gtest/gtest.h>

#include "morvel/ruby/error.h"
#include "support/assembler.h"
#include "support/describe.h"
#include "support/runs.h"

namespace morvel::ruby::tests {
namespace {

using internal::OpCode;

const std::string kFunctions =
    "def id(a) b = a return b end\n"
    "def fast(a) return a end\n"
    "def pair(a, b) return [a, b] end\n"
    "def guarded(a) if a then error('held') end return a end\n"
    "def fail(a) b = [a] b[0] = a / a return b end\n"
    "def down(n, a) if n == 0 then return fail(a) end return [down(n - 1, a), a] end\n";

/// Bodies of functions with the parameter w. Each is also run at the top level, where w is a global.
const std::vector<std::string> kBodies{
    "w",
    "x = w",
    "x = w x = 5",
    "x = w x = w",
    "w = 5",
    "[w, w]",
    "x = [w, [w]] x[1] = w",
    "x = [w] x[0] = nil",
    "x = [w] x[7] = w",
    "[w][0]",
    "[w][5]",
    "[w][true]",
    "[w]['no']",
    "[w][-1]",
    "w[w]",
    "w[0]",
    "[w, 1][1]",
    "x = [1] x[w] = 2",
    "x = [1] x['no'] = w",
    "x = [1] x[-1] = w",
    "x = 5 x[0] = w",
    "x = 'abc' x[0] = w",
    "x = 'abc' x[9] = w",
    "x = map_new() x['k'] = w y = x['k']",
    "x = map_new() x[w] = w",
    "x = map_new() x['k'] = w x['k'] = 5",
    "w + w",
    "x = w + [1]",
    "w + 1",
    "w + 'text'",
    "'text' + w",
    "[w] - 1",
    "1 * [w]",
    "w < w",
    "[w] < [w]",
    "-w",
    "-[w]",
    "w == w",
    "[w] == [w]",
    "[w] != 5",
    "w && w",
    "[w] or nil",
    "!w",
    "![w]",
    "if w then x = 1 end",
    "if [w] then x = 1 else x = 2 end",
    "if !w then x = 1 end",
    "if ![w] then x = 1 end",
    "if !(![w][0]) then x = 1 end",
    "if [w][0] then x = 1 end",
    "if ![w][0] then x = 1 end",
    "if [w] && [w] then x = 1 end",
    "if ![w] || !w then x = 1 end",
    "if [w] == [w] then x = 1 end",
    "if [w] < 1 then x = 1 end",
    "if nil && [w] then x = 1 end",
    "while [w] do return w end",
    "while ![w] do return w end",
    "x = 3 while x > 0 && [w] do y = [w] x = x - 1 end",
    "x = [w] while x do x = nil end",
    "return w",
    "return [w]",
    "return [w][0]",
    "id(w)",
    "id([w])",
    "x = id(w) y = id(x)",
    "fast(w)",
    "fast([w])",
    "pair(w, [w])",
    "pair(w)",
    "pair(w, w, w)",
    "id([w], fast(w), pair())",
    "[w, missing]",
    "pair(w, missing)",
    "missing(w)",
    "missing([w])",
    "w(w)",
    "5([w])",
    "guarded(w)",
    "guarded(w, w)",
    "fail(w)",
    "down(3, w)",
    "[w, fail([w])]",
    "error(w)",
    "error([w])",
    "pcall(fail, w)",
    "x = pcall(fail, [w])",
    "pcall(down, 5, w)",
    "x = [w, pcall(down, 5, w)]",
    "pcall(guarded, w)",
    "pcall(guarded, [w], w)",
    "pcall(pair, w)",
    "pcall(w, w)",
    "pcall(error, w)",
    "pcall(error, w, w)",
    "pcall(pcall, fail, w)",
    "pcall(len, w)",
    "pcall(len, w, w)",
    "len(w)",
    "len([w])",
    "len(w, w)",
    "x = [] array_push(x, w) array_push(x, w, [w])",
    "array_push([], w)",
    "array_push(5, w)",
    "table_set([w], 0, w)",
    "table_set(w, 'no', w)",
    "table_set(5, w, w)",
    "host(w)",
    "host([w], w)",
    "host_fails(w, [w])",
    "pcall(host_fails, w)",
    "x = host(w) y = host(x)",
    "x = w x = x + [1] x = x + w",
    "x = '' x = x + w x = x + 'a' + w",
    "def inner(a) return [a] end inner(w)",
    "def inner(a) b = 1 c = 2 d = 3 e = a return 5 end inner(w) x = inner([w])",
    "def inner(a) b = 1 c = 2 d = 3 e = 4 f = a return f end inner(w) x = inner([w]) x = inner(w)",
    "def inner() a = 1 b = 2 c = 3 d = 4 e = w return 5 end inner() x = inner()",
    "def inner(a) b = 1 c = 2 d = 3 e = a return 5 end x = pcall(inner, w) x = pcall(inner, [w])",
    "x = pcall(id, w) x = pcall(id, 5) x = pcall(id, [w])",
    "x = pcall(id, 5) x[0] = [w] x = pcall(id, 6)",
    "load('def other(a) b = [a] return b end')() x = other(w) x = other(5)",
    "load('def other(a) b = [a] other = nil return missing end')() x = pcall(other, w)",
    "def inner(a, a, a) b = a return b end inner(w, w, [w])",
    "f = load('return 5') f() f = w",
};

std::string repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

/// Lists too long for registers, some of which fail half-way.
std::vector<std::string> longBodies() {
    const std::string values = repeated("w, ", 299);
    const std::string parameters = repeated("a, ", 299) + "b";
    return {
        "x = [" + values + "[w]] y = x",
        "[" + values + "missing]",
        "[w, " + values + "[" + values + "[w], missing], w]",
        "x = [" + values + "w] x = pcall(load('return [" + repeated("[w], ", 299) + "missing]'))",
        "host(" + values + "w)",
        "x = host(" + values + "[w])",
        "host(" + values + "host_fails(" + values + "w))",
        "x = pcall(host_fails, " + values + "w)",
        "x = [[w], pcall(error, " + values + "w)]",
        "w(" + values + "w)",
        "def inner(a) end x = [w, inner(" + values + "w)]",
        "def inner(" + parameters + ") x = [a, b] return x end x = [[w], inner(" + values + "[w])]",
        "def inner(" + parameters + ") x = [a, b] return missing end x = [[w], pcall(inner, " + values +
            "[w])] inner(" + values + "[w])",
        "math_max(" + values + "w)",
    };
}

void prepareVm(RubyVM& vm) {
    vm.bindFunction("host", [](RubyVM&, RubyArguments arguments) { return arguments[0]; });
    vm.bindFunction("host_fails", [](RubyVM&, RubyArguments) -> RubyValue { throw RubyError("host trouble"); });
    ASSERT_TRUE(vm.runScriptString(kFunctions, "functions").ok);
}

/// Runs the image with the global w set to a new array, and checks that no reference to the array remains.
void expectReleased(const RubyBytecode& image, const std::string& source) {
    for (const bool plain : {false, true}) {
        RubyVM vm;
        if (plain) {
            useBaselineInterpreter(vm);
        }
        prepareVm(vm);
        const RubyValue witness(RubyArray{1});
        // Twice, since the first run may cache things for the next.
        for (int i = 0; i < 2; ++i) {
            vm.setGlobal("w", witness);
            RubyResult result = vm.runBytecode(image);
            result = {};
            for (const char* name : {"w", "x", "y", "f"}) {
                vm.setGlobal(name, nullptr);
            }
            EXPECT_EQ(1u, witness.data.box->references) << source << (plain ? " by the baseline interpreter" : "");
            EXPECT_EQ("[1]", describe(witness)) << source;
        }
    }
}

TEST(Release, AtTheTop) {
    for (const std::string& body : kBodies) {
        expectReleased(RubyVM().compileScript(body, "t"), body);
    }
}

TEST(Release, InFunctions) {
    for (const std::string& body : kBodies) {
        const std::string source = "def tested(w, x, y)\n" + body + "\nend\ntested(w, w, [w])";
        expectReleased(RubyVM().compileScript(source, "t"), source);
        const std::string locals = "def tested(w)\nx = w y = [w]\n" + body + "\nend\ntested(w)";
        expectReleased(RubyVM().compileScript(locals, "t"), locals);
    }
}

TEST(Release, InProtectedFunctions) {
    for (const std::string& body : kBodies) {
        const std::string source = "def tested(w, x)\n" + body + "\nend\ny = [w, pcall(tested, w, [w]), w]";
        expectReleased(RubyVM().compileScript(source, "t"), source);
    }
}

// Values are still on the stack of every caller.
TEST(Release, InTheMiddleOfExpressions) {
    for (const std::string& body : kBodies) {
        const std::string source = "def tested(w)\n" + body +
                                   "\nend\ndef outer(w, v) return [w, v, [v, tested(w), v], v] end\n[w, outer(w, [w])]";
        expectReleased(RubyVM().compileScript(source, "t"), source);
    }
}

TEST(Release, LongLists) {
    for (const std::string& body : longBodies()) {
        expectReleased(RubyVM().compileScript(body, "t"), body);
        const std::string source = "def tested(w, v)\n" + body + "\nend\n[w, [w], tested(w, [w])]";
        expectReleased(RubyVM().compileScript(source, "t"), source);
    }
}

TEST(Release, ValuesLeftOnTheStackOfAnImage) {
    const std::vector<RubyValue> constants{"w", 1, "id", "x"};
    const std::vector<std::vector<internal::Instruction>> codes{
        {op(OpCode::LoadName, 0)},
        {op(OpCode::LoadName, 0), op(OpCode::LoadName, 0), op(OpCode::Return)},
        {op(OpCode::LoadName, 0), op(OpCode::LoadName, 0), op(OpCode::Pop)},
        {op(OpCode::LoadName, 0), opNumber(99)},
        {op(OpCode::LoadName, 0), op(OpCode::Jump, -1)},
        {op(OpCode::LoadName, 0), op(OpCode::LoadName, 0), op(OpCode::JumpIfFalse, 77), op(OpCode::Return)},
        {op(OpCode::LoadName, 0), op(OpCode::Add)},
        {op(OpCode::LoadName, 0), op(OpCode::Call, 3)},
        {op(OpCode::LoadName, 0), op(OpCode::MakeArray, 3)},
        {op(OpCode::LoadName, 0), op(OpCode::LoadName, 0), op(OpCode::MakeArray, 1), op(OpCode::Call, -1)},
        {op(OpCode::LoadName, 0), op(OpCode::LoadName, 2), op(OpCode::LoadName, 0), op(OpCode::Call, 1)},
        {op(OpCode::LoadName, 0), op(OpCode::StoreName, 1)},
        {op(OpCode::LoadName, 0), op(OpCode::StoreName, 3), op(OpCode::StoreName, 3), op(OpCode::Return)},
        {op(OpCode::LoadName, 0), op(OpCode::LoadName, 1)},
        {op(OpCode::LoadName, 0), op(OpCode::PushConst, 9)},
        {op(OpCode::LoadName, 0), op(OpCode::LoadName, 0), op(OpCode::LoadName, 0), op(OpCode::SetIndex)},
        {op(OpCode::LoadName, 0), op(OpCode::DefineFunction, 9, 9)},
    };
    for (std::size_t i = 0; i < codes.size(); ++i) {
        expectReleased(assemble(constants, codes[i]), "image " + std::to_string(i));
    }
}

TEST(Release, DeepRecursionThatFails) {
    const std::string source =
        "def deep(n, w) x = [w] return [deep(n + 1, w), x] end\nx = pcall(deep, 0, w)\ndeep(0, w)";
    expectReleased(RubyVM().compileScript(source, "t"), source);
}

}  // namespace
}  // namespace morvel::ruby::tests
