// A host with several native stacks lets runs of one VM take turns. Only the innermost run may continue; any other
// fails and leaves the rest unchanged.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "fiber.h"
#include "morvel/ruby/vm.h"
#include "support.h"
#include "vm/impl.h"

namespace morvel::ruby::tests {

namespace {

using internal::ExecutorChoice;

constexpr const char* kElsewhere = "error: VM is running on another stack";

/// One VM and the fibers that run scripts on it. A script stops where it calls `pause`.
class Turns {
public:
    explicit Turns(ExecutorChoice executor) {
        RubyVM::Impl::of(m_vm).executor = executor;
        m_vm.bindFunction("pause", [this](RubyVM&, RubyArguments) {
            pause();
            return RubyValue();
        });
        m_vm.bindFunction("pause_and_throw", [this](RubyVM&, RubyArguments) -> RubyValue {
            pause();
            throw RubyError("thrown by the host");
        });
        m_vm.bindFunction("run", [](RubyVM& vm, RubyArguments arguments) {
            RubyResult result = vm.runScriptString(arguments[0].asString(), "inner");
            return result.ok ? result.value : RubyValue(result.error);
        });
    }

    /// Adds a fiber that runs a script when it is first resumed.
    std::size_t add(std::string source) {
        const std::size_t number = m_fibers.size();
        m_results.emplace_back();
        m_fibers.push_back(std::make_unique<Fiber>(
            [this, number, source = std::move(source)](Fiber&) { m_results[number] = outcome(m_vm, source); }));
        return number;
    }

    void resume(std::size_t number) {
        m_running = number;
        m_fibers[number]->resume();
    }

    /// Stops the fiber that is running.
    void pause() { m_fibers[m_running]->pause(); }

    /// The outcome of a fiber's script; empty until it has ended.
    [[nodiscard]] const std::string& result(std::size_t number) const { return m_results[number]; }
    [[nodiscard]] RubyVM& vm() { return m_vm; }

private:
    RubyVM m_vm;
    std::vector<std::unique_ptr<Fiber>> m_fibers;
    std::vector<std::string> m_results;
    std::size_t m_running = 0;
};

class FibersOnOneVm : public ::testing::TestWithParam<ExecutorChoice> {};

TEST_P(FibersOnOneVm, MayTakeTurnsAsLongAsTheInnermostEndsFirst) {
    Turns turns(GetParam());
    const std::size_t outer = turns.add("a = [1] pause() array_push(a, 2) return a");
    const std::size_t inner = turns.add("b = ['x'] pause() array_push(b, 'y') return b");
    for (const std::size_t next : {outer, inner, inner, outer}) {
        turns.resume(next);
    }
    EXPECT_EQ(turns.result(inner), "[x, y]");
    EXPECT_EQ(turns.result(outer), "[1, 2]");
    EXPECT_TRUE(isUsable(turns.vm()));
}

TEST_P(FibersOnOneVm, FailWhenAnotherRunIsFurtherIn) {
    Turns turns(GetParam());
    const std::string work =
        "def work(n, t) x = [n, t] if n == 0 then pause() return x end return work(n - 1, t) + x end ";
    const std::size_t outer = turns.add(work + "return work(20, 'outer')");
    const std::size_t inner = turns.add(work + "return len(work(30, 'inner'))");
    for (const std::size_t next : {outer, inner, outer, inner}) {
        turns.resume(next);
    }
    EXPECT_EQ(turns.result(outer), kElsewhere);
    EXPECT_EQ(turns.result(inner), "62");
    EXPECT_TRUE(isUsable(turns.vm()));
}

// pcall protects a script from its own failures; here another run has taken the VM.
TEST_P(FibersOnOneVm, CannotCatchThatFailure) {
    for (const char* call : {"pcall(pause)", "pcall(pause_and_throw)", "pcall(pcall, pause)", "pcall(f)",
                             "pcall(load('return pause()'))", "run('pause()')", "pcall(run, 'pause()')"}) {
        Turns turns(GetParam());
        const std::size_t outer = turns.add(std::string("def f() return pause() end r = ") + call + " return [1, r]");
        const std::size_t inner = turns.add("pause() return 'done'");
        for (const std::size_t next : {outer, inner, outer, inner}) {
            turns.resume(next);
        }
        EXPECT_EQ(turns.result(outer), kElsewhere) << call;
        EXPECT_EQ(turns.result(inner), "done") << call;
        EXPECT_TRUE(isUsable(turns.vm())) << call;
    }
}

// While another fiber's run waits, a host function may run scripts, which are then the innermost.
TEST_P(FibersOnOneVm, RunScriptsOnTopOfAnotherFibersRun) {
    Turns turns(GetParam());
    turns.vm().bindFunction("pause_and_run", [&turns](RubyVM& vm, RubyArguments) {
        turns.pause();
        EXPECT_EQ(outcome(vm, "def f(n) if n == 0 then return [] end return f(n - 1) + [n] end return len(f(99))"),
                  "99");
        return RubyValue();
    });
    const std::size_t outer = turns.add("pause_and_run() return 'not reached'");
    const std::size_t inner = turns.add("x = [1, 2] pause() return x");
    for (const std::size_t next : {outer, inner, outer, inner}) {
        turns.resume(next);
    }
    EXPECT_EQ(turns.result(outer), kElsewhere);
    EXPECT_EQ(turns.result(inner), "[1, 2]");
    EXPECT_TRUE(isUsable(turns.vm()));
}

// Resumes many fibers in random order and compares with a list of the runs in starting order.
TEST_P(FibersOnOneVm, KeepToTheRuleInAnyOrder) {
    constexpr std::size_t kFibers = 6;
    constexpr int kPauses = 3;
    const std::string source =
        "def deep(n, t) if n == 0 then pause() return [t] end return deep(n - 1, t + n) + [n] end "
        "def work() i = 0 while i < 3 do r = pcall(deep, 40 * (i + 1), 'text ') i = i + 1 end return len(r[1]) end "
        "return work()";
    for (unsigned seed = 0; seed < 60; ++seed) {
        std::mt19937 random(seed);
        Turns turns(GetParam());
        std::array<int, kFibers> resumed{};
        std::vector<std::size_t> going;
        std::vector<std::size_t> open;
        for (std::size_t i = 0; i < kFibers; ++i) {
            open.push_back(turns.add(source));
        }
        while (!open.empty()) {
            const std::size_t next = open[random() % open.size()];
            const bool mayGoOn = resumed[next] == 0 || going.back() == next;
            if (resumed[next] == 0) {
                going.push_back(next);
            }
            turns.resume(next);
            ++resumed[next];
            const bool hasEnded = !mayGoOn || resumed[next] == kPauses + 1;
            ASSERT_EQ(turns.result(next), !mayGoOn ? kElsewhere : hasEnded ? "121" : "") << seed;
            if (hasEnded) {
                going.erase(std::find(going.begin(), going.end(), next));
                open.erase(std::find(open.begin(), open.end(), next));
            }
        }
        ASSERT_TRUE(isUsable(turns.vm())) << seed;
    }
}

std::string executorName(const ::testing::TestParamInfo<ExecutorChoice>& choice) {
    return choice.param == ExecutorChoice::Automatic ? "Engine" : "BaselineInterpreter";
}

INSTANTIATE_TEST_SUITE_P(Executors, FibersOnOneVm,
                         ::testing::Values(ExecutorChoice::Automatic, ExecutorChoice::BaselineOnly), executorName);

}  // namespace

}  // namespace morvel::ruby::tests
