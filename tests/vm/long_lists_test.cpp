// Array literals and argument lists of any length run on the engine, with the same meaning.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "bytecode/image.h"
#include "compiler/compiler.h"
#include "compiler/metadata.h"
#include "morvel/ruby/error.h"
#include "support/assembler.h"
#include "support/engine_facts.h"
#include "support/runs.h"
#include "vm/engine/translator.h"
#include "vm/globals.h"

namespace morvel::ruby::tests {
namespace {

using internal::OpCode;
using internal::Program;

constexpr int kSizes[] = {1, 2, 254, 255, 256, 257, 509, 510, 511, 1000};

/// `text` repeated `count` times, separated by commas; each # in it becomes the number of the repetition.
std::string list(int count, const std::string& text = "#") {
    std::string items;
    for (int i = 0; i < count; ++i) {
        std::string item = text;
        for (std::size_t at = item.find('#'); at != std::string::npos; at = item.find('#')) {
            item.replace(at, 1, std::to_string(i));
        }
        items += (i == 0 ? "" : ", ") + item;
    }
    return items;
}

/// The translations of a program's functions; null for those without one.
std::vector<std::unique_ptr<internal::Code>> translations(Program& program) {
    finalizeProgramMetadata(program);
    internal::GlobalTable globals;
    internal::GlobalNames names(program, globals);
    std::vector<std::unique_ptr<internal::Code>> codes;
    for (std::size_t i = 0; i < program.functions.size(); ++i) {
        codes.push_back(translateFunction(program, static_cast<std::int32_t>(i), names));
    }
    return codes;
}

bool runsOnTheEngine(Program program) {
    const auto codes = translations(program);
    return std::none_of(codes.begin(), codes.end(), [](const auto& code) { return code == nullptr; });
}

bool sourceRunsOnTheEngine(const std::string& source) { return runsOnTheEngine(internal::compileSource(source, "t")); }

TEST(LongLists, OfAnyLengthAreTranslated) {
    for (const int size : {255, 256, 32'766, 32'767, 65'535, 65'536}) {
        EXPECT_TRUE(sourceRunsOnTheEngine("a = [" + list(size) + "]")) << size;
        EXPECT_TRUE(sourceRunsOnTheEngine("def f(x) return [" + list(size, "x") + "] end")) << size;
        EXPECT_TRUE(sourceRunsOnTheEngine("puts(" + list(size) + ")")) << size;
        EXPECT_TRUE(sourceRunsOnTheEngine("def f(g) return g[0](" + list(size, "g") + ") end")) << size;
    }
    for (const int size : {255, 256, 1000, 32'000}) {
        EXPECT_TRUE(sourceRunsOnTheEngine("def f(" + list(size, "p#") + ") return p0 end f(" + list(size) + ")"))
            << size;
    }
}

TEST(LongLists, OfMoreThanAMillionAreTranslated) {
    constexpr std::int32_t kSize = (1 << 20) + 1;
    std::vector<internal::Instruction> code(kSize, op(OpCode::PushConst, 0));
    code.push_back(op(OpCode::MakeArray, kSize));
    code.push_back(op(OpCode::Return));
    EXPECT_TRUE(runsOnTheEngine(makeProgram({1}, code)));
    code[kSize] = op(OpCode::Call, kSize - 1);
    EXPECT_TRUE(runsOnTheEngine(makeProgram({1}, code)));
    // One value is missing.
    code[kSize] = op(OpCode::MakeArray, kSize + 1);
    EXPECT_FALSE(runsOnTheEngine(makeProgram({1}, code)));
}

TEST(LongLists, TakeFewRegisters) {
    Program program = internal::compileSource("def f(g) return g([" + list(100'000) + "], " + list(500) + ") end", "t");
    const auto codes = translations(program);
    ASSERT_NE(codes[1], nullptr);
    EXPECT_LT(codes[1]->registerCount, 600U);
}

// Deeper than the parser can go on a small native stack.
constexpr std::int32_t kNesting = 12'000;

/// x = [0, 1, 2, [0, 1, 2, ... [0, 1, 2, 0]]], with 0, 1, 2 in each level `wide` times.
Program nestedLiterals(std::int32_t depth, std::int32_t wide) {
    std::vector<internal::Instruction> code;
    for (std::int32_t i = 0; i < depth * wide * 3; ++i) {
        code.push_back(op(OpCode::PushConst, i % 3));
    }
    code.push_back(op(OpCode::PushConst, 0));
    code.insert(code.end(), static_cast<std::size_t>(depth), op(OpCode::MakeArray, wide * 3 + 1));
    code.push_back(op(OpCode::StoreName, 3));
    code.push_back(op(OpCode::Pop));
    code.push_back(op(OpCode::Return));
    return makeProgram({0, 1, 2, "x"}, code);
}

/// return add(0, 1, 2, add(0, 1, 2, ... 0))
Program nestedCalls(std::int32_t depth) {
    std::vector<internal::Instruction> code;
    for (std::int32_t i = 0; i < depth; ++i) {
        code.push_back(op(OpCode::LoadName, 3));
        for (std::int32_t argument = 0; argument < 3; ++argument) {
            code.push_back(op(OpCode::PushConst, argument));
        }
    }
    code.push_back(op(OpCode::PushConst, 0));
    code.insert(code.end(), static_cast<std::size_t>(depth), op(OpCode::Call, 4));
    code.push_back(op(OpCode::Return));
    return makeProgram({0, 1, 2, "add"}, code);
}

TEST(LongLists, NestedDeeplyAreTranslated) {
    EXPECT_TRUE(runsOnTheEngine(nestedLiterals(kNesting, 1)));
    EXPECT_TRUE(runsOnTheEngine(nestedLiterals(200, 100)));
    EXPECT_TRUE(runsOnTheEngine(nestedCalls(kNesting)));
}

TEST(LongLists, NestedDeeplyHaveTheirValues) {
    const Program literals = nestedLiterals(kNesting, 1);
    const Program calls = nestedCalls(kNesting);
    for (const bool plain : {false, true}) {
        RubyVM vm;
        if (plain) {
            useBaselineInterpreter(vm);
        }
        ASSERT_TRUE(vm.runBytecode(internal::serializeProgram(literals)).ok);
        const RubyResult counted = vm.runScriptString(
            "d = 0 s = 0 while type_of(x) == 'array' do d = d + 1 s = s + x[0] + x[1] * 10 + x[2] * 100 x = x[3] end "
            "return [d, s, x]",
            "t");
        EXPECT_EQ("[12000, 2520000, 0]", counted.ok ? counted.value.toString() : counted.error);
        ASSERT_TRUE(vm.runScriptString("def add(a, b, c, d) return a + b * 10 + c * 100 + d end", "t").ok);
        const RubyResult added = vm.runBytecode(internal::serializeProgram(calls));
        EXPECT_EQ("2520000", added.ok ? added.value.toString() : added.error);
    }
}

TEST(LongLists, HaveTheirElementsInOrder) {
    for (const int size : kSizes) {
        const std::string n = std::to_string(size);
        const std::string prepare =
            "made = [] x = 5 def note(v) array_push(made, v) return v end "
            "def check(a) i = 0 while i < len(a) do if a[i] != i then return i end i = i + 1 end return len(a) end ";
        const std::string expected = "[" + n + ", " + n + "]";
        for (const char* element : {"#", "note(#)", "(x - 5 + #)", "[#][0]", "len(range(#))", "array_new(1, #)[0]"}) {
            const bool isNoted = std::string(element) == "note(#)";
            const std::string values = "[" + list(size, element) + "]";
            const std::string result = "[check(a), " + std::string(isNoted ? "check(made)" : n) + "]";
            expectScriptValue(expected, prepare + "a = " + values + " return " + result);
            expectScriptValue(expected, prepare + "def f(x) a = " + values + " return " + result + " end return f(5)");
        }
    }
}

TEST(LongLists, KeepLocalsAndGlobalsAsTheyWereWhenRead) {
    for (const int size : kSizes) {
        const std::string source = "g = 1 change = load('g = g + 1 return g') def f(p) q = p a = [" +
                                   list(size, "g, p, change(), q") + "] return a end r = f('p') " +
                                   "s = 0 i = 0 while i < len(r) do s = s + (r[i] * 3 + r[i + 2] * 5) * (i + 1) " +
                                   "i = i + 4 end return [s, g, r[1], r[len(r) - 1], len(r)]";
        std::int64_t sum = 0;
        for (std::int64_t i = 0; i < size; ++i) {
            sum += ((i + 1) * 3 + (i + 2) * 5) * (4 * i + 1);
        }
        expectScriptValue("[" + std::to_string(sum) + ", " + std::to_string(size + 1) + ", \"p\", \"p\", " +
                              std::to_string(4 * size) + "]",
                          source);
    }
}

TEST(LongLists, FailAtTheElementThatFails) {
    const std::string prepare = "made = map_new() made[0] = 0 def note(v) made[0] = made[0] + 1 return [v] end ";
    for (const int before : {0, 1, 254, 255, 256, 509, 510, 511}) {
        const std::string values = (before == 0 ? "" : list(before, "note(#)") + ", ") + "missing, note(7)" +
                                   (before % 2 == 0 ? "" : ", " + list(300, "note(#)"));
        const std::string message = "t:2: undefined variable or function 'missing'";
        const std::string outcome = "[[true, false, \"" + message + "\"], " + std::to_string(before) + "]";
        for (const std::string& open : {std::string("[["), std::string("puts(len("), std::string("note([1, ")}) {
            const std::string close = open == "[[" ? "]]" : open == "note([1, " ? "])" : "))";
            const std::string expression = open + values + close;
            expectScriptError(message, prepare + "\n" + expression);
            expectScriptValue(outcome, prepare + "\ndef f() return " + expression + " end return [pcall(f), made[0]]");
        }
    }
}

TEST(LongCalls, PassTheirArguments) {
    for (const int size : kSizes) {
        const std::string n = std::to_string(size);
        const std::string last = std::to_string(size - 1);
        const std::string f = "def f(" + list(size, "p#") + ") s = [p0, p" + last + "] p0 = nil return s end ";
        const std::string expected = "[0, " + last + "]";
        const std::string values = list(size);
        expectScriptValue(expected, f + "return f(" + values + ")");
        expectScriptValue(expected, f + "def g(x) x = f(" + list(size, "(x + #)") + ") return x end return g(0)");
        expectScriptValue(expected, f + "a = [f] return a[0](" + values + ")");
        expectScriptValue("[true, " + expected + "]", f + "return pcall(f, " + values + ")");
        expectScriptValue("[true, [true, " + expected + "]]", f + "return pcall(pcall, f, " + values + ")");
        expectScriptValue(last, "return math_max(" + values + ")");
        expectScriptValue("[true, " + last + "]", "return pcall(math_max, " + values + ")");
        expectScriptValue(n, "return host(" + values + ")", [](RubyVM& vm) {
            vm.bindFunction("host", [](RubyVM&, RubyArguments arguments) { return RubyValue(arguments.size()); });
        });
        // A function with a fast form, and a guarded one.
        expectScriptValue(last, "def f(" + list(size, "p#") + ") return p" + last + " end return f(" + values + ")");
        const std::string guarded =
            "def f(" + list(size, "p#") + ") if p0 > 0 then error('no') end return p" + last + " end ";
        expectScriptValue("[[true, " + last + "], " + last + "]",
                          guarded + "return [pcall(f, " + values + "), f(" + values + ")]");
        expectScriptValue("[false, \"no\"]", guarded + "return pcall(f, " + list(size, "1") + ")");
    }
}

TEST(LongCalls, FailAsOthersDo) {
    for (const int size : {255, 256, 511}) {
        const std::string values = list(size);
        const std::string n = std::to_string(size);
        expectScriptError("t:1: attempted to call a non-function value", "x = 5 x(" + values + ")");
        expectScriptError("t:1: undefined variable or function 'missing'", "missing(" + values + ")");
        expectScriptError("t:0: function 'f' expected 1 arguments but received " + n, "def f(a) end f(" + values + ")");
        expectScriptError("error expects between 0 and 1 arguments", "error(" + values + ")");
        expectScriptValue("[true, false, \"t:0: function 'f' expected 1 arguments but received " + n + "\"]",
                          "def f(a) end return pcall(f, " + values + ")");
        expectScriptValue("[false, \"pcall expects a function\"]", "return pcall(" + values + ")");
        expectScriptError("host trouble", "host(" + values + ")", [](RubyVM& vm) {
            vm.bindFunction("host", [](RubyVM&, RubyArguments) -> RubyValue { throw RubyError("host trouble"); });
        });
    }
}

TEST(LongCalls, CallWhatTheCalleeWasWhenItsArgumentsWereMade) {
    const std::string source = "def f(" + list(300, "p#") + ") return 1 end def h(" + list(300, "q#") +
                               ") return 2 end g = load('f = h return 1') return [f(" + list(299) + ", g()), f(" +
                               list(300) + ")]";
    expectScriptValue("[1, 2]", source);
}

TEST(LongCalls, Recurse) {
    const std::string source = "def f(" + list(300, "p#") + ") if p0 == 0 then return p299 end return f(p0 - 1, " +
                               list(299, "p#") + ") end return f(20000, " + list(299, "'x'") + ")";
    RubyVM vm;
    const RubyResult result = vm.runScriptString(source, "t");
    ASSERT_TRUE(result.ok) << result.error;
    // Each call passes its parameters on, shifted by one.
    EXPECT_EQ("299", result.value.toString());
}

// A host function runs other scripts while it reads its arguments.
TEST(LongCalls, ArgumentsStayWhileTheHostRunsScripts) {
    const std::string source = "def again(n) if n > 0 then return again(n - 1) end return [" + list(400) +
                               "] end def f(x) return [x, host(" + list(300, "[x]") + "), x] end return f(7)";
    expectScriptValue("[7, [400, [7], [7]], 7]", source, [](RubyVM& vm) {
        vm.bindFunction("host", [](RubyVM& inner, RubyArguments arguments) {
            const RubyResult result = inner.runScriptString("return again(50)", "inner");
            return RubyValue(RubyArray{result.value.asArray().size(), arguments[0], arguments[299]});
        });
    });
}

bool hasOperation(const internal::Code& code, internal::Operation operation) {
    return std::any_of(code.instructions.begin(), code.instructions.end(), [&](const auto& instruction) {
        return internal::infoOf(instruction.op).operation == operation;
    });
}

TEST(FarJumps, LeaveNearOnesShort) {
    for (const int size : {4000, 4100, 8000, 11'000, 40'000}) {
        const std::string source = "def f(x)\nif x < 3 then\n" + repeated("x = x + g\n", size) +
                                   "end\nwhile x != 7 do x = x - 1 end\nreturn x end\n";
        Program program = internal::compileSource(source, "t");
        const auto codes = translations(program);
        ASSERT_NE(codes[1], nullptr) << size;
        EXPECT_TRUE(hasOperation(*codes[1], internal::Operation::JumpUnlessEqual)) << size;
    }
}

TEST(FarJumps, GoWhereTheyShould) {
    for (const int size : {1000, 1020, 1030, 2000, 8000, 8200, 11'000}) {
        const std::string n = std::to_string(size);
        const std::string body = repeated("x = x + g\n", size);
        const std::string source = "g = 1 def f(x) y = 0\nwhile x < 2 do if x == 0 then\n" + body +
                                   "elsif x == 1 then\n" + body + "y = 5 else\n" + body +
                                   "end\ny = y + 1 end\nreturn [x, y] end\n";
        expectScriptValue("[[" + n + ", 1], [" + std::to_string(size + 1) + ", 6], [2, 0]]",
                          source + "return [f(0), f(1), f(2)]");
    }
}

}  // namespace
}  // namespace morvel::ruby::tests
