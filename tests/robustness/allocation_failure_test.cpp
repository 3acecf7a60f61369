// Every allocation of the runtime may fail: each is made to fail once alone, and once along with all that follow it.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <new>
#include <optional>
#include <ostream>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include "counting_allocator.h"
#include "morvel/ruby/map.h"
#include "morvel/ruby/vm.h"
#include "support.h"
#include "vm/impl.h"

namespace morvel::ruby::tests {

namespace {

struct Scenario {
    const char* name;
    const char* source;
    /// The rendered value when nothing fails.
    const char* expected;

    friend std::ostream& operator<<(std::ostream& out, const Scenario& scenario) { return out << scenario.name; }
};

// Together they call every built-in. They return no lists in which a swallowed failure could hide.
constexpr std::array kScenarios{
    Scenario{
        "language",
        "def fib(n)\n  if n < 2 then return n end\n  return fib(n - 1) + fib(n - 2)\nend\n"
        "def area(w, h) return w * h end\n"
        "def half(x) if x < 0 then error(\"negative\") end return x / 2 end\n"
        "def count(limit)\n  i = 0 s = \"\" list = []\n  while i < limit do\n    s = s + i + \",\"\n"
        "    list[i] = [i, -i, not i, i % 3]\n"
        "    if i == 2 then s[0] = \"zero\" elsif i == 3 and true then list[9] = nil else list[i] = s end\n"
        "    i = i + 1\n  end\n  return [s, list, len(list)]\nend\n"
        "names = map_new()\nnames[\"a long enough key to need memory\"] = fib\n"
        "names[3] = 'it\\'s a decoded literal, long enough'\nnames[2.5] = true\n"
        "[fib(8), area(6, 7), half(3), count(6), names, 1 < 2 or nil, \"a\" >= \"b\", [1] + [2, [3]] == [1, 2, [3]]]",
        "[21, 42, 1.5, [z,1,2,3,4,5,, [0,, 0,1,, [2, -2, false, 2], [3, -3, false, 0], z,1,2,3,4,, "
        "z,1,2,3,4,5,, nil, nil, nil, nil], 10], {a long enough key to need memory: [function fib], 3: it's a "
        "decoded literal, long enough, 2.5: true}, true, false, true]"},
    Scenario{"errors",
             "def raise_it(x) error(\"a message that is long enough to need memory: \" + x) end\n"
             "def far(n) if n == 0 then return nil + 1 end r = far(n - 1) return r end\n"
             "def guarded(x) if x > 1 then error(\"the guard's own message, long enough\") end return x end\n"
             "a = pcall(raise_it, 1)\nb = pcall(far, 5)\nc = pcall(guarded, 2)\nd = pcall(error, \"directly, and long "
             "enough too\")\ne = pcall(pcall, raise_it, 2)\nf = pcall(undefined_name_or_not, 1, 2)\n",
             "error: t:9: undefined variable or function 'undefined_name_or_not'"},
    Scenario{"load",
             "f = load(\"def inner(a, b) c = a + b return [c, a, b] end return inner(1, 'two')\")\n"
             "g = load('x = ', \"a chunk name that is long enough\")\n",
             "error: a chunk name that is long enough:1:5: expected expression"},
    Scenario{"core",
             "print(\"\") puts(\"a line of output that is longer than a short string\", [1, 2], nil)\ntime_ms()\n"
             "collect_garbage()\nmath_random_seed(7) r = math_random() q = math_random(3) p = math_random(2, 4)\n"
             "[len(\"abc\"), to_s(12.5), type_of([]), to_i(\"ff\", 16), to_f(\"0x10\"), to_number(\"1e3\"), "
             "range(1, 40, 3), r < 1, q > 0, p > 1, load(\"return 5\")()]",
             "[3, 12.5, array, 255, 16, 1000, [1, 4, 7, 10, 13, 16, 19, 22, 25, 28, 31, 34, 37, 40], true, true, true, "
             "5]"},
    Scenario{"arrays",
             "a = array_new(3, \"filler of more than sixteen bytes\")\narray_push(a, 1)\narray_push(a, 2, 3, 4)\n"
             "array_unshift(a, \"x\", \"y\")\nb = array_pop(a)\nc = array_pop(a, 2)\nd = array_shift(a)\n"
             "e = array_slice(a, 1, 2) f = array_reverse(c) g = array_join([1, 2.5, \"long enough to need memory\"], "
             "\", \")\n"
             "table_insert(c, 9) table_insert(c, 0, \"front\") h = table_remove(c, 1)\n"
             "s = [3, 1, 2] table_sort(s) t = [\"b\", \"c\", \"a\"] table_sort(t) u = [\"b\", 10, 9.5, [1], nil] "
             "table_sort(u)\n"
             "v = table_concat(u, \"-\") w = keys([7, 8]) x = values([7, 8]) y = table_clone([1, [2]]) table_clear(e)\n"
             "[a, b, c, d, e, f, g, h, s, t, u, v, w, x, y, table_get([1], 0), table_has_key([1], 4), array_new()]",
             "[[y, filler of more than sixteen bytes, filler of more than sixteen bytes, filler of more than sixteen "
             "bytes, 1], 4, [front, 3, 9], x, [], [3, 2], 1, 2.5, long enough to need memory, 2, [1, 2, 3], [a, b, c], "
             "[9.5, 10, [1], b, nil], 9.5-10-[1]-b-nil, [0, 1], [7, 8], [1, [2]], 1, false, []]"},
    Scenario{"maps",
             "m = map_new()\ni = 0\nwhile i < 30 do\n  m[\"a key of more than sixteen bytes \" + i] = i\n"
             "  m[i] = [i]\n  i = i + 1\nend\n"
             "i = 0\nwhile i < 25 do\n  map_delete(m, \"a key of more than sixteen bytes \" + i)\n  map_delete(m, i)\n"
             "  i = i + 1\nend\n"
             "n = map_new() table_set(n, \"first\", 1) table_set(n, 2.5, 2) table_set([], 3, 4)\n"
             "o = map_merge(m, n) p = map_clone(n) q = table_clone(p) table_clear(p)\n"
             "[len(m), keys(n), values(o), table_get(n, \"no\", \"default\"), table_has_key(q, 2.5), p, q == n, "
             "map_delete(q, \"none\", \"kept\")]",
             "[10, [2.5, first], [25, [25], 26, [26], 27, [27], 28, [28], 29, [29], 1, 2], default, true, {}, true, "
             "kept]"},
    Scenario{"math",
             "[math_floor(2.7), math_ceil(2.1), math_abs(-3), math_min(3, 1, 2), math_max(1, 3, 2), math_sin(0), "
             "math_cos(0), math_rad(0), math_log(1), math_sqrt(4), math_pow(2, 10), math_deg(0), math_exp(0), "
             "math_clamp(5, 1, 3)]",
             "[2, 3, 3, 1, 3, 0, 1, 0, 0, 2, 1024, 0, 1, 3]"},
    Scenario{
        "strings",
        "s = \"a text of words 12 and 345 that is long enough\"\n"
        "[string_upper(s), string_lower(s), string_sub(s, 3, 22), string_find(s, \"%d+\"), string_match(s, \"%d+\"), "
        "string_match(\"some-letters-77\", \"(%a+)%-(%d+)\"), string_gmatch(s, \"%d+\"), string_gmatch(s, \"t\"), "
        "string_byte(s, 1, 20), string_char(72, 105), string_format(\"%s %d %i %f %% and some more text\", s, 1.5, "
        "true, 0.5), string_rep(\"ab\", 20), string_gsub(s, \"%d\", \"<digit>\"), string_gsub(s, \"%d+\", \"<run>\"), "
        "string_gsub(s, \"t\", \"<t>\")]",
        "[A TEXT OF WORDS 12 AND 345 THAT IS LONG ENOUGH, a text of words 12 and 345 that is long enough, text of "
        "words 12 and, [17, 18], 12, [letters, 77], [12, 345], [t, t, t, t], [97, 32, 116, 101, 120, 116, 32, 111, "
        "102, 32, 119, 111, 114, 100, 115, 32, 49, 50, 32, 97], Hi, a text of words 12 and 345 that is long enough "
        "1 1 0.5 % and some more text, abababababababababababababababababababab, a text of words <digit><digit> and "
        "<digit><digit><digit> that is long enough, a text of words <run> and <run> that is long enough, a "
        "<t>ex<t> of words 12 and 345 <t>ha<t> is long enough]"},
    Scenario{
        "more strings",
        "s = \"  one,two,three,and a piece that is long enough  \"\n"
        "[string_split(s, \",\"), string_split(\"abc\", \"\"), string_split(s, \",\", 2), string_strip(s), "
        "string_lstrip(s), string_rstrip(s), string_reverse(s), string_include?(s, \"two\"), "
        "string_start_with?(s, \"  o\"), string_end_with?(s, \"x\"), utf8_len(s)]",
        "[[  one, two, three, and a piece that is long enough  ], [a, b, c], [  one, two,three,and a piece that is "
        "long enough  ], one,two,three,and a piece that is long enough, one,two,three,and a piece that is long "
        "enough  ,   one,two,three,and a piece that is long enough,   hguone gnol si taht eceip a dna,eerht,owt,eno "
        " , true, true, false, 49]"},
    Scenario{"files",
             "a = file_exists?(path) write_file(path, \"some content that is long enough\") append_file(path, [1, 2])\n"
             "b = read_file(path) c = file_exists?(path) write_file(path, \"\")\n[b, c, read_file(path)]",
             "[some content that is long enough[1, 2], true, ]"},
    Scenario{"long lists",
             "def many(n) return load(\"def f(\" + string_rep(\"p, \", n - 1) + \"q) r = [p, q] return r end "
             "return [f([2], \" + string_rep(\"1, \", n - 2) + \"0), len([\" + string_rep(\"[], \", 9) + "
             "string_rep(\"3, \", n) + \"4]), math_max(\" + string_rep(\"5, \", n) + \"6), f('a text that is "
             "long enough', \" + string_rep(\"7, \", n - 2) + \"8)]\")() end\nmany(300)",
             "[[[2], 1], 310, 6, [a text that is long enough, 7]]"},
    Scenario{"deep data",
             "def nest(n) list = [] while n > 0 do list = [list, \"s\" + n] n = n - 1 end return list end\n"
             "a = nest(12) b = nest(12) c = map_new() c[\"list\"] = a\n[a == b, len(to_s(a)), len(c)]",
             "[true, 77, 1]"},
};

// Does not print or touch the disk, so it works however little memory there is.
constexpr const char* kFollowUp =
    "def follow(n) if n == 0 then return [] end r = follow(n - 1) array_push(r, \"entry number \" + n) return r end\n"
    "m = map_new() m[\"list\"] = follow(3)\nreturn [m, pcall(error, \"no\"), type_of(nil)]";
constexpr const char* kFollowUpResult = "[{list: [entry number 1, entry number 2, entry number 3]}, [false, no], nil]";

struct Attempt {
    bool failed = false;
    std::string result;
    std::string followUp;
};

std::string textOf(const RubyResult& result) { return result.ok ? result.value.toString() : "error: " + result.error; }

/// Runs a scenario on a new VM with the `first`-th allocation failing, then another script without failures.
Attempt attempt(const Scenario& scenario, const std::string& path, std::size_t first, FailureMode mode) {
    Attempt made;
    const SilencedOutput silenced;
    // On its own thread, because memory kept for reuse is freed when the thread ends.
    std::thread([&] {
        RubyVM vm;
        vm.setGlobal("path", path);
        RubyResult result;
        const std::string source = scenario.source;
        const std::string chunk = "t";
        {
            FailingAllocations failures(first, mode);
            result = vm.runScriptString(source, chunk);
            made.failed = failures.stop();
        }
        made.result = textOf(result);
        made.followUp = textOf(vm.runScriptString(kFollowUp, "t"));
    }).join();
    return made;
}

class AllocationFailure : public ::testing::TestWithParam<std::tuple<Scenario, FailureMode>> {};

TEST_P(AllocationFailure, EndsInAnErrorAndLeaksNothing) {
    const auto& [scenario, mode] = GetParam();
    const TemporaryDirectory directory;
    const std::string path = directory.file("file");
    // Run once without failures, so that one-time set-up of the process is done before the counting starts.
    constexpr std::size_t kNever = 1U << 30;
    const Attempt smooth = attempt(scenario, path, kNever, mode);
    ASSERT_FALSE(smooth.failed);
    ASSERT_EQ(smooth.result, scenario.expected);
    ASSERT_EQ(smooth.followUp, kFollowUpResult);

    std::size_t points = 0;
    while (true) {
        const AllocationCounts before = allocationCounts();
        bool failed = false;
        {
            const Attempt made = attempt(scenario, path, points + 1, mode);
            failed = made.failed;
            // A failure may go unnoticed where the memory would only have saved time.
            if (!failed || made.result != scenario.expected) {
                ASSERT_EQ(made.result, failed ? "error: out of memory" : scenario.expected) << "allocation " << points;
            }
            ASSERT_EQ(made.followUp, kFollowUpResult) << "after allocation " << points;
        }
        const AllocationCounts after = allocationCounts();
        ASSERT_EQ(after.liveBlocks, before.liveBlocks) << "allocation " << points;
        ASSERT_EQ(after.liveBytes, before.liveBytes) << "allocation " << points;
        if (!failed) {
            break;
        }
        ++points;
    }
    // With fewer, the runtime's allocations would not be intercepted.
    constexpr std::size_t kFewestPoints = 20;
    EXPECT_GE(points, kFewestPoints);
    RecordProperty("points", static_cast<int>(points));
}

std::string parameterName(const ::testing::TestParamInfo<AllocationFailure::ParamType>& info) {
    std::string name = std::get<0>(info.param).name;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name + (std::get<1>(info.param) == FailureMode::OnlyOne ? "_only_one" : "_from_there_on");
}

INSTANTIATE_TEST_SUITE_P(Scenarios, AllocationFailure,
                         ::testing::Combine(::testing::ValuesIn(kScenarios),
                                            ::testing::Values(FailureMode::OnlyOne, FailureMode::FromThereOn)),
                         parameterName);

TEST(AllocationFailureCoverage, EveryBuiltInIsCalled) {
    RubyVM vm;
    std::string sources;
    for (const Scenario& scenario : kScenarios) {
        sources += scenario.source;
    }
    const auto& globals = RubyVM::Impl::of(vm).globals;
    std::size_t builtIns = 0;
    for (std::size_t slot = 0; slot < globals.size(); ++slot) {
        if (globals.isDefined(slot) && globals.value(slot).isFunction()) {
            ++builtIns;
            EXPECT_NE(sources.find(globals.nameOf(slot) + "("), std::string::npos) << globals.nameOf(slot);
        }
    }
    EXPECT_EQ(builtIns, 77U);
}

class ConstructionFailure : public ::testing::TestWithParam<FailureMode> {};

TEST_P(ConstructionFailure, ThrowsBadAllocAndLeaksNothing) {
    { const RubyVM warmUp; }
    std::size_t points = 0;
    bool failed = true;
    while (failed) {
        const AllocationCounts before = allocationCounts();
        std::thread([&] {
            FailingAllocations failures(points + 1, GetParam());
            std::optional<RubyVM> vm;
            bool threw = false;
            try {
                vm.emplace();
            } catch (const std::bad_alloc&) {
                threw = true;
            }
            failed = failures.stop();
            EXPECT_EQ(threw, failed);
            EXPECT_EQ(vm.has_value(), !failed);
            if (vm.has_value()) {
                EXPECT_TRUE(isUsable(*vm));
            }
        }).join();
        ASSERT_EQ(allocationCounts().liveBlocks, before.liveBlocks) << "allocation " << points;
        points += failed ? 1U : 0U;
    }
    EXPECT_GT(points, 77U);
}

INSTANTIATE_TEST_SUITE_P(Modes, ConstructionFailure, ::testing::Values(FailureMode::OnlyOne, FailureMode::FromThereOn));

/// Fails each allocation of a script in turn and checks that the outcome is `done` or reports the failure. Returns how
/// many failures the script itself handled and reported.
std::size_t failuresHandled(const std::string& source, const std::string& done) {
    std::size_t handled = 0;
    bool failed = true;
    for (std::size_t point = 1; failed; ++point) {
        std::thread([&] {
            RubyVM vm;
            RubyResult result;
            const std::string chunk = "t";
            {
                FailingAllocations failures(point, FailureMode::OnlyOne);
                result = vm.runScriptString(source, chunk);
                failed = failures.stop();
            }
            const std::string text = textOf(result);
            EXPECT_TRUE(text == done || text == "out of memory" || text == "error: out of memory") << text;
            handled += text == "out of memory" ? 1U : 0U;
            EXPECT_TRUE(isUsable(vm));
        }).join();
    }
    return handled;
}

// pcall catches the failure and the script continues: it returns either the value or the message.
TEST(AllocationFailureInPcall, TheScriptHandlesIt) {
    const std::string source =
        "def work(n) a = [] while n > 0 do array_push(a, \"a text of more than sixteen bytes \" + n) n = n - 1 end\n"
        "return len(a) end\n"
        "r = pcall(work, 20)\n"
        "if r[1] == 20 then return \"done\" end\nreturn r[2]";
    // Two for each iteration: the string and its box.
    EXPECT_GE(failuresHandled(source, "done"), 40U);
}

// The same for pcalls that make no real call: of error, and of a guarded function.
TEST(AllocationFailureInPcall, OfOtherFormsIsHandledToo) {
    const std::string rendered = "[a text of more than sixteen bytes, and another of that size]";
    const std::string list = "list = ['a text of more than sixteen bytes', 'and another of that size']\n";
    for (const std::string& call :
         {std::string("r = pcall(error, list)"),
          std::string("def f(x) if x == 1 then error('no') end return '' + x end r = pcall(f, list)")}) {
        // At least those of the growing text.
        EXPECT_GE(failuresHandled(list + call + "\nreturn r[1]", rendered), 2U) << call;
    }
}

// Values that hosts make from their own containers.
TEST(AllocationFailureInValues, LeaksNothing) {
    std::unordered_map<std::string, RubyValue> entries;
    for (int i = 0; i < 40; ++i) {
        entries["a key of more than sixteen bytes " + std::to_string(i)] = "a text of more than sixteen bytes";
    }
    const std::vector<std::function<void()>> makers{
        [&] { const RubyMap map(entries); },
        [&] { const RubyValue value(entries); },
        [&] { const RubyValue value(RubyMap{entries}); },
        [] { const RubyValue value(RubyArray(100, RubyValue("a text of more than sixteen bytes"))); },
    };
    for (const auto& make : makers) {
        bool failed = true;
        for (std::size_t point = 1; failed; ++point) {
            // Memory that a thread keeps for reuse is freed when the thread ends.
            const std::size_t before = allocationCounts().liveBytes;
            std::thread([&] {
                FailingAllocations failures(point, FailureMode::OnlyOne);
                try {
                    make();
                } catch (const std::bad_alloc&) {
                    EXPECT_TRUE(failures.stop());
                }
                failed = failures.stop();
            }).join();
            EXPECT_EQ(allocationCounts().liveBytes, before) << point;
        }
    }
}

// Calls by the host may fail too; they leave the VM unchanged.
TEST(AllocationFailureInHostCalls, LeavesTheVmAsItWas) {
    for (const FailureMode mode : {FailureMode::OnlyOne, FailureMode::FromThereOn}) {
        bool failed = true;
        for (std::size_t point = 1; failed; ++point) {
            RubyVM vm;
            const std::string name = "a_global_name_of_more_than_sixteen_bytes";
            const std::string function = "a_function_name_of_more_than_sixteen_bytes";
            const std::string source = "[1, 'two', " + name + "]";
            const std::string chunk = "a chunk name of more than sixteen bytes";
            const RubyValue value("a text of more than sixteen bytes");
            bool threw = false;
            FailingAllocations failures(point, mode);
            try {
                vm.setGlobal(name, value);
                vm.bindFunction(function, [value](RubyVM&, RubyArguments) { return value; });
                const RubyBytecode image = vm.compileScript(source, chunk);
                const std::string text = RubyVM::valueToString(vm.runBytecode(image).value);
            } catch (const std::bad_alloc&) {
                threw = true;
            }
            failed = failures.stop();
            EXPECT_TRUE(failed || !threw);
            vm.setGlobal(name, value);
            EXPECT_EQ(outcome(vm, "[" + name + ", 2]"), "[a text of more than sixteen bytes, 2]");
            EXPECT_TRUE(isUsable(vm));
        }
    }
}

TEST(AllocationFailureInMaps, KeepsNoKeyFromTheRoomOfErasedOnes) {
    RubyMap map;
    for (std::int64_t key = 0; key < 1000; ++key) {
        map.findOrInsert(RubyValue(key)) = RubyValue(key);
    }
    for (std::int64_t key = 0; key < 900; ++key) {
        map.take(RubyValue(key));
    }
    FailingAllocations failures(1, FailureMode::FromThereOn);
    EXPECT_NO_THROW(map.findOrInsert(RubyValue(5000)) = RubyValue(5000));
    EXPECT_TRUE(failures.stop());
    EXPECT_EQ(map.size(), 101u);
    EXPECT_EQ(map.at("999").asInteger(), 999);
    EXPECT_EQ(map.at("5000").asInteger(), 5000);
    EXPECT_FALSE(map.contains("7"));
}

}  // namespace

}  // namespace morvel::ruby::tests
