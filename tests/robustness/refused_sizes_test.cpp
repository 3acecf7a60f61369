// The cost of failed allocations: free memory is returned to the system only when memory has run short. And the cost of
// refusing sizes: the system is not asked for its limits again and again.
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/resource.h>

#include <cstddef>
#include <new>

#include "morvel/ruby/vm.h"
#include "support.h"

namespace {

std::size_t walks = 0;
std::size_t questions = 0;

}  // namespace

/// Replaces the allocator's function, which walks through all free memory of the process.
extern "C" int malloc_trim(std::size_t /*pad*/) {
    ++walks;
    return 0;
}

/// Replaces the system's function and gives the same answer.
extern "C" int getrlimit(__rlimit_resource_t resource, struct rlimit* limits) noexcept {
    ++questions;
    return prlimit(0, static_cast<__rlimit_resource>(resource), nullptr, limits);
}

namespace morvel::ruby::tests {

namespace {

constexpr const char* kSizes =
    "def text() return string_rep('x', 9000000000000000000) end "
    "def list() return array_new(9000000000000000000) end "
    "def store() a = [] a[9000000000000000000] = 1 end ";

TEST(RefusedSizes, LeaveFreeMemoryAlone) {
    RubyVM vm;
    ASSERT_TRUE(vm.runScriptString(kSizes, "t").ok);
    walks = 0;
    for (const char* const script :
         {"r = pcall(text) return r[2]", "r = pcall(list) return r[2]", "r = pcall(store) return r[2]",
          "r = pcall(pcall, text) return r[1][2]", "r = pcall(string_rep, 'x', 9000000000000000000) return r[2]"}) {
        EXPECT_EQ(outcome(vm, script), "out of memory") << script;
    }
    EXPECT_EQ(vm.runScriptString("text()", "t").error, "out of memory");
    EXPECT_EQ(walks, 0u);
}

TEST(FailedAllocations, GatherFreeMemory) {
    RubyVM vm;
    vm.bindFunction("fail", [](RubyVM&, RubyArguments) -> RubyValue { throw std::bad_alloc(); });
    walks = 0;
    EXPECT_EQ(outcome(vm, "def f() fail() end r = pcall(f) return r[2]"), "out of memory");
    EXPECT_GT(walks, 0u);
}

TEST(GrowingArrays, AskForTheLimitsAsSeldomAsTheyMove) {
    RubyVM vm;
    questions = 0;
    EXPECT_EQ(outcome(vm, "a = [] i = 1 while i < 300000 do a[i] = i i = i + 2 end return a[299999]"), "299999");
    EXPECT_GT(questions, 0u);
    EXPECT_LT(questions, 100u);
}

}  // namespace

}  // namespace morvel::ruby::tests
