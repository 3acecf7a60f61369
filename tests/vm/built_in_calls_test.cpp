// A script that calls a built-in gets the same result as a host that calls the bound function: however the call is
// executed, whatever the arguments, and even after the name has been rebound.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "morvel/ruby/error.h"
#include "morvel/ruby/map.h"
#include "support/describe.h"
#include "support/runs.h"
#include "vm/calling.h"
#include "vm/errors.h"
#include "vm/impl.h"

namespace morvel::ruby::tests {
namespace {

/// The built-ins whose results depend only on their arguments.
const std::vector<std::string> kNames{
    "len",
    "to_s",
    "type_of",
    "to_i",
    "to_f",
    "to_number",
    "range",
    "array_new",
    "map_new",
    "array_push",
    "array_pop",
    "array_shift",
    "array_unshift",
    "array_slice",
    "array_reverse",
    "array_join",
    "map_delete",
    "map_merge",
    "map_clone",
    "table_clone",
    "table_clear",
    "keys",
    "values",
    "table_get",
    "table_has_key",
    "table_insert",
    "table_remove",
    "table_sort",
    "table_concat",
    "math_floor",
    "math_ceil",
    "math_abs",
    "math_min",
    "math_max",
    "math_sin",
    "math_cos",
    "math_rad",
    "math_log",
    "math_sqrt",
    "math_pow",
    "math_deg",
    "math_exp",
    "math_clamp",
    "string_upper",
    "string_lower",
    "string_sub",
    "string_find",
    "string_match",
    "string_gmatch",
    "string_byte",
    "string_char",
    "string_format",
    "string_rep",
    "string_gsub",
    "string_split",
    "string_strip",
    "string_lstrip",
    "string_rstrip",
    "string_reverse",
    "string_include?",
    "string_start_with?",
    "string_end_with?",
    "utf8_len",
    "error",
    "pcall",
    "table_set",
    "collect_garbage",
};

/// Fresh arguments of every kind, since built-ins may change them.
std::vector<RubyValue> makeArguments() {
    RubyMap entries;
    entries["k"] = 1;
    entries["5"] = "five";
    return {nullptr, true,  0,  5,   -3,      std::int64_t{1} << 53,  2.5,
            -0.5,    1e300, "", "5", "a%s b", RubyArray{3, "x", 1.5}, RubyArray{},
            entries};
}

constexpr std::size_t kArguments = 15;

std::string outcomeOf(const std::function<RubyValue()>& call, const RubyArray& arguments) {
    std::string text;
    try {
        text = "result " + describe(call());
    } catch (const std::exception& exception) {
        text = "error " + internal::errorText(exception);
    }
    return text + ", arguments afterwards " + describe(RubyValue(arguments));
}

/// The reference count of each container among the arguments.
std::string holders(const RubyArray& arguments) {
    std::string text;
    for (const RubyValue& argument : arguments) {
        if (argument.isBoxed() && !argument.isString()) {
            text += ", held " + std::to_string(argument.data.box->references) + " times";
        }
    }
    return text;
}

std::string parameters(std::size_t count) { return count == 1 ? "a0" : "a0, a1"; }

class BuiltInCalls : public testing::TestWithParam<std::string> {
protected:
    BuiltInCalls() { useBaselineInterpreter(m_plain); }

    void check(const std::string& source, const std::vector<std::size_t>& choice) {
        const auto choose = [&choice] {
            RubyArray chosen;
            for (const std::size_t index : choice) {
                // Each comes from a separate list: an array that contains itself cannot be described.
                chosen.push_back(makeArguments().at(index));
            }
            return chosen;
        };
        RubyValue function;
        ASSERT_TRUE(m_vm.getGlobal(GetParam(), function));
        const RubyArray direct = choose();
        std::string expected =
            outcomeOf([&] { return internal::handleOf(function).hostFunction(m_vm, RubyArguments(direct)); }, direct);
        expected += holders(direct);
        const RubyBytecode image = m_vm.compileScript(source, "t");
        for (RubyVM* vm : {&m_vm, &m_plain}) {
            const RubyArray arguments = choose();
            for (std::size_t i = 0; i < arguments.size(); ++i) {
                vm->setGlobal("g" + std::to_string(i), arguments[i]);
            }
            std::string outcome = outcomeOf(
                [&] {
                    const RubyResult result = vm->runBytecode(image);
                    if (!result.ok) {
                        throw RubyError(result.error);
                    }
                    return result.value;
                },
                arguments);
            vm->setGlobal("g0", nullptr);
            vm->setGlobal("g1", nullptr);
            outcome += holders(arguments);
            ASSERT_EQ(expected, outcome) << source << (vm == &m_plain ? " by the baseline interpreter" : "");
        }
    }

    void checkAll(const std::string& source, std::size_t count) {
        for (std::size_t first = 0; first < kArguments; ++first) {
            for (std::size_t second = 0; second < (count == 1 ? 1 : kArguments); ++second) {
                check(source, count == 1 ? std::vector{first} : std::vector{first, second});
                if (HasFatalFailure()) {
                    return;
                }
            }
        }
    }

private:
    RubyVM m_vm;
    RubyVM m_plain;
};

TEST_P(BuiltInCalls, WithoutArguments) { check("return " + GetParam() + "()", {}); }

TEST_P(BuiltInCalls, WithLocals) {
    for (const std::size_t count : {std::size_t{1}, std::size_t{2}}) {
        const std::string globals = count == 1 ? "g0" : "g0, g1";
        const std::string head = "def f(" + parameters(count) + ") ";
        const std::string call = GetParam() + "(" + parameters(count) + ")";
        checkAll(head + "return " + call + " end return f(" + globals + ")", count);
        checkAll(head + "x = " + call + " return x end return f(" + globals + ")", count);
        checkAll(head + "a0 = " + call + " return a0 end return f(" + globals + ")", count);
        checkAll(head + call + " end return f(" + globals + ")", count);
    }
}

TEST_P(BuiltInCalls, WithGlobalsAndTemporaries) {
    checkAll("return " + GetParam() + "(g0)", 1);
    checkAll("return " + GetParam() + "(g0, g1)", 2);
    checkAll("return " + GetParam() + "([g0][0], [g1][0])", 2);
    checkAll(GetParam() + "(g0, g1)", 2);
    checkAll("function = " + GetParam() + " return function(g0, g1)", 2);
}

INSTANTIATE_TEST_SUITE_P(Names, BuiltInCalls, testing::ValuesIn(kNames),
                         [](const testing::TestParamInfo<std::string>& tested) {
                             std::string name = tested.param;
                             name.erase(std::remove(name.begin(), name.end(), '?'), name.end());
                             return name;
                         });

/// Scripts in which the name of a built-in means something else, from the start or from some point on.
TEST(ReboundBuiltIns, ByTheHost) {
    const Preparation prepare = [](RubyVM& vm) {
        for (const char* name : {"len", "array_push", "math_floor"}) {
            vm.bindFunction(name, [](RubyVM&, RubyArguments arguments) { return RubyValue(arguments.size() + 100); });
        }
    };
    expectScriptValue("[101, 102, 101]", "return [len('abc'), array_push([], 1), math_floor(2.5)]", prepare);
    expectScriptValue("[101, 102, 101, []]",
                      "def f(s, a, n) x = len(s) y = array_push(a, 1) z = math_floor(n) return [x, y, z, a] end\n"
                      "return f('abc', [], 2.5)",
                      prepare);
}

TEST(ReboundBuiltIns, ByScripts) {
    for (const char* name : {"len", "array_push", "math_floor", "puts", "string_sub"}) {
        const std::string n = name;
        expectScriptValue("[\"own\", 7]", "def " + n + "(a, b) x = [a, b] return ['own', x[1]] end def f(p) return " +
                                              n + "(p, 7) end return f([1])");
        expectScriptError("t:1: attempted to call a non-function value",
                          n + " = 5 def f(p) " + n + "(p, 7) end f([1])");
    }
}

TEST(ReboundBuiltIns, WhileALoopRuns) {
    expectScriptValue("[3, 3, \"own\", \"own\"]",
                      "def own(x) y = 'own' return y end\n"
                      "result = []\n"
                      "def f(text)\n"
                      "  i = 0\n"
                      "  while i < 4 do\n"
                      "    array_push(result, len(text))\n"
                      "    if i == 1 then swap() end\n"
                      "    i = i + 1\n"
                      "  end\n"
                      "end\n"
                      "f('abc')\n"
                      "return result",
                      [](RubyVM& vm) {
                          vm.bindFunction("swap", [](RubyVM& caller, RubyArguments) {
                              RubyValue own;
                              EXPECT_TRUE(caller.getGlobal("own", own));
                              caller.setGlobal("len", own);
                              return RubyValue();
                          });
                      });
}

TEST(ReboundBuiltIns, UnderOtherNames) {
    expectScriptValue("[[1, 2], 2]",
                      "push = array_push len = puts def f(a) push(a, 2) return a end\n"
                      "count = [1] return [f(count), 2]");
    // A local with the same name hides the global.
    expectScriptValue("\"local\"", "def say(x) y = 'local' return y end def f(len) return len([1]) end return f(say)");
}

TEST(BuiltInCallsOfTheEngine, AnArrayPushedIntoItself) {
    expectScriptValue("[3, 3]",
                      "def f(a) array_push(a, a) return [len(a), len(a[2])] end\n"
                      "list = [1, 2] r = f(list) table_clear(list) return r");
}

TEST(BuiltInCallsOfTheEngine, PushedValuesStayAsTheyWere) {
    expectScriptValue("[\"ab\", \"abc\"]",
                      "def f(list, s) array_push(list, s) s = s + 'c' array_push(list, s) end\n"
                      "list = [] f(list, 'a' + 'b') return list");
}

TEST(BuiltInCalls, OfGlobalsThatNoOperandNames) {
    RubyVM vm;
    RubyVM::Impl& impl = RubyVM::Impl::of(vm);
    for (int i = 0; impl.globals.size() < 33'000; ++i) {
        vm.setGlobal("other" + std::to_string(i), "not this");
    }
    for (const char* name : {"len", "array_push"}) {
        RubyValue builtIn;
        ASSERT_TRUE(vm.getGlobal(name, builtIn));
        vm.setGlobal(std::string("far_") + name, builtIn);
    }
    const RubyResult result = vm.runScriptString(
        "def f(list) far_array_push(list, 'c') return [far_len(list), far_len('four')] end return f(['a', 'b'])", "t");
    EXPECT_EQ("[3, 4]", result.ok ? describe(result.value) : result.error);
}

}  // namespace
}  // namespace morvel::ruby::tests
