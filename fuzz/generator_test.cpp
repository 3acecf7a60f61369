// Checks that the fuzz targets get useful input: generated programs are valid and varied, and bounding them changes
// nothing.
#include <gtest/gtest.h>
#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "bounded_vm.h"
#include "byte_source.h"
#include "program_generator.h"
#include "source_generator.h"
#include "source_words.h"
#include "support/builtins.h"

namespace morvel::ruby::fuzz {

namespace {

/// During its lifetime, allocations may leak: reference cycles are never freed, and generated programs lose some that
/// the clean-up can no longer reach.
class RingsMayStay {
public:
#if defined(__SANITIZE_ADDRESS__)
    RingsMayStay() { __lsan_disable(); }
    ~RingsMayStay() { __lsan_enable(); }
#else
    RingsMayStay() = default;
#endif
    RingsMayStay(const RingsMayStay&) = delete;
    RingsMayStay& operator=(const RingsMayStay&) = delete;
};

std::vector<std::uint8_t> randomBytes(std::uint64_t seed) {
    std::mt19937_64 random(seed);
    std::vector<std::uint8_t> bytes(100 + random() % 900);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return bytes;
}

std::string sourceOf(std::uint64_t seed) {
    const std::vector<std::uint8_t> bytes = randomBytes(seed);
    ByteSource source(bytes);
    return generateSource(source);
}

TEST(GeneratedSource, Compiles) {
    const RubyVM vm;
    for (std::uint64_t seed = 1; seed <= 500; ++seed) {
        const std::string source = sourceOf(seed);
        EXPECT_NO_THROW((void)vm.compileScript(source, "generated")) << source;
    }
}

// A call of an undefined name would only test that error.
TEST(GeneratedSource, CallsBuiltInsThatThereAre) {
    const std::vector<std::string> builtins = tests::builtinNames();
    const auto expectBuiltins = [&builtins](const auto& calls) {
        const std::regex nameOfCall("([a-z0-9_?]+)\\(");
        for (const std::string_view call : calls) {
            const std::string text(call);
            ASSERT_TRUE(std::regex_search(text, nameOfCall)) << text;
            for (std::sregex_iterator name(text.begin(), text.end(), nameOfCall); name != std::sregex_iterator();
                 ++name) {
                EXPECT_EQ(std::count(builtins.begin(), builtins.end(), (*name)[1].str()), 1) << text;
            }
        }
    };
    expectBuiltins(kNumberCalls);
    expectBuiltins(kTextCalls);
    expectBuiltins(kArrayCalls);
    expectBuiltins(kMapCalls);
    expectBuiltins(kFlagCalls);
    expectBuiltins(kAnyCalls);
}

TEST(GeneratedSource, IsVaried) {
    constexpr std::size_t kScripts = 300;
    std::size_t completed = 0;
    std::size_t printed = 0;
    std::string everything;
    for (std::uint64_t seed = 1; seed <= kScripts; ++seed) {
        BoundedVm bounded;
        [[maybe_unused]] const RingsMayStay rings;
        const RubyResult result = bounded.runSource(sourceOf(seed), "generated");
        completed += result.ok ? 1U : 0U;
        printed += bounded.output().empty() ? 0U : 1U;
        everything += bounded.output() + result.error + '\n';
        breakRings(result.value);
        breakRings(bounded.vm());
    }
    EXPECT_GT(completed, kScripts / 20);
    EXPECT_LT(completed, kScripts);
    EXPECT_GT(printed, kScripts / 2);
    for (const char* expected :
         {"[true, ", "[false, ", "[true, [false, ", "too many steps", "undefined variable or function",
          "operator '+' expects", "operator '-' expects", "attempted to call a non-function value", "array index",
          "expects an array", "expects a string", "guarded", "of 0", "<load>:"}) {
        EXPECT_NE(everything.find(expected), std::string::npos) << expected;
    }
}

TEST(GeneratedPrograms, RunAndFail) {
    constexpr std::size_t kPrograms = 2000;
    std::size_t completed = 0;
    std::string errors;
    for (std::uint64_t seed = 1; seed <= kPrograms; ++seed) {
        const std::vector<std::uint8_t> bytes = randomBytes(seed);
        ByteSource source(bytes);
        internal::Program program = generateProgram(source);
        BoundedVm bounded;
        const RubyResult result = bounded.run(program);
        completed += result.ok ? 1U : 0U;
        errors += result.error + '\n';
        breakRings(result.value);
        breakRings(bounded.vm());
    }
    EXPECT_GT(completed, kPrograms / 50);
    EXPECT_LT(completed, kPrograms);
    for (const char* expected : {"constant index is out of range", "unknown opcode", "stack underflow"}) {
        EXPECT_NE(errors.find(expected), std::string::npos) << expected;
    }
}

TEST(CountedSteps, ChangeNothingElse) {
    const std::string source =
        "def f(n) if n < 2 then return n end return f(n - 1) + f(n - 2) end\n"
        "i = 0 t = [] while i < 5 do array_push(t, f(i)) i = i + 1 end\n"
        "r = pcall(load('a = b')) puts(t, r) missing(1)";
    BoundedVm counted(internal::ExecutorChoice::Automatic, Steps::Counted);
    BoundedVm uncounted(internal::ExecutorChoice::Automatic, Steps::Uncounted);
    const std::string error = counted.runSource(source, "t").error;
    EXPECT_EQ(error, "t:3: undefined variable or function 'missing'");
    EXPECT_EQ(uncounted.runSource(source, "t").error, error);
    EXPECT_NE(counted.output(), "");
    EXPECT_EQ(counted.output(), uncounted.output());
    EXPECT_FALSE(counted.ranOutOfSteps());
}

TEST(CountedSteps, EndEndlessPrograms) {
    for (const char* source : {"while true do end", "def f() return f() end f()", "load('while true do end')()",
                               "def f() x = pcall(f) return f() end f()"}) {
        BoundedVm bounded;
        EXPECT_FALSE(bounded.runSource(source, "t").ok) << source;
        EXPECT_TRUE(bounded.ranOutOfSteps()) << source;
    }
}

TEST(Description, TellsKindsApartAndEnds) {
    RubyValue ring = RubyValue::makeArray();
    ring.asArray() = {1, 1.0, "1", ring, nullptr};
    const std::string text = describe(ring);
    EXPECT_EQ(text.find("[1, float 1"), 0U) << text;
    EXPECT_NE(text.find("\"1\" of 1"), std::string::npos) << text;
    EXPECT_LT(text.size(), 10'000U);
    breakRings(ring);
}

}  // namespace

}  // namespace morvel::ruby::fuzz
