// Sizes beyond any machine's memory fail at once with an ordinary error, and memory use stays proportionate.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <string>

#include "morvel/ruby/vm.h"
#include "support.h"

namespace morvel::ruby::tests {

namespace {

constexpr std::size_t kMebibyte = 1024 * 1024;

TEST(ImpossibleSizes, AreOutOfMemoryAtOnce) {
    constexpr std::array kRequests{
        "array_new(1000000000000)",
        "array_new(9223372036854775807)",
        "array_new(1000000000000, 'x')",
        "range(9000000000000000000)",
        "range(0, 9000000000000000000)",
        "range(-9000000000000000000, 9000000000000000000)",
        "range(9223372036854775807, -9223372036854775807, -1)",
        "range(0, 9000000000000000000, 100000)",
        "string_rep('x', 1000000000000)",
        "string_rep('x', 9223372036854775807)",
        "string_rep('0123456789', 900000000000000000)",
        "string_gsub(string_rep('x', 1000000), 'x', string_rep('y', 1000000))",
        "string_gsub(string_rep('1', 1000000), '%d', string_rep('y', 1000000))",
        "string_gsub(string_rep('1 ', 1000000), '%d+', string_rep('y', 1000000))",
        "array_join(array_new(1000000, string_rep('x', 1000000)), '')",
        "array_join(array_new(1000000, ''), string_rep('x', 1000000))",
        "table_concat(array_new(1000000, string_rep('x', 1000000)))",
        "format_many(200000)",
        "table_set([1], 1000000000000, 1)",
        "table_set([1], 9223372036854775807, 1)",
        "table_set([], to_f('1e300'), 1)",
        "store([1], 1000000000000)",
        "store([1], 9223372036854775807)",
        "store([1], 1152921504606846976)",
        "store([1], to_f('1e19'))",
    };
    const ProcessOutcome child = runInChild(
        [&] {
            RubyVM vm;
            (void)vm.runScriptString(
                "def store(a, i) a[i] = 1 return a end\n"
                "def format_many(times)\n"
                "return load(\"string_format('\" + string_rep('%s', times) + \"'\" + string_rep(', big', times) + "
                "')')()"
                " end big = string_rep('x', 10000000)",
                "t");
            bool isRight = true;
            for (const char* request : kRequests) {
                const std::string caught = outcome(
                    vm, std::string("def work() r = ") + request + " return len(r) end r = pcall(work) return r");
                const std::string raised = outcome(vm, std::string("x = ") + request);
                if (caught != "[true, false, out of memory]" || raised != "error: out of memory" || !isUsable(vm)) {
                    (void)std::fprintf(stderr, "%s: %s, %s\n", request, caught.c_str(), raised.c_str());
                    isRight = false;
                }
            }
            return isRight ? 0 : 1;
        },
        20);
    EXPECT_EQ(child.status, 0) << child.error;
    EXPECT_EQ(child.signal, 0);
    EXPECT_LT(child.cpuTime, std::chrono::seconds(5));
    // Little more than the test program itself needs.
    EXPECT_LT(child.peakMemory, (kAddressSanitizer || kThreadSanitizer ? 800 : 100) * kMebibyte);
}

TEST(ImpossibleSizes, AreRefusedByTheProgram) {
    for (const char* request : {"a = array_new(1000000000000)", "a = [] a[1000000000000] = 1",
                                "s = string_rep('x', 1000000000000)", "r = range(0, 9000000000000000000)"}) {
        const TemporaryDirectory directory;
        writeFile(directory.file("s.rb"), request);
        ProcessSetup setup;
        setup.arguments = {directory.file("s.rb")};
        const ProcessOutcome child = runProcess(setup);
        EXPECT_EQ(child.status, 1);
        EXPECT_EQ(child.error, "morveltesk: out of memory\n");
        EXPECT_LT(child.cpuTime, std::chrono::seconds(2));
        EXPECT_LT(child.peakMemory, (kAddressSanitizer || kThreadSanitizer ? 400 : 40) * kMebibyte);
    }
}

// The same string many times: it is neither copied nor compared with itself.
TEST(SortingALongText, NeedsNeitherMemoryNorTimeForEachOfItsPlaces) {
    const ProcessOutcome child = runInChild(
        [] {
            const std::string made = "text = string_rep('x', 1000000) a = array_new(2000, text) ";
            const bool isSorted =
                outcome(made + "table_sort(a) return [len(a), a[0] == text]") == "[2000, true]" &&
                outcome(made + "array_push(a, nil) table_sort(a) return [a[0], a[1] == text]") == "[nil, true]";
            return isSorted ? 0 : 1;
        },
        20);
    EXPECT_EQ(child.status, 0) << child.error;
    EXPECT_LT(child.cpuTime, std::chrono::seconds(2));
    EXPECT_LT(child.peakMemory, (kAddressSanitizer || kThreadSanitizer ? 400 : 40) * kMebibyte);
}

TEST(LargeCountsWithoutLargeResults, NeedNoMemory) {
    EXPECT_EQ(
        outcome("return [string_rep('', 9223372036854775807), string_rep('x', -9223372036854775807), "
                "range(5, 1), range(1, 9223372036854775807, 9223372036854775806), "
                "string_sub('abc', -9223372036854775807, 9223372036854775807), "
                "string_byte('ab', 1, 9223372036854775807), array_slice([1, 2], 1, 9223372036854775807), "
                "array_slice([1, 2], -9223372036854775807), array_pop([1], 9223372036854775807), "
                "string_split('a,b', ',', 9223372036854775807), table_get([1], 9223372036854775807), "
                "table_has_key([1], -9223372036854775807), 'abc'[9223372036854775807], [1][9223372036854775807]]"),
        "[, , [], [1, 9223372036854775807], abc, [97, 98], [2], [], [1], [a, b], nil, false, nil, nil]");
    EXPECT_EQ(outcome("string_rep('0123456789', 9223372036854775807)"), "error: string_rep result is too large");
}

}  // namespace

}  // namespace morvel::ruby::tests
