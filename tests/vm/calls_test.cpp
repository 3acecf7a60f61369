// Calls of every kind of function, and the three host functions that the interpreter implements itself.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>

#include "morvel/ruby/error.h"
#include "support/describe.h"
#include "support/runs.h"
#include "vm/calling.h"
#include "vm/errors.h"
#include "vm/impl.h"

namespace morvel::ruby::tests {
namespace {

TEST(Calls, OfAScriptFunction) {
    expectScriptValue("7", "def add(a, b) return a + b end return add(3, 4)");
    expectScriptValue("7", "def add(a, b) c = a + b return c end return add(3, 4)");
    expectScriptValue("nil", "def f() end return f()");
    expectScriptValue("3", "def f() 1 2 3 end return f()");
    expectScriptValue("120", "def fact(n) if n < 2 then return 1 end return n * fact(n - 1) end return fact(5)");
    expectScriptValue("true",
                      "def even(n) if n == 0 then return true end return odd(n - 1) end\n"
                      "def odd(n) if n == 0 then return false end return even(n - 1) end\n"
                      "return even(10)");
}

TEST(Calls, FunctionsAreValues) {
    expectScriptValue("[6, 6, 6]",
                      "def double(x) return x * 2 end\n"
                      "f = double\n"
                      "list = [f]\n"
                      "m = map_new() m['f'] = f\n"
                      "return [f(3), list[0](3), m['f'](3)]");
    expectScriptValue("11", "def inner(x) return x + 1 end def outer() return inner end return outer()(10)");
    expectScriptValue("true", "def f() end g = f return g == f");
    expectScriptValue("false", "def f() end g = f def f() end return g == f");
    expectScriptValue("\"[function f]\"", "def f() end g = f return to_s(g)");
}

TEST(Calls, ADefIsCarriedOutWhenItIsReached) {
    expectScriptError("t:1: undefined variable or function 'f'", "f() def f() end");
    expectScriptValue("1", "def g() return f() end def f() x = 1 return x end return g()");
    expectScriptValue("2", "if true then def f() return 2 end else def f() return 3 end end return f()");
    expectScriptValue("[1, 2]", "def f() x = 1 return x end a = f() def f() x = 2 return x end return [a, f()]");
    expectScriptValue("5", "def outer() def inner() return 5 end end outer() return inner()");
    expectScriptError("t:1: undefined variable or function 'inner'",
                      "def outer() def inner() return 5 end end return inner()");
}

TEST(Calls, LocalsOfOneFunctionAreNotSeenByAnother) {
    expectScriptError("t:1: undefined variable or function 'a'",
                      "def outer(a) def inner() return a end return inner() end outer(1)");
}

TEST(Calls, ALocalCanBeCalled) {
    expectScriptValue("3", "def f(g) return g(1) + 1 end def h(x) return x + 1 end return f(h)");
    expectScriptError("t:1: attempted to call a non-function value", "def f(len) return len([]) end f(5)");
}

TEST(Calls, RunawayRecursionNamesTheLineOfTheCall) {
    expectScriptError("t:2: stack overflow", "def f(n)\nx = f(n + 1)\nreturn x\nend\nf(0)");
}

TEST(Calls, ErrorsOfTheCalleeKeepItsLine) {
    expectScriptError("t:2: division by zero", "def f(x)\nreturn x / 0 + len([])\nend\nf(1)");
    expectScriptError("t:2: division by zero", "def f(x)\nreturn x / 0\nend\nf(1)");
}

TEST(Calls, TheCalleeRunsInItsOwnProgram) {
    for (const bool plain : {false, true}) {
        RubyVM vm;
        if (plain) {
            useBaselineInterpreter(vm);
        }
        ASSERT_TRUE(vm.runScriptString("\n\ndef f(x)\n  y = 'const'\n  return y + x / 0\nend", "first").ok);
        ASSERT_TRUE(vm.runScriptString("def g(x) return x / 0 end", "second").ok);
        EXPECT_EQ("first:5: division by zero", vm.runScriptString("f(1)", "third").error);
        EXPECT_EQ("second:1: division by zero", vm.runScriptString("\n\ng(1)", "third").error);
        EXPECT_EQ("first:0: function 'f' expected 1 arguments but received 0",
                  vm.runScriptString("\nf()", "third").error);
        EXPECT_EQ("second:0: function 'g' expected 1 arguments but received 2",
                  vm.runScriptString("\ng(1, 2)", "third").error);
    }
}

TEST(Calls, OfHostFunctions) {
    const Preparation prepare = [](RubyVM& vm) {
        vm.bindFunction("count", [](RubyVM&, RubyArguments arguments) { return RubyValue(arguments.size()); });
        vm.bindFunction("all", [](RubyVM&, const std::vector<RubyValue>& arguments) { return RubyValue(arguments); });
        vm.bindFunction("nothing", [](RubyVM&, RubyArguments) { return RubyValue(); });
    };
    expectScriptValue("[0, 1, 3]", "return [count(), count(nil), count(1, 2, 3)]", prepare);
    expectScriptValue("[1, \"b\", [3], nil]", "return all(1, 'b', [3], nothing())", prepare);
    expectScriptValue("[]", "return all()", prepare);
}

TEST(Calls, HostFunctionsReceiveTheirVm) {
    RubyVM vm;
    RubyVM* received = nullptr;
    vm.bindFunction("f", [&received](RubyVM& caller, RubyArguments) {
        received = &caller;
        return RubyValue();
    });
    EXPECT_TRUE(vm.runScriptString("f()", "t").ok);
    EXPECT_EQ(&vm, received);
}

TEST(Calls, ExceptionsOfHostFunctionsPassThroughUnchanged) {
    const Preparation prepare = [](RubyVM& vm) {
        vm.bindFunction("fail", [](RubyVM&, RubyArguments) -> RubyValue { throw std::runtime_error("host trouble"); });
        vm.bindFunction("logic", [](RubyVM&, RubyArguments) -> RubyValue { throw std::logic_error("logic trouble"); });
        vm.bindFunction("script", [](RubyVM&, RubyArguments) -> RubyValue { throw RubyError(std::string("a\0b", 3)); });
        vm.bindFunction("memory", [](RubyVM&, RubyArguments) -> RubyValue { throw std::bad_alloc(); });
        vm.bindFunction("empty", RubyHostFunction());
    };
    expectScriptError("host trouble", "fail()", prepare);
    expectScriptError("logic trouble", "def f() x = logic() end f()", prepare);
    expectScriptError(std::string("a\0b", 3), "script()", prepare);
    expectScriptError("out of memory", "memory()", prepare);
    expectScriptError(std::bad_function_call().what(), "empty()", prepare);
    expectScriptValue(
        "[[true, false, \"host trouble\"], [true, false, \"logic trouble\"], "
        "[true, false, \"a\\x00b\"], [true, false, \"out of memory\"]]",
        "return [pcall(fail), pcall(logic), pcall(script), pcall(memory)]", prepare);
}

TEST(Calls, OtherExceptionsAreNotCaught) {
    for (const bool plain : {false, true}) {
        RubyVM vm;
        if (plain) {
            useBaselineInterpreter(vm);
        }
        vm.bindFunction("throw_number", [](RubyVM&, RubyArguments) -> RubyValue { throw 42; });
        EXPECT_THROW((void)vm.runScriptString("throw_number()", "t"), int);
        EXPECT_THROW((void)vm.runScriptString("def f(a) x = [a] pcall(throw_number) end f([1])", "t"), int);
        // The VM remains usable.
        EXPECT_EQ("3", describe(vm.runScriptString("def g(x) y = x + 1 return y end return g(2)", "t").value));
    }
}

TEST(Calls, HostFunctionsMayRunScripts) {
    const Preparation prepare = [](RubyVM& vm) {
        vm.bindFunction("run", [](RubyVM& caller, RubyArguments arguments) {
            const RubyResult result = caller.runScriptString(arguments[0].asString(), "inner");
            return result.ok ? result.value : RubyValue("failed: " + result.error);
        });
    };
    expectScriptValue("[3, \"failed: inner:1: division by zero\", 8]",
                      "x = 1\ny = run('x = x + 1 return x + 1')\nz = run('1 / 0')\nreturn [y, z, x + 6]", prepare);
    expectScriptValue("40",
                      "def f(n) if n == 0 then return 0 end return run('return f(' + (n - 1) + ')') + 2 end\n"
                      "return f(20)",
                      prepare);
}

// The view of the arguments stays valid while the function runs scripts that need much more stack.
TEST(Calls, ArgumentsStayValidDuringReentry) {
    const Preparation prepare = [](RubyVM& vm) {
        vm.bindFunction("keep", [](RubyVM& caller, RubyArguments arguments) {
            const RubyResult result = caller.runScriptString(
                "def deep(n) if n == 0 then return 0 end a = [n] return deep(n - 1) + a[0] - n end return deep(800)",
                "inner");
            return RubyValue(RubyArray{arguments[0], arguments[1], result.value, result.error});
        });
    };
    expectScriptValue("[[1], \"two\", 0, \"\"]", "def f(a) x = keep(a, 'two') return x end return f([1])", prepare);
}

TEST(Calls, AFunctionMayReplaceItselfWhileItRuns) {
    for (const bool plain : {false, true}) {
        RubyVM vm;
        if (plain) {
            useBaselineInterpreter(vm);
        }
        const std::string text(100, 'c');
        vm.bindFunction("once", [text](RubyVM& caller, RubyArguments arguments) {
            caller.bindFunction("once", [](RubyVM&, RubyArguments) { return RubyValue("second"); });
            caller.setGlobal("argument", nullptr);
            return RubyValue(text + arguments[0].asString());
        });
        EXPECT_EQ(text + "tail",
                  vm.runScriptString("argument = 'ta' + 'il' return once(argument)", "t").value.asString());
        EXPECT_EQ("second", vm.runScriptString("return once('x')", "t").value.asString());
    }
}

TEST(Calls, AProgramLivesWhileOneOfItsFunctionsRuns) {
    for (const bool plain : {false, true}) {
        RubyVM vm;
        if (plain) {
            useBaselineInterpreter(vm);
        }
        vm.bindFunction("forget", [](RubyVM& caller, RubyArguments) {
            caller.setGlobal("f", nullptr);
            return RubyValue();
        });
        ASSERT_TRUE(vm.runScriptString("def f(x) forget() y = 'con' + 'stant' return y + x end", "first").ok);
        EXPECT_EQ("constant!", vm.runScriptString("return f('!')", "second").value.toString());
        EXPECT_EQ("second:1: attempted to call a non-function value", vm.runScriptString("f('!')", "second").error);
    }
}

TEST(Calls, FunctionsOutliveTheirRunAndTheirVm) {
    RubyValue function;
    {
        RubyVM vm;
        ASSERT_TRUE(vm.runScriptString("def f(x) y = x + 1 return y end def g(x) return x * 2 end", "first").ok);
        ASSERT_TRUE(vm.getGlobal("f", function));
        EXPECT_EQ("8", describe(vm.runScriptString("return f(7)", "second").value));
    }
    RubyVM other;
    other.setGlobal("h", function);
    EXPECT_EQ("6", describe(other.runScriptString("return h(5)", "third").value));
    EXPECT_EQ("first:1: operator '+' expects numbers, strings, or arrays",
              other.runScriptString("h(nil)", "third").error);
}

// A function of one VM that is called in another sees the other's globals.
TEST(Calls, FunctionsTakeTheGlobalsOfTheVmThatCalls) {
    RubyVM first;
    RubyVM second;
    ASSERT_TRUE(
        first.runScriptString("a = 0 b = 0 g = 'first' def f() x = 1 return g end def k() return g end", "t").ok);
    RubyValue function;
    for (const char* name : {"f", "k"}) {
        ASSERT_TRUE(first.getGlobal(name, function));
        EXPECT_EQ("\"first\"", describe(first.runScriptString(std::string("return ") + name + "()", "t").value));
        second.setGlobal("f", function);
        EXPECT_EQ("t:1: undefined variable or function 'g'", second.runScriptString("f()", "t").error);
        second.setGlobal("g", "second");
        EXPECT_EQ("\"second\"", describe(second.runScriptString("return f()", "t").value));
        EXPECT_EQ("\"first\"", describe(first.runScriptString(std::string("return ") + name + "()", "t").value));
        second = RubyVM();
    }
}

RubyValue emptyFunctionValue() { return RubyValue(std::unique_ptr<RubyFunctionHandle>()); }

RubyValue functionWithoutProgram() {
    auto handle = std::make_unique<RubyFunctionHandle>();
    handle->kind = RubyFunctionHandle::Kind::Script;
    handle->functionIndex = 0;
    handle->name = "lost";
    return RubyValue(std::move(handle));
}

TEST(Calls, OfBrokenHandles) {
    const Preparation prepare = [](RubyVM& vm) {
        vm.setGlobal("empty", emptyFunctionValue());
        vm.setGlobal("lost", functionWithoutProgram());
    };
    expectScriptError("t:2: function handle is empty", "\nempty()", prepare);
    expectScriptError("t:2: function handle is empty", "\nempty(1, 2)", prepare);
    expectScriptError("t:2: script function program is missing", "\nlost()", prepare);
    expectScriptValue("[false, \"pcall function handle is empty\"]", "return pcall(empty)", prepare);
    expectScriptValue("[true, false, \"t:2: script function program is missing\"]", "\nreturn pcall(lost)", prepare);
    expectScriptValue("[\"function\", \"[function ]\", \"[function lost]\"]",
                      "return [type_of(empty), to_s(empty), to_s(lost)]", prepare);
}

TEST(Error, RaisesTheTextOfItsArgument) {
    expectScriptError("boom", "error('boom')");
    expectScriptError("42", "\n\nerror(42)");
    expectScriptError("nil", "error(nil)");
    expectScriptError("[1, a]", "error([1, 'a'])");
    expectScriptError("error", "error()");
    expectScriptError("", "error('')");
    expectScriptError(std::string("a\0b", 3), "error(string_char(97, 0, 98))");
    expectScriptError("error expects between 0 and 1 arguments", "error(1, 2)");
    expectScriptError("boom", "raise = error raise('boom')");
}

TEST(Pcall, OfFunctionsThatSucceed) {
    expectScriptValue("[true, 3]", "def f() x = 3 return x end return pcall(f)");
    expectScriptValue("[true, 3]", "def f() return 3 end return pcall(f)");
    expectScriptValue("[true, nil]", "def f() end return pcall(f)");
    expectScriptValue("[true, [1, 2]]", "def f(a, b) x = [a, b] return x end return pcall(f, 1, 2)");
    expectScriptValue("[true, 3]", "return pcall(len, 'abc')");
    expectScriptValue("[true, [true, 3]]", "return pcall(pcall, len, 'abc')");
    expectScriptValue("[true, 7]", "m = map_new() return pcall(table_set, m, 'k', 7)");
}

TEST(Pcall, OfFunctionsThatFail) {
    expectScriptValue("[true, false, \"boom\"]", "def f() x = error('boom') end return pcall(f)");
    expectScriptValue("[true, false, \"t:2: division by zero\"]", "def f(x)\ny = x / 0\nend\nreturn pcall(f, 1)");
    expectScriptValue("[true, false, \"t:2: division by zero\"]", "def f(x)\nreturn x / 0\nend\nreturn pcall(f, 1)");
    expectScriptValue("[true, false, \"len expects exactly 1 argument\"]", "return pcall(len)");
    expectScriptValue("[true, false, \"table_set expects an array or map\"]", "return pcall(table_set, 1, 2, 3)");
    expectScriptValue("[true, false, \"unsupported map key type\"]",
                      "def f() m = map_new() m[[]] = 1 end return pcall(f)");
    expectScriptValue("[true, false, \"\"]", "def f() x = error('') end return pcall(f)");
    expectScriptValue("[true, false, \"t:0: function 'f' expected 1 arguments but received 2\"]",
                      "def f(a) x = a end return pcall(f, 1, 2)");
    expectScriptValue("[true, false, \"t:0: function 'f' expected 1 arguments but received 0\"]",
                      "def f(a) return a end return pcall(f)");
}

TEST(Pcall, OfWhatIsNoFunction) {
    for (const char* value : {"5", "nil", "'puts'", "[]", "true"}) {
        expectScriptValue("[false, \"pcall expects a function\"]", std::string("return pcall(") + value + ", 1)");
    }
}

TEST(Pcall, NeedsAnArgument) {
    expectScriptError("pcall expects at least 1 arguments", "pcall()");
    expectScriptValue("[true, false, \"pcall expects at least 1 arguments\"]", "return pcall(pcall)");
}

TEST(Pcall, OfErrorItselfThrowsNothing) {
    expectScriptValue("[false, \"boom\"]", "return pcall(error, 'boom')");
    expectScriptValue("[false, \"error\"]", "return pcall(error)");
    expectScriptValue("[false, \"nil\"]", "return pcall(error, nil)");
    expectScriptValue("[false, \"[1]\"]", "return pcall(error, [1])");
    expectScriptValue("[true, nil]", "return pcall(error, '')");
    expectScriptError("error expects between 0 and 1 arguments", "return pcall(error, 1, 2)");
    expectScriptValue("[true, false, \"error expects between 0 and 1 arguments\"]",
                      "def f() return pcall(error, 1, 2) end return pcall(f)");
    expectScriptValue("[true, [false, \"boom\"]]", "return pcall(pcall, error, 'boom')");
}

TEST(Pcall, OfGuardedFunctions) {
    const std::string half = "def half(x)\n  if x < 0 then error('negative') end\n  return x / 2\nend\n";
    expectScriptValue("[true, 2.0]", half + "return pcall(half, 4)");
    expectScriptValue("[false, \"negative\"]", half + "return pcall(half, -1)");
    expectScriptValue("[false, \"function 'half' expected 1 arguments but received 0\"]", half + "return pcall(half)");
    expectScriptValue("[false, \"function 'half' expected 1 arguments but received 2\"]",
                      half + "return pcall(half, 1, 2)");
    // Errors in the guard or in the body are not caught.
    expectScriptError("t:2: ordered comparisons require matching numeric or string values",
                      half + "return pcall(half, 'x')");
    expectScriptError("t:3: operator '/' expects numeric values",
                      "def f(x)\nif x == 'y' then error('m') end\nreturn x / 2\nend\nreturn pcall(f, 'x')");
    expectScriptError("t:1: undefined variable or function 'g'",
                      "def f(x) if g then error('m') end return x end return pcall(f, 1)");
    expectScriptValue("[true, false, \"t:1: undefined variable or function 'g'\"]",
                      "def f(x) if g then error('m') end return x end def h() return pcall(f, 1) end return pcall(h)");
    // An empty message counts as success.
    expectScriptValue("[true, nil]", "def f(x) if x then error('') end return x end return pcall(f, 1)");
    // The global error is not called.
    expectScriptValue("[false, \"m\"]", "def f(x) if x then error('m') end return x end error = 5 return pcall(f, 1)");
}

TEST(Pcall, LeavesTheCallerIntact) {
    expectScriptValue("[1, [true, false, \"t:4: division by zero\"], 2, \"here\"]",
                      "def bad(n)\n"
                      "  local = [n]\n"
                      "  if n > 0 then return bad(n - 1) + local[0] end\n"
                      "  return 1 / 0 + local\n"
                      "end\n"
                      "def f(a)\n"
                      "  b = 'here'\n"
                      "  return [a, pcall(bad, 10), 2, b]\n"
                      "end\n"
                      "return f(1)");
}

TEST(Pcall, MayNest) {
    expectScriptValue(
        "[true, [true, false, \"inner\"]]",
        "def inner() x = error('inner') end def outer() x = pcall(inner) return x end return pcall(outer)");
    expectScriptValue("[true, false, \"again\"]",
                      "def inner() x = error('inner') end def outer() x = pcall(inner) error('again') end "
                      "return pcall(outer)");
}

TEST(Pcall, CatchesAcrossHostFunctions) {
    const Preparation prepare = [](RubyVM& vm) {
        vm.bindFunction("call", [](RubyVM& caller, RubyArguments arguments) {
            const RubyResult result = caller.runScriptString("return " + arguments[0].asString() + "()", "inner");
            if (!result.ok) {
                throw RubyError(result.error + " rethrown");
            }
            return result.value;
        });
    };
    expectScriptValue("[true, false, \"deep rethrown\"]",
                      "def fail() x = error('deep') end def f() x = call('fail') end return pcall(f)", prepare);
}

TEST(TableSet, StoresAndGivesTheValue) {
    expectScriptValue("[\"x\", [1, 2, nil, nil, \"x\"]]", "a = [1, 2] v = table_set(a, 4, 'x') return [v, a]");
    expectScriptValue("[9, [9, 2]]", "a = [1, 2] v = table_set(a, false, 9) return [v, a]");
    expectScriptValue("[9, [1, 9]]", "a = [1, 2] v = table_set(a, 1.9, 9) return [v, a]");
    expectScriptValue("[true, {\"1\": true}]", "m = map_new() v = table_set(m, 1, true) return [v, m]");
    expectScriptValue("[nil, {\"nil\": nil}]", "m = map_new() v = table_set(m, nil, nil) return [v, m]");
    expectScriptValue("[[1]]", "set = table_set a = [[]] table_set(a, 0, [1]) return a");
}

TEST(TableSet, FailsWithoutALocation) {
    expectScriptError("table_set expects exactly 3 arguments", "table_set([], 0)");
    expectScriptError("table_set expects exactly 3 arguments", "table_set([], 0, 1, 2)");
    for (const char* table : {"nil", "5", "'text'", "puts"}) {
        expectScriptError("table_set expects an array or map", std::string("table_set(") + table + ", 0, 1)");
        expectScriptError("table_set expects an array or map", std::string("table_set(") + table + ", nil, 1)");
    }
    expectScriptError("table_set array index must be numeric", "table_set([], '0', 1)");
    expectScriptError("table_set array index must be numeric", "table_set([], nil, 1)");
    expectScriptError("table_set array index must be non-negative", "table_set([], -1, 1)");
    expectScriptError("table_set array index must be non-negative", "table_set([], -1.5, 1)");
    expectScriptError("unsupported map key type", "table_set(map_new(), [], 1)");
    expectScriptError("out of memory", "table_set([], 9223372036854775807, 1)");
}

TEST(TableSet, AnArrayMayBecomeItsOwnElement) {
    expectScriptValue("[4, 4]", "a = [] table_set(a, 3, a) r = [len(a), len(a[3])] table_clear(a) return r");
}

TEST(CallValue, FromTheHost) {
    RubyVM vm;
    auto& impl = RubyVM::Impl::of(vm);
    internal::Program caller;
    caller.name = "host";
    ASSERT_TRUE(vm.runScriptString("def add(a, b) return a + b end", "t").ok);
    RubyValue add;
    ASSERT_TRUE(vm.getGlobal("add", add));
    const RubyArray arguments{3, 4};
    EXPECT_EQ("7", describe(impl.callValue(caller, add, arguments.data(), 2, 9)));
    EXPECT_EQ("t:0: function 'add' expected 2 arguments but received 1",
              errorOf([&] { (void)impl.callValue(caller, add, arguments.data(), 1, 9); }));
    EXPECT_EQ("host:9: attempted to call a non-function value",
              errorOf([&] { (void)impl.callValue(caller, 5, nullptr, 0, 9); }));
    EXPECT_EQ("host:9: function handle is empty",
              errorOf([&] { (void)impl.callValue(caller, emptyFunctionValue(), nullptr, 0, 9); }));
    EXPECT_EQ("host:9: script function program is missing",
              errorOf([&] { (void)impl.callValue(caller, functionWithoutProgram(), nullptr, 0, 9); }));
}

TEST(MakeScriptFunction, SharesTheProgram) {
    const auto program = std::make_shared<internal::Program>();
    const RubyValue value = internal::makeScriptFunction("name", 3, program);
    const RubyFunctionHandle& handle = internal::handleOf(value);
    EXPECT_EQ(RubyFunctionHandle::Kind::Script, handle.kind);
    EXPECT_EQ(RubyFunctionHandle::Intrinsic::None, handle.intrinsic);
    EXPECT_EQ(3, handle.functionIndex);
    EXPECT_EQ(program, handle.program);
    EXPECT_FALSE(static_cast<bool>(handle.hostFunction));
    EXPECT_EQ("name", handle.name);
    EXPECT_EQ(2, program.use_count());
}

}  // namespace
}  // namespace morvel::ruby::tests
