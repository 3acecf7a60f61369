// Deep and cyclic data, deep nesting and deep recursion end in an ordinary error, on large and small native stacks.
#include <alloca.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "morvel/ruby/vm.h"
#include "support.h"
#include "vm/impl.h"

namespace morvel::ruby::tests {

namespace {

constexpr std::size_t kMillion = 1'000'000;

bool isOverflow(const std::string& text) { return text.starts_with("error: ") && text.ends_with("stack overflow"); }

/// The parameter is a thread's stack size, or 0 for the main thread of the test program.
class NativeStack : public ::testing::TestWithParam<std::size_t> {
protected:
    /// Runs the script on a stack of the parameter's size and checks that the VM works afterwards. Returns the text of
    /// the value or error.
    static std::string result(const std::string& source, const std::function<void(RubyVM&)>& bind = bindBounce) {
        std::string text;
        const auto body = [&] {
            RubyVM vm;
            bindBounce(vm);
            bind(vm);
            text = outcome(vm, source);
            EXPECT_TRUE(isUsable(vm));
        };
        if (GetParam() == 0) {
            body();
        } else {
            runOnStack(GetParam(), body);
        }
        return text;
    }

    /// Binds bounce(source), a host function that runs the source on the same VM and passes errors on.
    static void bindBounce(RubyVM& vm) {
        vm.bindFunction("bounce", [](RubyVM& inner, RubyArguments arguments) {
            RubyResult nested = inner.runScriptString(arguments[0].asString(), "nested");
            if (!nested.ok) {
                throw RubyError(nested.error);
            }
            return nested.value;
        });
    }
};

TEST_P(NativeStack, ParserNesting) {
    struct Nest {
        const char* before;
        const char* open;
        const char* middle;
        const char* close;
    };
    constexpr std::array kNests{
        Nest{"x = ", "(", "1", ")"},
        Nest{"x = ", "[", "", "]"},
        Nest{"x = ", "-", "1", ""},
        Nest{"x = ", "not ", "1", ""},
        Nest{"x = ", "len(", "1", ")"},
        Nest{"a = [0] x = ", "a[", "0", "]"},
        Nest{"a = [0] ", "a[", "0", "]"},
        Nest{"", "if true then ", "x = 1", " end"},
        Nest{"", "while false do ", "x = 1", " end"},
        Nest{"", "if false then else ", "x = 1", " end"},
        Nest{"", "def f ", "x = 1", " end"},
    };
    for (const Nest& nest : kNests) {
        const std::string opened = nest.before + repeated(nest.open, kMillion);
        EXPECT_TRUE(isOverflow(result(opened))) << nest.open;
        EXPECT_TRUE(isOverflow(result(opened + nest.middle + repeated(nest.close, kMillion)))) << nest.open;
    }
    EXPECT_EQ(result("return " + repeated("(", 20) + "7" + repeated(")", 20)), "7");
}

TEST_P(NativeStack, LongExpressionsAreNotDeepOnes) {
    EXPECT_EQ(result("a = 1\nreturn a" + repeated("+a", kMillion - 1)), "1000000");
    EXPECT_EQ(result("return true" + repeated(" and true", kMillion)), "true");
    EXPECT_EQ(result("a = [0]\nreturn a" + repeated("[0]*0+a", kMillion / 10) + "[0]"), "0");
    EXPECT_EQ(result("return len([0" + repeated(",0", kMillion - 1) + "])"), "1000000");
    EXPECT_EQ(result(repeated("if false then elsif true then ", 1) + repeated("elsif true then ", kMillion / 10) +
                     "end return 5"),
              "5");
    const std::string sum = "a" + repeated("+a", kMillion / 10 - 1);
    for (const auto executor : {internal::ExecutorChoice::Automatic, internal::ExecutorChoice::BaselineOnly}) {
        const auto choose = [executor](RubyVM& vm) { RubyVM::Impl::of(vm).executor = executor; };
        EXPECT_EQ(result("def f(a) return " + sum + " end return [f(1), pcall(f, 1)]", choose),
                  "[100000, [true, 100000]]");
        const std::string guarded =
            "def f(a) if " + sum + " < 0 then error('no') end return " + sum + " end return [f(1), pcall(f, 1)]";
        EXPECT_EQ(result(guarded, choose), "[100000, [true, 100000]]");
    }
}

// Two lists nested a million deep, of arrays or of maps.
constexpr const char* kDeepLists =
    "def arrays(n) list = [] while n > 0 do list = [list] n = n - 1 end return list end\n"
    "def maps(n) list = nil while n > 0 do m = map_new() m['next'] = list list = m n = n - 1 end return list end\n"
    "a = arrays(1000000) b = arrays(1000000) m = maps(1000000) o = maps(1000000)\n"
    "def check(work) r = pcall(work) if len(r) == 3 then return string_end_with?(r[2], 'stack overflow') end "
    "return r[1] end\n";

TEST_P(NativeStack, MillionDeepData) {
    constexpr std::array kWorks{
        "len(to_s(a)) > 0", "len(to_s(m)) > 0",
        "a == b",           "m == o",
        "not (a != b)",     "len(a + 'x') > 0",
        "len('' + m) > 0",  "len(array_join([1, a, m])) > 0",
        "a == b == true",   "len(string_format('%s', a)) > 0",
    };
    std::string source = kDeepLists;
    std::size_t count = 0;
    for (const char* work : kWorks) {
        source += "def work" + std::to_string(count) + "() return " + work + " end\n";
        ++count;
    }
    source += "def sort_them() table_sort([a, 1, m, 'x']) return true end\n";
    source += "def print_them() puts(a, m) return true end\n";
    source += "def keys_of_them() m[a] = 1 return true end\n";
    source += "results = [check(sort_them)";
    for (std::size_t i = 0; i < count; ++i) {
        source += ", check(work" + std::to_string(i) + ")";
    }
    source += "]\nreturn [results, pcall(keys_of_them)[2]]";
    std::string expected = "[[true" + repeated(", true", count) + "], unsupported map key type]";
    EXPECT_EQ(result(source), expected);
}

TEST_P(NativeStack, MillionDeepDataIsFreed) {
    EXPECT_EQ(result(std::string(kDeepLists) +
                     "a = nil m = 1 table_clear(b) map_delete(o, 'next')\n"
                     "c = [arrays(1000000), maps(1000000)] c[0] = 1 array_pop(c) d = map_new() d['x'] = "
                     "maps(1000000) d['x'] = nil\n"
                     "def drop(x) x = nil return len(arrays(1000000)) end\nreturn [b, o, c, d, drop(maps(1000000))]"),
              "[[], {}, [1], {x: nil}, 1]");
}

TEST_P(NativeStack, CyclicData) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("file");
    writeFile(path, "before");
    const std::string cycles =
        "a = [1] array_push(a, a) b = [1] array_push(b, b) m = map_new() m['m'] = m o = map_new() o['m'] = o\n"
        "path = '" +
        path + "'\n";
    constexpr std::array kFailing{
        "to_s(a)",
        "to_s(m)",
        "puts(a)",
        "print(1, m)",
        "a + 'text'",
        "'text' + m",
        "a == b",
        "m == o",
        "a != b",
        "error(a)",
        "array_join(a, ',')",
        "table_concat([a, m])",
        "table_sort(a)",
        "table_sort([m, 2, 'x'])",
        "string_format('%s', a)",
        "write_file(path, a)",
        "append_file(path, m)",
        "bounce('to_s(a)')",
        "load('return to_s(a)')()",
        "range(1, 2) + [1] == a or a == b",
    };
    // The cycles are broken at the end, since they would never be freed.
    const std::string undo = " def undo() table_clear(a) table_clear(b) table_clear(m) table_clear(o) end undo()\n";
    for (const char* expression : kFailing) {
        const std::string text =
            result(cycles + "def work() x = " + expression + " return x end r = pcall(work) " + undo + "return r");
        EXPECT_TRUE(text.starts_with("[true, false, ") && text.ends_with("stack overflow]")) << expression << text;
    }
    // Rendering fails before the file is touched.
    EXPECT_EQ(readFile(path), "before");
    EXPECT_EQ(
        result(cycles +
               "r = [len(a), len(m), len(table_clone(a)), len(map_merge(m, o)), len(array_slice(a, 0)), "
               "len(array_reverse(a)), len(values(m)), keys(m), len(a + b), a[1][1][1][0], type_of(m['m']['m'])]" +
               undo + "return r"),
        "[2, 1, 2, 1, 2, 2, 1, [m], 4, 1, map]");
    // An array is compared with itself element by element too; only a differing scalar before the cycle decides
    // earlier.
    EXPECT_EQ(result(cycles + "b[0] = 2 r = [a == b, [a] == [b, 1]]" + undo + "return r"), "[false, false]");
}

TEST_P(NativeStack, NestedPcall) {
    const std::string source =
        "def dive(n) if n == 0 then return 'bottom' end return pcall(dive, n - 1) end\n"
        "def depth(r) d = 0 while type_of(r) == 'array' do d = d + 1 r = r[len(r) - 1] end return [d, r] end\n"
        "d = depth(dive(100000))\n"
        "return d[0] > 20 and (d[1] == 'bottom' and d[0] == 100000 or string_end_with?(d[1], 'stack overflow'))";
    EXPECT_EQ(result(source), "true");
}

TEST_P(NativeStack, RunawayRecursion) {
    constexpr std::array kRunaways{
        "def f(n) return f(n + 1) end f(0)",
        "def f(n) x = f(n + 1) return x end f(0)",
        "def f(n) return [f(n + 1)] end f(0)",
        "def f(n) g(n + 1) end def g(n) f(n + 1) end f(0)",
        "def f(n) return pcall(f, n + 1)[5] + 1 end f(0)",
        "real = error def f(n) if n < 0 then error('no') end return n end def error(x) return f(-1) end\n"
        "def run() return f(-1) end r = pcall(run) error = real error(r[2])",
    };
    for (const char* runaway : kRunaways) {
        const std::string text = result(runaway);
        EXPECT_TRUE(text.starts_with("error: ")) << runaway << text;
    }
    EXPECT_TRUE(isOverflow(result(kRunaways[0])));
}

TEST_P(NativeStack, MixedRecursion) {
    constexpr std::array kMixes{
        // Host, script and load in turn.
        "def dive(n) bounce('dive(1)') end dive(0)",
        "def dive(n) load('dive(1)')() end dive(0)",
        "def dive(n) pcall(0) load('bounce(\"dive(1)\")')() end dive(0)",
        "def dive(n) r = pcall(bounce, 'dive(1)') error(r[len(r) - 1]) end dive(0)",
        "source = 'load(source)()' load(source)()",
        "source = 'bounce(source)' bounce(source)",
        "source = 'pcall(error, load(source)())' bounce(source)",
    };
    for (const char* mix : kMixes) {
        const std::string text = result(mix);
        EXPECT_TRUE(isOverflow(text)) << mix << text;
    }
}

// Errors raised from far below, built-ins called there, and data built there.
TEST_P(NativeStack, WorkNearTheEndOfTheStack) {
    const TemporaryDirectory directory;
    const std::string source =
        "path = '" + directory.file("file") +
        "'\n"
        "def work()\n  m = map_new() m[2.5] = 1.25 s = [3, 'b', nil, 1.5] table_sort(s)\n"
        "  write_file(path, string_format('%f %s', 0.1, m)) append_file(path, to_f('1.5e10'))\n"
        "  t = read_file(path) + string_gsub('a1', '%d+', 'x') + math_floor(2.5) + string_join_all()\n"
        "  return load('return 1 + 1')() + len(t)\nend\n"
        "def string_join_all() return array_join(string_split('a,b,c', ','), '-') end\n"
        // On the way back from the end of the stack, the deepest calls do all this in protected mode: at their own
        // level, and one level further down, which the deepest one cannot reach.
        "def dive()\n  r = pcall(bounce, 'dive()')\n"
        "  if turn() then\n    w = pcall(work) note(len(w) == 3)\n"
        "    w = pcall(bounce, 'work()') note(len(w) == 3)\n  end\n  return r[len(r) - 1]\nend\n"
        "return string_end_with?(to_s(dive()), 'stack overflow')";
    constexpr int kTurns = 60;
    int turns = 0;
    int refused = 0;
    int done = 0;
    const auto bind = [&](RubyVM& vm) {
        vm.bindFunction("turn", [&turns](RubyVM&, RubyArguments) { return ++turns <= kTurns; });
        vm.bindFunction("note", [&](RubyVM&, RubyArguments arguments) {
            ++(arguments[0].isTruthy() ? refused : done);
            return RubyValue();
        });
    };
    EXPECT_EQ(result(source, bind), "true");
    EXPECT_GT(refused, 0);
    EXPECT_GT(turns, 0);
    EXPECT_GT(done, 0);
    EXPECT_EQ(refused + done, 2 * std::min(turns, kTurns));
}

// The sanitizers' frames are several times as large.
constexpr std::size_t kSmallStack = (kAddressSanitizer || kThreadSanitizer ? 512 : 128) * 1024;
constexpr std::size_t kMiddlingStack = 1024 * 1024;

INSTANTIATE_TEST_SUITE_P(Stacks, NativeStack, ::testing::Values(0U, kSmallStack, kMiddlingStack),
                         [](const ::testing::TestParamInfo<std::size_t>& stack) {
                             return stack.param == 0 ? "of_the_program"
                                                     : "of_" + std::to_string(stack.param / 1024) + "_KiB";
                         });

// Where in a call the stack ends depends on where the system placed the stack.
TEST(OverflowingCalls, NameTheirPlaceWhereverTheStackEnds) {
    struct Recursion {
        const char* source;
        std::vector<std::string> expected;
    };
    const std::vector<Recursion> recursions{
        {"def f(n)\nx = f(n + 1)\nreturn x\nend\nreturn pcall(f, 0)[2]", {"t:2: stack overflow"}},
        {"def f()\nr = pcall(f)\nif len(r) == 3 then\nreturn r[2]\nend\nreturn r[1]\nend\nreturn f()",
         {"t:2: stack overflow"}},
        {"def g(n)\nreturn n + 1\nend\ndef f(n)\nx = g(n)\ny = f(x)\nreturn y\nend\nreturn pcall(f, 0)[2]",
         {"t:2: stack overflow", "t:5: stack overflow", "t:6: stack overflow"}},
    };
    // More than one of the calls needs.
    constexpr std::size_t kLargestShift = kAddressSanitizer || kThreadSanitizer ? 8192 : 2048;
    constexpr std::size_t kStep = 32;
    for (std::size_t shift = kStep; shift <= kLargestShift; shift += kStep) {
        runOnStack(kSmallStack, [&] {
            auto* const shifted = static_cast<volatile char*>(alloca(shift));
            shifted[0] = 0;
            RubyVM vm;
            // The other executor uses no native stack for calls.
            RubyVM::Impl::of(vm).executor = internal::ExecutorChoice::BaselineOnly;
            for (const Recursion& recursion : recursions) {
                const std::string text = outcome(vm, recursion.source);
                EXPECT_EQ(std::count(recursion.expected.begin(), recursion.expected.end(), text), 1)
                    << text << ", shifted by " << shift;
            }
        });
    }
}

// The frames of the host use stack that the guard has not yet seen in use.
TEST(StackOfTheProgram, IsGuardedBelowTheFramesOfTheHost) {
    constexpr std::array<std::size_t, 3> kFrames{256 * 1024, 3 * 1024 * 1024, 6 * 1024 * 1024};
    RubyVM vm;
    for (const std::size_t size : kFrames) {
        [&]() __attribute__((noinline)) {
            auto* const frame = static_cast<volatile char*>(alloca(size));
            frame[0] = 0;
            EXPECT_EQ(outcome(vm, "a = [] array_push(a, a) r = pcall(to_s, a) table_clear(a) return r"),
                      "[true, false, stack overflow]");
            EXPECT_TRUE(isUsable(vm));
        }
        ();
    }
}

/// Runs the program with a small stack for its main thread.
ProcessOutcome runWithStack(const std::string& source, rlim_t bytes) {
    const TemporaryDirectory directory;
    writeFile(directory.file("script.rb"), source);
    ProcessSetup setup;
    setup.arguments = {directory.file("script.rb")};
    setup.prepare = limited(RLIMIT_STACK, bytes);
    return runProcess(setup);
}

TEST(ProgramWithALittleStack, EndsWithAnErrorLine) {
    constexpr rlim_t kStack = 256 * 1024;
    const std::vector<std::string> sources{
        "x = " + repeated("(", kMillion),
        repeated("if true then ", kMillion),
        "a = [] array_push(a, a) puts(a)",
        "m = map_new() m['m'] = m write_file('/dev/null', m)",
        "def f(n) return f(n + 1) end f(0)",
        "def f(n) return load('f(1)')() end f(0)",
        std::string(kDeepLists) + "error(check(to_s) or 'stack overflow')",
    };
    for (const std::string& source : sources) {
        const ProcessOutcome child = runWithStack(source, kStack);
        EXPECT_EQ(child.signal, 0) << source.substr(0, 60);
        EXPECT_EQ(child.status, 1) << source.substr(0, 60);
        EXPECT_TRUE(child.error.starts_with("morveltesk: ")) << child.error;
    }
    const ProcessOutcome fine =
        runWithStack("a = 1 puts(a" + repeated("+a", kMillion - 1) + ")\n" + std::string(kDeepLists) +
                         "def f(n) return pcall(f, n + 1) end f(0)\nputs(check(f))",
                     kStack);
    EXPECT_EQ(fine.status, 0) << fine.error;
    EXPECT_TRUE(fine.output.starts_with("1000000\n")) << fine.output;
}

TEST(ProgramWithUnlimitedStack, RunsAndRefuses) {
    EXPECT_EQ(runWithStack("puts(1)", RLIM_INFINITY).output, "1\n");
    EXPECT_EQ(
        runWithStack("x = " + repeated("(", kMillion) + "1" + repeated(")", kMillion) + " puts('end')", 8 * 1024 * 1024)
            .status,
        1);
}

}  // namespace

}  // namespace morvel::ruby::tests
