// Large buffers of dead arrays and strings are reused within the run, up to a bound, and then freed.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <cstddef>
#include <new>
#include <string>
#include <vector>

#include "counting_allocator.h"
#include "morvel/ruby/vm.h"
#include "support.h"

namespace morvel::ruby::tests {

namespace {

constexpr std::size_t kMebibyte = 1024 * 1024;
/// The most that arrays and strings may each keep, apart from one huge buffer while a script runs.
constexpr std::size_t kKept = 4 * kMebibyte;

std::size_t liveBytes() { return allocationCounts().liveBytes; }

long pageFaults() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

/// Each makes an array or string of at least 800 kilobytes and drops the previous one.
const std::array kMakers{
    "a = range(0, 100000)",
    "a = array_new(100000, 1)",
    "a = [] i = 0 while i < 100000 do array_push(a, i) i = i + 1 end",
    "a = [] i = 0 while i < 100000 do table_insert(a, i) i = i + 1 end",
    "a = [] i = 0 while i < 100000 do a[i] = i i = i + 1 end",
    "a = [] i = 1 while i < 100000 do a[i] = i i = i + 2 end",
    "a = array_slice(source, 1, 100000)",
    "a = table_clone(source)",
    "a = array_reverse(source)",
    "a = source + few",
    "a = keys(source)",
    "a = values(source)",
    "a = string_split(text, ',')",
    "a = string_byte(text, 1, 100000)",
    "a = string_rep('0123456789', 100000)",
    "a = '' i = 0 while i < 40000 do a = a + '01234567890123456789' i = i + 1 end",
    "a = array_join(few, text)",
};

TEST(LargeBuffers, ServeTheNext) {
    for (const char* const maker : kMakers) {
        RubyVM vm;
        const std::string make = std::string("def make() ") + maker + " return len(a) end ";
        std::size_t requested = 0;
        vm.bindFunction("measure", [&](RubyVM&, RubyArguments) {
            requested = allocationCounts().requestedBytes - requested;
            return RubyValue();
        });
        ASSERT_TRUE(vm.runScriptString("a = nil text = string_rep('1,', 60000) few = array_new(8, 'x') "
                                       "source = range(0, 100000) " +
                                           make + "make() make() make() measure() " +
                                           "make() make() make() make() make() measure()",
                                       "t")
                        .ok)
            << maker;
        // AddressSanitizer must see the end of every block, so nothing is kept under it.
        EXPECT_EQ(kAddressSanitizer, requested >= kMebibyte) << maker << ": " << requested;
    }
}

TEST(LargeBuffers, AreTouchedForTheFirstTimeOnlyOnce) {
    for (const char* const count : {"100000", "3000000"}) {
        RubyVM vm;
        std::vector<long> faults;
        vm.bindFunction("measure", [&](RubyVM&, RubyArguments) {
            faults.push_back(pageFaults());
            return RubyValue();
        });
        const std::string make = std::string("a = range(0, ") + count + ") ";
        // The old array is alive while the new one is made, so there are two buffers.
        ASSERT_TRUE(vm.runScriptString("a = nil measure() " + make + make + "measure() i = 0 while i < 10 do " + make +
                                           "i = i + 1 end measure()",
                                       "t")
                        .ok);
        ASSERT_EQ(faults.size(), 3u);
        // The sanitizers touch memory of their own.
        if (!kAddressSanitizer && !kThreadSanitizer) {
            EXPECT_LT(faults[2] - faults[1], (faults[1] - faults[0]) / 2 + 200) << count;
        }
    }
}

/// A VM whose scripts can call measure(), which notes the live bytes.
struct MeasuringVm {
    MeasuringVm() {
        vm.bindFunction("measure", [this](RubyVM&, RubyArguments) {
            live = liveBytes();
            return RubyValue();
        });
        before = liveBytes();
    }

    RubyVM vm;
    std::size_t before = 0;
    std::size_t live = 0;
};

TEST(LargeBuffers, AreFewMegabytes) {
    MeasuringVm measuring;
    ASSERT_TRUE(measuring.vm
                    .runScriptString("a = [] i = 0 while i < 40 do array_push(a, range(0, 50000)) "
                                     "array_push(a, string_rep('x', 700000 + i)) i = i + 1 end a = nil measure()",
                                     "t")
                    .ok);
    EXPECT_LT(measuring.live, measuring.before + 2 * kKept + kMebibyte);
}

TEST(HugeBuffers, GoAsOthersAreAskedFor) {
    MeasuringVm measuring;
    // First one buffer of 32 megabytes, then four that total as much.
    ASSERT_TRUE(measuring.vm
                    .runScriptString("a = range(1, 2097152) a = nil b = [] i = 0 "
                                     "while i < 4 do array_push(b, range(1, 524288)) i = i + 1 end measure()",
                                     "t")
                    .ok);
    EXPECT_LT(measuring.live, measuring.before + 32 * kMebibyte + 2 * kKept);
}

TEST(LargeBuffers, GoWithTheEndOfTheRun) {
    RubyVM vm;
    const std::size_t before = liveBytes();
    ASSERT_TRUE(vm.runScriptString("a = range(1, 2097152) a = range(1, 100000) a = string_rep('x', 30000000) "
                                   "a = string_rep('x', 1000000) a = nil",
                                   "t")
                    .ok);
    EXPECT_LT(liveBytes(), before + kMebibyte / 4);
}

TEST(LargeBuffers, AreNotKeptOutsideOfRuns) {
    RubyVM vm;
    const std::size_t before = liveBytes();
    for (const char* const script : {"return range(1, 100000)", "return range(1, 2097152)",
                                     "return string_rep('x', 1000000)", "return string_rep('x', 30000000)"}) {
        EXPECT_TRUE(vm.runScriptString(script, "t").ok);
    }
    EXPECT_LT(liveBytes(), before + kMebibyte / 4);
}

TEST(LargeBuffers, GoWhereMemoryIsShort) {
    MeasuringVm measuring;
    std::size_t kept = 0;
    measuring.vm.bindFunction("shorten", [&](RubyVM&, RubyArguments) {
        kept = liveBytes();
        // The handler that operator new calls before it fails. Under AddressSanitizer it has nothing to free.
        if (!kAddressSanitizer) {
            std::get_new_handler()();
        }
        return RubyValue();
    });
    ASSERT_TRUE(measuring.vm
                    .runScriptString("a = range(1, 100000) a = range(1, 2097152) a = string_rep('x', 1000000) a = nil "
                                     "shorten() measure()",
                                     "t")
                    .ok);
    EXPECT_EQ(kAddressSanitizer, kept <= measuring.before + 32 * kMebibyte);
    EXPECT_LT(measuring.live, measuring.before + kMebibyte / 2);
}

}  // namespace

}  // namespace morvel::ruby::tests
