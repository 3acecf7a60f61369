// How hosts use VMs and values: lifetimes, moves, threads, many runs.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "counting_allocator.h"
#include "morvel/ruby/vm.h"
#include "support.h"

namespace morvel::ruby::tests {

namespace {

RubyValue globalOf(const RubyVM& vm, const std::string& name) {
    RubyValue value;
    EXPECT_TRUE(vm.getGlobal(name, value)) << name;
    return value;
}

TEST(Values, OutliveTheirVm) {
    RubyValue list;
    RubyValue script;
    RubyValue host;
    RubyValue result;
    {
        RubyVM vm;
        vm.bindFunction("host", [kept = std::make_shared<int>(5)](RubyVM&, RubyArguments) { return RubyValue(*kept); });
        result = vm.runScriptString(
                       "list = [1, 'text', map_new()]\nm = list[2]\nm['f'] = len\ndef script(x) return x end\n"
                       "return [list, script, host]",
                       "t")
                     .value;
        list = globalOf(vm, "list");
        script = globalOf(vm, "script");
        host = globalOf(vm, "host");
    }
    EXPECT_EQ(list.toString(), "[1, text, {f: [function len]}]");
    EXPECT_EQ(result.toString(), "[[1, text, {f: [function len]}], [function script], [function host]]");
    list.asArray()[2].asMap()["g"] = script;
    EXPECT_EQ(list.asArray()[2].toString(), "{f: [function len], g: [function script]}");
    list = RubyValue();
    result = RubyValue();
    EXPECT_EQ(script.toString(), "[function script]");
    EXPECT_EQ(host.toString(), "[function host]");
}

TEST(Values, MoveBetweenVms) {
    RubyVM first;
    RubyVM second;
    ASSERT_TRUE(first
                    .runScriptString("base = 10 def add(x) return x + base end def count(n) c = 0 while c < n do c = c "
                                     "+ 1 end return c end m = map_new() m['k'] = 'v' data = [1, m]",
                                     "first")
                    .ok);
    second.setGlobal("add", globalOf(first, "add"));
    second.setGlobal("count", globalOf(first, "count"));
    second.setGlobal("data", globalOf(first, "data"));
    // A script function runs on the VM that calls it, with that VM's globals.
    EXPECT_EQ(outcome(second, "base = 100 return [add(1), count(5), data]"), "[101, 5, [1, {k: v}]]");
    EXPECT_EQ(outcome(first, "return [add(1), count(5)]"), "[11, 5]");
    EXPECT_EQ(outcome(second, "array_push(data, add) return data[2](7)"), "107");
    EXPECT_EQ(outcome(first, "return [len(data), data[2](7)]"), "[3, 17]");
    first = RubyVM();
    EXPECT_EQ(outcome(second, "return [add(2), count(6), data[2](1)]"), "[102, 6, 101]");
    EXPECT_TRUE(isUsable(first));
}

TEST(Vms, MoveWhileIdle) {
    RubyVM first;
    first.bindFunction("self", [](RubyVM& vm, RubyArguments) {
        vm.setGlobal("seen", 5);
        return RubyValue(vm.runScriptString("seen + 1", "inner").value);
    });
    ASSERT_TRUE(first.runScriptString("def f(n) if n == 0 then return self() end return f(n - 1) end", "t").ok);
    RubyVM second(std::move(first));
    EXPECT_EQ(outcome(second, "return f(3)"), "6");
    RubyVM third;
    ASSERT_TRUE(third.runScriptString("gone = 1", "t").ok);
    third = std::move(second);
    EXPECT_EQ(outcome(third, "return f(3)"), "6");
    EXPECT_EQ(outcome(third, "gone"), "error: t:1: undefined variable or function 'gone'");
    auto& alias = third;
    third = std::move(alias);
    EXPECT_EQ(outcome(third, "return f(3)"), "6");
    std::vector<RubyVM> many;
    for (int i = 0; i < 20; ++i) {
        many.emplace_back();
        ASSERT_TRUE(many.back().runScriptString("mine = " + std::to_string(i), "t").ok);
    }
    for (std::size_t i = 0; i < many.size(); ++i) {
        EXPECT_EQ(outcome(many[i], "mine"), std::to_string(i));
    }
    // A moved-from VM may be assigned to.
    second = RubyVM();
    EXPECT_TRUE(isUsable(second));
}

TEST(Vms, MoveFromThreadToThread) {
    auto vm = std::make_unique<RubyVM>();
    ASSERT_TRUE(
        vm->runScriptString("def down(n) if n == 0 then return [] end return [down(n - 1)] end x = down(50)", "t").ok);
    for (int i = 0; i < 4; ++i) {
        std::thread([&] {
            EXPECT_EQ(outcome(*vm, "x = [x, 'a text from a thread ' + len(x)] y = down(30) return len(x)"), "2");
        }).join();
    }
    // Values made on threads that have ended are freed here.
    EXPECT_TRUE(isUsable(*vm));
    vm.reset();
}

TEST(Vms, RunOnManyThreadsAtOnce) {
    constexpr int kThreads = 8;
    constexpr int kRuns = 20;
    std::vector<std::string> results(kThreads);
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([&results, number] {
            for (int run = 0; run < kRuns; ++run) {
                RubyVM vm;
                vm.setGlobal("number", number);
                results[static_cast<std::size_t>(number)] = outcome(
                    vm,
                    "def fib(n) if n < 2 then return n end return fib(n - 1) + fib(n - 2) end\n"
                    "m = map_new() i = 0 while i < 200 do m['key ' + i] = [i, to_f('1.5'), to_s(i)] i = i + 1 end\n"
                    "math_random_seed(number) math_random(1, 6) time_ms() s = range(50, 1, -1) table_sort(s)\n"
                    "r = pcall(load, 'x = ') deep = [] i = 0 while i < 2000 do deep = [deep] i = i + 1 end\n"
                    "def forever(n) return forever(n + 1) end\n"
                    "return [fib(12), len(m), s[0], len(r), len(to_s(m)) > 100, string_format('%f', 0.5), number]");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int number = 0; number < kThreads; ++number) {
        EXPECT_EQ(results[static_cast<std::size_t>(number)],
                  "[144, 200, 1, 3, true, 0.5, " + std::to_string(number) + "]");
    }
}

TEST(Vms, ManyAtOnceOnOneThread) {
    std::vector<std::unique_ptr<RubyVM>> vms;
    for (int i = 0; i < 200; ++i) {
        vms.push_back(std::make_unique<RubyVM>());
        vms.back()->setGlobal("x", i);
    }
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(outcome(*vms[static_cast<std::size_t>(i)], "x * 2"), std::to_string(i * 2));
    }
}

TEST(Callbacks, MayOutliveNothingButTheirVm) {
    const auto held = std::make_shared<int>(7);
    {
        RubyVM vm;
        vm.bindFunction("f", [held](RubyVM&, RubyArguments) { return RubyValue(*held); });
        vm.bindFunction("f", [held](RubyVM&, RubyArguments) { return RubyValue(*held + 1); });
        EXPECT_EQ(held.use_count(), 2);
        EXPECT_EQ(outcome(vm, "f()"), "8");
    }
    EXPECT_EQ(held.use_count(), 1);
}

/// Counts its live instances in a counter that must outlive them.
class Counted {
public:
    explicit Counted(int& alive) : m_alive(alive) { ++m_alive; }
    ~Counted() { --m_alive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

private:
    int& m_alive;
};

void bindCounted(RubyVM& vm, const std::string& name, int& alive) {
    vm.bindFunction(name, [counted = std::make_shared<Counted>(alive)](RubyVM&, RubyArguments) { return 1; });
}

TEST(Callbacks, EndWithTheirVmAlsoWithinARunOfAnother) {
    RubyVM outer;
    std::vector<int> alive;
    outer.bindFunction("job", [&alive](RubyVM&, RubyArguments) {
        const auto count = std::make_unique<int>(0);
        {
            RubyVM inner;
            bindCounted(inner, "f", *count);
            bindCounted(inner, "g", *count);
            bindCounted(inner, "g", *count);
            (void)inner.runScriptString("list = [f, g] f()", "inner");
            inner = RubyVM();
            alive.push_back(*count);
            bindCounted(inner, "f", *count);
        }
        alive.push_back(*count);
        return RubyValue();
    });
    EXPECT_EQ(outcome(outer, "job() job() return pcall(job)[0]"), "true");
    EXPECT_EQ(alive, (std::vector<int>{0, 0, 0, 0, 0, 0}));
}

TEST(Callbacks, EndWithTheirVmAlsoWithinTheEndOfAnotherOne) {
    struct Plugin {
        Plugin() { bindCounted(vm, "f", *count); }
        // The VM is destroyed first.
        std::unique_ptr<int> count = std::make_unique<int>(0);
        RubyVM vm;
    };
    RubyVM outer;
    int ended = 0;
    const auto end = [&ended](Plugin* plugin) {
        delete plugin;
        ++ended;
    };
    outer.bindFunction("plugin", [plugin = std::shared_ptr<Plugin>(new Plugin, end)](RubyVM&, RubyArguments) {
        return plugin->vm.runScriptString("return f()", "plugin").value;
    });
    EXPECT_EQ(outcome(outer, "plugin()"), "1");
    outer.setGlobal("plugin", nullptr);
    EXPECT_EQ(ended, 1);
}

/// Runs a script in its destructor.
class LastScript {
public:
    LastScript(RubyVM& vm, std::string source, std::vector<std::string>& results)
        : m_vm(vm), m_source(std::move(source)), m_results(results) {}
    ~LastScript() { m_results.push_back(outcome(m_vm, m_source)); }
    LastScript(const LastScript&) = delete;
    LastScript& operator=(const LastScript&) = delete;

private:
    RubyVM& m_vm;
    std::string m_source;
    std::vector<std::string>& m_results;
};

TEST(Callbacks, MayUseTheirVmAsItEnds) {
    std::vector<std::string> results;
    {
        RubyVM vm;
        const auto bind = [&](const std::string& name, const std::string& source) {
            vm.bindFunction(name, [last = std::make_shared<LastScript>(vm, source, results)](RubyVM&, RubyArguments) {
                return RubyValue();
            });
        };
        bind("a", "def f(n) if n == 0 then return [] end return [f(n - 1)] end return f(3)");
        bind("b", "a = 1 new_name = [a] another = b return len(new_name)");
        bind("c", "array_push(list, 1)");
        vm.setGlobal("list", RubyArray{1, 2});
        EXPECT_EQ(outcome(vm, "held = [a, b, map_new()] table_set(held[2], 'c', c) a = nil b = nil c = nil"), "nil");
        EXPECT_TRUE(results.empty());
    }
    EXPECT_EQ(results, (std::vector<std::string>{"[[[[]]]]", "1", "[1, 2, 1]"}));
}

// A script that runs in a destructor must not accumulate memory.
TEST(Callbacks, MayRunForLongAsTheyEnd) {
    RubyVM other;
    std::vector<std::size_t> live;
    other.bindFunction("look", [&live](RubyVM&, RubyArguments) {
        live.push_back(allocationCounts().liveBytes);
        return RubyValue();
    });
    std::vector<std::string> results;
    RubyVM vm;
    const std::string source = "look() i = 0 while i < 10000 do x = [i, [i]] i = i + 1 end x = nil look() return i";
    vm.bindFunction("f", [last = std::make_shared<LastScript>(other, source, results)](RubyVM&, RubyArguments) {
        return RubyValue();
    });
    live.reserve(2);
    vm.setGlobal("f", nullptr);
    EXPECT_EQ(results, std::vector<std::string>{"10000"});
    ASSERT_EQ(live.size(), 2U);
    constexpr std::size_t kKeptForReuse = 100'000;
    EXPECT_LT(live[1], live[0] + kKeptForReuse);
}

TEST(Callbacks, MayBeEmpty) {
    RubyVM vm;
    vm.bindFunction("empty", RubyHostFunction());
    vm.bindFunction("null", static_cast<RubyValue (*)(RubyVM&, RubyArguments)>(nullptr));
    for (const char* name : {"empty", "null"}) {
        EXPECT_EQ(outcome(vm, std::string(name) + "()"), "error: bad_function_call");
        EXPECT_EQ(outcome(vm, std::string("pcall(") + name + ")"), "[true, false, bad_function_call]");
        EXPECT_EQ(outcome(vm, std::string("to_s(") + name + ")"), std::string("[function ") + name + "]");
    }
    vm.setGlobal("no_handle", RubyValue(std::unique_ptr<RubyFunctionHandle>()));
    EXPECT_EQ(outcome(vm, "no_handle()"), "error: t:1: function handle is empty");
    EXPECT_EQ(outcome(vm, "pcall(no_handle)"), "[false, pcall function handle is empty]");
    EXPECT_TRUE(isUsable(vm));
}

// A million runs on one VM if the build is fast enough.
TEST(ManyRuns, DoNotGrowMemory) {
    const std::vector<std::string> sources{
        "1 + 1",
        "def f(n) if n == 0 then return 0 end return f(n - 1) end x = f(5) y = [1, 'text', x]",
        "def x_or_not() return 1 end m = map_new() m['k'] = [1] s = 'a text that is long enough' + x_or_not() "
        "def x_or_not() return 1 end",
        "def g() error('expected') end g()",
        "pcall(load, 'def h(a, b) return a + b end return h(1, 2)')[1]()",
        "a = [] i = 0 while i < 20 do array_push(a, 'item ' + i) i = i + 1 end return array_join(a, ',')",
    };
    constexpr int kRounds = kAddressSanitizer || kThreadSanitizer ? 500 : kOptimised ? 41'667 : 20'000;
    RubyVM vm;
    const auto liveBytesAfterRounds = [&] {
        for (int round = 0; round < kRounds; ++round) {
            for (const std::string& source : sources) {
                const RubyResult result = vm.runScriptString(source, "t");
                EXPECT_TRUE(result.ok || result.error == "expected") << result.error;
            }
        }
        return allocationCounts().liveBytes;
    };
    // The first runs fill the caches of reusable memory.
    liveBytesAfterRounds();
    const std::size_t early = liveBytesAfterRounds();
    liveBytesAfterRounds();
    EXPECT_EQ(liveBytesAfterRounds(), early);
}

TEST(ManyVms, DoNotGrowMemory) {
    const auto round = [] {
        for (int i = 0; i < 50; ++i) {
            RubyVM vm;
            EXPECT_TRUE(isUsable(vm));
        }
        return allocationCounts().liveBytes;
    };
    const std::size_t first = round();
    round();
    EXPECT_EQ(round(), first);
}

TEST(ManyVms, LeaveLittleBehindForReuse) {
    const auto work = [] {
        RubyVM vm;
        EXPECT_EQ(outcome(vm,
                          "a = [] i = 0 while i < 30000 do m = map_new() m['a key of more than sixteen bytes'] = [i]\n"
                          "array_push(a, m) array_push(a, 'text ' + i) i = i + 1 end a = nil"),
                  "nil");
    };
    std::thread([&work] {
        { const RubyVM warmUp; }
        const std::size_t before = allocationCounts().liveBytes;
        work();
        const std::size_t after = allocationCounts().liveBytes;
        constexpr std::size_t kLittle = 100'000;
        EXPECT_LT(after, before + kLittle);
        work();
        EXPECT_LE(allocationCounts().liveBytes, after);
    }).join();
}

}  // namespace

}  // namespace morvel::ruby::tests
