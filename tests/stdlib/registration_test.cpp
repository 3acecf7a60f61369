// The standard library of a new VM.
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "morvel/ruby/error.h"
#include "support/builtins.h"
#include "support/describe.h"
#include "support/runs.h"
#include "vm/calling.h"
#include "vm/errors.h"
#include "vm/impl.h"

namespace morvel::ruby::tests {
namespace {

TEST(Registration, TwoVersionsThenTheBuiltIns) {
    RubyVM vm;
    const internal::GlobalTable& globals = RubyVM::Impl::of(vm).globals;
    const std::vector<std::string> names = builtinNames();
    ASSERT_EQ(names.size() + 2, globals.size());
    EXPECT_EQ("_VERSION", globals.nameOf(0));
    EXPECT_EQ("\"MorvelTesk 0.2\"", describe(globals.value(0)));
    EXPECT_EQ("MORVELTESK_VERSION", globals.nameOf(1));
    EXPECT_EQ("\"0.2\"", describe(globals.value(1)));
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(names[i], globals.nameOf(i + 2));
        EXPECT_TRUE(globals.isDefined(i + 2));
        EXPECT_EQ("function " + names[i], describe(globals.value(i + 2)));
    }
}

TEST(Registration, BuiltInsAreOrdinaryHostFunctions) {
    RubyVM vm;
    for (const std::string& name : builtinNames()) {
        RubyValue value;
        ASSERT_TRUE(vm.getGlobal(name, value));
        const RubyFunctionHandle& handle = internal::handleOf(value);
        EXPECT_EQ(RubyFunctionHandle::Kind::Host, handle.kind);
        EXPECT_TRUE(static_cast<bool>(handle.hostFunction));
        EXPECT_EQ(-1, handle.functionIndex);
        const bool special = name == "error" || name == "pcall" || name == "table_set";
        EXPECT_EQ(special, handle.intrinsic != RubyFunctionHandle::Intrinsic::None) << name;
    }
}

TEST(Registration, ReplacingABuiltInLeavesOtherVmsAlone) {
    RubyVM changed;
    RubyVM other;
    ASSERT_TRUE(changed.runScriptString("def len(x) return 'changed' end", "t").ok);
    RubyVM later;
    EXPECT_EQ("changed", changed.runScriptString("return len([])", "t").value.toString());
    EXPECT_EQ("0", other.runScriptString("return len([])", "t").value.toString());
    EXPECT_EQ("0", later.runScriptString("return len([])", "t").value.toString());
}

// The argument count is checked first, whatever the arguments are.
TEST(Registration, TheCountIsCheckedBeforeTheKinds) {
    expectScriptError("string_sub expects between 2 and 3 arguments", "string_sub(5)");
    expectScriptError("len expects exactly 1 argument", "len(1, 2)");
    expectScriptError("math_min expects at least 1 arguments", "math_min()");
}

std::string invoke(RubyVM& vm, const std::string& name, const RubyArray& arguments) {
    RubyValue value;
    EXPECT_TRUE(vm.getGlobal(name, value));
    std::string description;
    const std::string error =
        errorOf([&] { description = describe(internal::handleOf(value).hostFunction(vm, RubyArguments(arguments))); });
    return description.empty() ? error : description;
}

// A host may call the registered functions directly; they behave like calls executed by the interpreter.
TEST(Registration, TheBodiesOfTheInterpretersOwnFunctions) {
    RubyVM vm;
    ASSERT_TRUE(
        vm.runScriptString("def f(x) y = x / 0 end def half(x) if x < 0 then error('neg') end return x / 2 end", "t")
            .ok);
    RubyValue length;
    RubyValue raise;
    RubyValue failing;
    RubyValue half;
    ASSERT_TRUE(vm.getGlobal("len", length) && vm.getGlobal("error", raise) && vm.getGlobal("f", failing) &&
                vm.getGlobal("half", half));
    EXPECT_EQ("error", invoke(vm, "error", {}));
    EXPECT_EQ("[1]", invoke(vm, "error", {RubyValue(RubyArray{1})}));
    EXPECT_EQ("error expects between 0 and 1 arguments", invoke(vm, "error", {1, 2}));
    EXPECT_EQ("pcall expects at least 1 arguments", invoke(vm, "pcall", {}));
    EXPECT_EQ("[true, 2]", invoke(vm, "pcall", {length, "ab"}));
    EXPECT_EQ("[false, \"pcall expects a function\"]", invoke(vm, "pcall", {5}));
    EXPECT_EQ("[false, \"boom\"]", invoke(vm, "pcall", {raise, "boom"}));
    EXPECT_EQ("[true, nil]", invoke(vm, "pcall", {raise, ""}));
    EXPECT_EQ("error expects between 0 and 1 arguments", invoke(vm, "pcall", {raise, 1, 2}));
    EXPECT_EQ("[true, false, \"t:1: division by zero\"]", invoke(vm, "pcall", {failing, 1}));
    EXPECT_EQ("[false, \"neg\"]", invoke(vm, "pcall", {half, -1}));
    EXPECT_EQ("[false, \"function 'half' expected 1 arguments but received 0\"]", invoke(vm, "pcall", {half}));
    const RubyValue table(RubyArray{});
    EXPECT_EQ("9", invoke(vm, "table_set", {table, 1, 9}));
    EXPECT_EQ("[nil, 9]", describe(table));
    EXPECT_EQ("table_set expects exactly 3 arguments", invoke(vm, "table_set", {table}));
    EXPECT_EQ("table_set array index must be non-negative", invoke(vm, "table_set", {table, -1, 9}));
}

RubyValue valueOf(RubyVM& vm, const std::string& source) {
    const RubyResult result = vm.runScriptString(source, "t");
    EXPECT_TRUE(result.ok) << result.error;
    return result.value;
}

TEST(Random, EveryVmHasAGeneratorOfItsOwn) {
    RubyVM first;
    RubyVM second;
    RubyVM alone;
    for (RubyVM* vm : {&first, &second, &alone}) {
        valueOf(*vm, "math_random_seed(42)");
    }
    // Drawing from one generator, or reseeding it, does not affect the other.
    for (int i = 0; i < 20; ++i) {
        const std::string expected = describe(valueOf(alone, "return [math_random(), math_random(1000000)]"));
        EXPECT_EQ(expected, describe(valueOf(first, "return [math_random(), math_random(1000000)]")));
        EXPECT_EQ(expected, describe(valueOf(second, "return [math_random(), math_random(1000000)]")));
    }
    valueOf(second, "math_random_seed(1)");
    EXPECT_EQ(describe(valueOf(alone, "return math_random()")), describe(valueOf(first, "return math_random()")));
}

TEST(Random, NewVmsAreSeededDifferently) {
    const std::string draw = "return [math_random(), math_random(), math_random(-1000000000, 1000000000)]";
    RubyVM first;
    RubyVM second;
    EXPECT_NE(describe(valueOf(first, draw)), describe(valueOf(second, draw)));
}

// All 64 bits of the seed, which may be negative, seed the engine; integers come from the standard distribution over
// it.
TEST(Random, DrawsFollowTheStandardEngine) {
    constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t seed : {std::int64_t{0}, std::int64_t{5489}, std::int64_t{-1}, std::int64_t{1} << 40}) {
        RubyVM vm;
        valueOf(vm, "math_random_seed(" + std::to_string(seed) + ")");
        std::mt19937_64 engine(static_cast<std::uint64_t>(seed));
        for (int i = 0; i < 20; ++i) {
            const double fraction = static_cast<double>(engine()) * 0x1p-64;
            EXPECT_EQ(describe(RubyValue(fraction)), describe(valueOf(vm, "return math_random()")));
            std::uniform_int_distribution<std::int64_t> die(1, 6);
            EXPECT_EQ(std::to_string(die(engine)), describe(valueOf(vm, "return math_random(6)")));
            std::uniform_int_distribution<std::int64_t> wide(-5000000000, 7);
            EXPECT_EQ(std::to_string(wide(engine)), describe(valueOf(vm, "return math_random(-5000000000, 7)")));
            std::uniform_int_distribution<std::int64_t> single(3, 3);
            EXPECT_EQ(std::to_string(single(engine)), describe(valueOf(vm, "return math_random(3, 3)")));
            std::uniform_int_distribution<std::int64_t> all(kSmallest, kLargest);
            EXPECT_EQ(std::to_string(all(engine)),
                      describe(valueOf(vm, "return math_random(-9223372036854775807 - 1, 9223372036854775807)")));
            std::uniform_int_distribution<std::int64_t> positive(1, kLargest);
            EXPECT_EQ(std::to_string(positive(engine)),
                      describe(valueOf(vm, "return math_random(9223372036854775807)")));
        }
        EXPECT_EQ(engine, RubyVM::Impl::of(vm).random);
    }
}

// As floats, the largest draws round up to 2 to the power of 64.
TEST(Random, FractionsStayBelowOne) {
    RubyVM vm;
    std::mt19937_64& engine = RubyVM::Impl::of(vm).random;
    std::stringstream state;
    for (std::size_t i = 0; i < std::mt19937_64::state_size; ++i) {
        constexpr std::size_t kFeedsTheNextDraw = std::mt19937_64::shift_size;
        state << (i == kFeedsTheNextDraw ? "263883065185796437 " : "0 ");
    }
    state << std::mt19937_64::state_size;
    state >> engine;
    std::mt19937_64 copy = engine;
    ASSERT_EQ(std::mt19937_64::max(), copy());
    EXPECT_EQ(0x1.fffffffffffffp-1, valueOf(vm, "return math_random()").asFloat());
}

TEST(Clock, CountsWholeMillisecondsOfTheSteadyClock) {
    using std::chrono::milliseconds;
    const auto now = [] {
        return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now().time_since_epoch()).count();
    };
    RubyVM vm;
    for (int i = 0; i < 20; ++i) {
        const std::int64_t before = now();
        const RubyValue time = valueOf(vm, "return time_ms()");
        const std::int64_t after = now();
        ASSERT_TRUE(time.isInteger());
        EXPECT_LE(before, time.asInteger());
        EXPECT_GE(after, time.asInteger());
    }
}

}  // namespace
}  // namespace morvel::ruby::tests
