// Memory use follows live data: memory that a script once needed, for deep recursion, a long message or a name, is
// freed.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

#include "counting_allocator.h"
#include "morvel/ruby/vm.h"
#include "support.h"

namespace morvel::ruby::tests {

namespace {

constexpr std::size_t kMebibyte = 1024 * 1024;

/// The resident memory of the process in bytes.
std::size_t residentMemory() {
    std::ifstream file("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    file >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

bool runs(RubyVM& vm, const std::string& source) { return vm.runScriptString(source, "t").ok; }

std::size_t liveBytes() { return allocationCounts().liveBytes; }

constexpr const char* kRecursion =
    "def endless(n) return endless(n + 1) end "
    "def deep(n) if n == 0 then return 0 end return deep(n - 1) end";

TEST(RunawayRecursion, GivesItsStackBackWhenItIsCaught) {
    RubyVM vm;
    std::vector<std::size_t> resident;
    vm.bindFunction("measure", [&](RubyVM&, RubyArguments) {
        resident.push_back(residentMemory());
        return RubyValue();
    });
    ASSERT_TRUE(runs(vm, kRecursion));
    EXPECT_EQ(outcome(vm,
                      "measure() round = 0 while round < 2 do r = pcall(endless, 0) measure() round = round + 1 end "
                      "return r"),
              "[true, false, t:1: stack overflow]");
    ASSERT_EQ(resident.size(), 3u);
    for (std::size_t i = 1; i < resident.size(); ++i) {
        EXPECT_LT(resident[i], resident[0] + 16 * kMebibyte) << i;
    }
    EXPECT_LT(resident[2], resident[1] + 4 * kMebibyte);
}

TEST(RunawayRecursion, ReachesTheSameDepthEachTime) {
    RubyVM vm;
    ASSERT_TRUE(runs(vm, "depth = 0 def endless() depth = depth + 1 return endless() end"));
    const std::string depth = outcome(vm, "pcall(endless) return depth");
    EXPECT_EQ(outcome(vm, "depth = 0 pcall(endless) return depth"), depth);
    EXPECT_EQ(outcome(vm, "depth = 0 endless()"), "error: t:1: stack overflow");
    EXPECT_EQ(outcome(vm, "return depth"), depth);
}

TEST(DeepRecursion, GivesItsStackBackWhenTheRunEnds) {
    RubyVM vm;
    ASSERT_TRUE(runs(vm, kRecursion));
    const std::size_t before = residentMemory();
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(outcome(vm, "return deep(1000000)"), "0");
        EXPECT_LT(residentMemory(), before + 16 * kMebibyte);
        EXPECT_EQ(outcome(vm, "endless(0)"), "error: t:1: stack overflow");
        EXPECT_LT(residentMemory(), before + 16 * kMebibyte);
    }
}

TEST(LongMessages, AreGoneOnceDropped) {
    RubyVM vm;
    ASSERT_TRUE(runs(vm, "def fail() error(string_rep('x', 2000000)) end"));
    const std::size_t before = liveBytes();
    EXPECT_EQ(outcome(vm, "r = pcall(fail) size = len(r[2]) r = nil return size"), "2000000");
    EXPECT_LT(liveBytes(), before + kMebibyte);
    EXPECT_EQ(outcome(vm, "fail()").size(), 2'000'007u);
    EXPECT_LT(liveBytes(), before + kMebibyte);
}

TEST(LargeArrays, GiveTheirMemoryBackAsTheyAreEmptied) {
    RubyVM vm;
    const std::size_t before = liveBytes();
    const std::vector<std::string> removals{
        "i = 0 while i < 199990 do array_pop(a) i = i + 1 end",
        "array_pop(a, 199990) i = nil",
        "i = 0 while i < 199990 do table_remove(a) i = i + 1 end",
        "table_clear(a)",
    };
    for (const std::string& removal : removals) {
        ASSERT_TRUE(runs(vm, "a = range(0, 200000) " + removal));
        EXPECT_LT(liveBytes(), before + 2 * kMebibyte) << removal;
    }
    EXPECT_EQ(outcome(vm, "a = range(0, 200000) array_pop(a, 199991) array_push(a, 'more') return a"),
              "[0, 1, 2, 3, 4, 5, 6, 7, 8, 9, more]");
}

TEST(UndefinedNames, TakeMemoryOnlyWhileCodeMentionsThem) {
    RubyVM vm;
    ASSERT_TRUE(runs(vm,
                     // Names of equal length, since the last ones are still held at the end.
                     "number = 100000 def read_others(count) i = 0 while i < count do number = number + 1 "
                     "pcall(load('return an_undefined_name_' + number)) i = i + 1 end end"));
    ASSERT_TRUE(runs(vm, "read_others(1000)"));
    const std::size_t before = liveBytes();
    ASSERT_TRUE(runs(vm, kAddressSanitizer || kThreadSanitizer ? "read_others(1000)" : "read_others(10000)"));
    EXPECT_EQ(liveBytes(), before);
    EXPECT_EQ(outcome(vm, "return an_undefined_name_100007"),
              "error: t:1: undefined variable or function 'an_undefined_name_100007'");
}

// Retained code must keep referring to its own name while others come and go.
TEST(UndefinedNames, StayThoseOfTheCodeThatIsKept) {
    RubyVM vm;
    ASSERT_TRUE(runs(vm,
                     "kept = [] i = 0 while i < 300 do f = load('return name_' + i) pcall(f) "
                     "if i % 3 == 0 then array_push(kept, f) end i = i + 1 end"));
    // Other names reuse the freed slots, some of them permanently.
    ASSERT_TRUE(runs(vm,
                     "i = 0 while i < 300 do pcall(load('return other_' + i)) "
                     "if i % 2 == 0 then load('lasting_' + i + ' = \"lasting ' + i + '\"')() end i = i + 1 end"));
    EXPECT_EQ(outcome(vm, "return pcall(kept[5])"),
              "[true, false, <load>:1: undefined variable or function 'name_15']");
    for (int i = 0; i < 300; ++i) {
        vm.setGlobal("name_" + std::to_string(i), "value " + std::to_string(i));
    }
    for (int i = 0; i < 300; i += 3) {
        EXPECT_EQ(outcome(vm, "return kept[" + std::to_string(i / 3) + "]()"), "value " + std::to_string(i));
    }
    for (int i = 0; i < 300; i += 2) {
        const std::string number = std::to_string(i);
        EXPECT_EQ(outcome(vm, "return lasting_" + number), "lasting " + number);
    }
}

TEST(UndefinedNames, MayBeThoseOfCodeThatOutlivesItsVm) {
    RubyValue function;
    {
        RubyVM vm;
        ASSERT_TRUE(runs(vm, "def f() return nowhere end pcall(f)"));
        ASSERT_TRUE(vm.getGlobal("f", function));
    }
    RubyVM other;
    other.setGlobal("f", function);
    EXPECT_EQ(outcome(other, "return f()"), "error: t:1: undefined variable or function 'nowhere'");
}

}  // namespace

}  // namespace morvel::ruby::tests
