// The compiler and the loader use at most a fixed multiple of the size of their input.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <iostream>
#include <string>
#include <vector>

#include "bytecode/image.h"
#include "compiler/opcodes.h"
#include "counting_allocator.h"
#include "morvel/ruby/vm.h"
#include "support.h"
#include "support/assembler.h"

namespace morvel::ruby::tests {

namespace {

constexpr std::size_t kSize = 300'000;
// Bytes per byte of any input, not counting a small constant amount.
constexpr double kCompilerFactor = 120;
constexpr double kLoaderFactor = 80;
constexpr double kTranslationFactor = 80;
constexpr std::size_t kFixed = 64 * 1024;

std::string filled(const std::string& unit) {
    std::string text;
    text.reserve(kSize + unit.size());
    while (text.size() < kSize) {
        text += unit;
    }
    return text;
}

/// Units with a running number, so that no two are equal.
std::string numbered(const std::string& before, const std::string& after) {
    std::string text;
    for (int i = 0; text.size() < kSize; ++i) {
        text += before + std::to_string(i) + after;
    }
    return text;
}

/// The most bytes that `work` holds at a time, per byte of its input. It may fail, but must not take long.
template <typename Work>
double peakFactor(std::size_t inputSize, Work work) {
    const std::size_t before = allocationCounts().liveBytes;
    resetPeak();
    const std::clock_t start = std::clock();
    try {
        work();
    } catch (const std::exception& exception) {
        // The message counts as memory too and must stay short.
        EXPECT_LT(std::string(exception.what()).size(), 1000U);
    }
    // Quadratic time would take minutes.
    constexpr double kMostSeconds = 10;
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, kMostSeconds);
    const std::size_t peak = allocationCounts().peakBytes - before;
    return peak < kFixed ? 0 : static_cast<double>(peak - kFixed) / static_cast<double>(inputSize);
}

TEST(CompilerMemory, IsInProportionToTheSource) {
    const std::vector<std::string> sources{
        filled("("),
        filled("["),
        filled(";"),
        filled("\n"),
        filled("a "),
        filled("a;"),
        filled("1;"),
        filled("1+"),
        "x = 1" + filled("+1"),
        "x = a" + filled("-a"),
        "x = [1" + filled(",1") + "]",
        "x = [[]" + filled(",[]") + "]",
        "f(1" + filled(",1") + ")",
        filled("f()"),
        "x = " + filled("-") + "1",
        filled("''"),
        filled("'';"),
        filled("'\\n'"),
        filled("'\\n';"),
        filled("'a longer text without escapes, used again and again'\n"),
        "x = '" + filled("\\n") + "'",
        filled("# comment\n"),
        "# " + filled("comment "),
        filled("a=1;"),
        filled("a=nil "),
        filled("a[0]=1;"),
        filled("def f end "),
        filled("def f()end "),
        filled("def f return 1 end "),
        "def f(a" + filled(",a") + ") end",
        "def f(a0" + numbered(",a", "") + ") end",
        filled("if a end "),
        filled("if a then "),
        "if a then " + filled("elsif a ") + "end",
        filled("while a end "),
        filled("return "),
        filled("return;"),
        numbered("v", "=1;"),
        numbered("v", ";"),
        numbered("'", "';"),
        numbered("def f", " end "),
        "def f " + numbered("v", "=1;") + " end",
        filled("not "),
        filled("1.5 "),
        filled("true "),
        filled("\xff"),
        filled("\t"),
    };
    double worst = 0;
    for (const std::string& source : sources) {
        const double factor = peakFactor(source.size(), [&] { (void)RubyVM().compileScript(source, "t"); });
        EXPECT_LT(factor, kCompilerFactor) << source.substr(0, 40);
        worst = std::max(worst, factor);
    }
    std::cout << "compiler: at most " << worst << " bytes for each byte of source\n";
    // Otherwise the compiler's memory is not being measured.
    EXPECT_GT(worst, 10.0);
}

/// Writes the fields of an image.
class Bytes {
public:
    Bytes& number(std::uint32_t value) {
        for (int i = 0; i < 4; ++i) {
            m_bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
        return *this;
    }
    Bytes& byte(std::uint8_t value) {
        m_bytes.push_back(value);
        return *this;
    }
    Bytes& text(const std::string& value) {
        number(static_cast<std::uint32_t>(value.size()));
        m_bytes.insert(m_bytes.end(), value.begin(), value.end());
        return *this;
    }
    Bytes& instruction(internal::OpCode op, std::uint32_t a) {
        return byte(static_cast<std::uint8_t>(op)).number(a).number(0).number(1);
    }
    [[nodiscard]] std::size_t size() const { return m_bytes.size(); }
    [[nodiscard]] RubyBytecode image() const { return {m_bytes}; }

    static Bytes header() {
        Bytes bytes;
        bytes.byte('M').byte('T').byte('B').byte('C').number(2).text("t");
        return bytes;
    }

private:
    std::vector<std::uint8_t> m_bytes;
};

constexpr std::uint32_t kHuge = 0xFFFFFFFF;
/// Placeholder for the index of the next instruction.
constexpr std::uint32_t kNext = 0xFFFFFFFE;

/// Images that claim more than they hold, for each count, and images full of the smallest entries of each kind.
std::vector<RubyBytecode> loaderInputs() {
    std::vector<RubyBytecode> inputs;
    const auto padded = [](Bytes bytes, unsigned filler) {
        while (bytes.size() < kSize) {
            bytes.byte(static_cast<std::uint8_t>(filler));
        }
        return bytes.image();
    };
    for (const unsigned filler : {0U, 1U, 3U, 4U, 255U}) {
        inputs.push_back(padded(Bytes::header().number(kHuge), filler));
        inputs.push_back(padded(Bytes::header().number(0).number(kHuge), filler));
        inputs.push_back(padded(Bytes::header().number(0).number(1).text("f").number(kHuge), filler));
        inputs.push_back(padded(Bytes::header().number(0).number(1).text("f").number(0).number(kHuge), filler));
    }
    const auto full = [&inputs](auto begin, auto entry, auto end) {
        // The count is not known yet; it is overwritten later.
        Bytes bytes = Bytes::header();
        begin(bytes, kHuge);
        std::uint32_t count = 0;
        const std::size_t start = bytes.size();
        for (; bytes.size() < kSize; ++count) {
            entry(bytes, count);
        }
        Bytes counted = Bytes::header();
        begin(counted, count);
        EXPECT_EQ(counted.size(), start);
        for (std::uint32_t i = 0; i < count; ++i) {
            entry(counted, i);
        }
        end(counted, count);
        inputs.push_back(counted.image());
    };
    const auto constants = [](Bytes& bytes, std::uint32_t count) { bytes.number(count); };
    const auto emptyMain = [](Bytes& bytes, std::uint32_t) { bytes.number(1).text("").number(0).number(0); };
    full(
        constants, [](Bytes& bytes, std::uint32_t) { bytes.byte(0); }, emptyMain);
    full(
        constants, [](Bytes& bytes, std::uint32_t) { bytes.byte(3).byte(1); }, emptyMain);
    full(
        constants, [](Bytes& bytes, std::uint32_t) { bytes.byte(4).text(""); }, emptyMain);
    full(
        constants, [](Bytes& bytes, std::uint32_t i) { bytes.byte(4).text(std::to_string(i)); }, emptyMain);
    const auto nothing = [](Bytes&, std::uint32_t) {};
    const auto functions = [](Bytes& bytes, std::uint32_t count) { bytes.number(0).number(count); };
    full(
        functions, [](Bytes& bytes, std::uint32_t) { bytes.text("").number(0).number(0); }, nothing);
    full(
        functions,
        [](Bytes& bytes, std::uint32_t) {
            bytes.text("").number(0).number(2);
            bytes.instruction(internal::OpCode::PushConst, 0).instruction(internal::OpCode::Return, 0);
        },
        nothing);
    full(
        functions, [](Bytes& bytes, std::uint32_t) { bytes.text("").number(1).text("a").number(0); }, nothing);
    const auto params = [](Bytes& bytes, std::uint32_t count) {
        bytes.number(0).number(2).text("").number(0).number(0).text("f").number(count);
    };
    const auto noCode = [](Bytes& bytes, std::uint32_t) { bytes.number(0); };
    full(
        params, [](Bytes& bytes, std::uint32_t) { bytes.text(""); }, noCode);
    full(
        params, [](Bytes& bytes, std::uint32_t i) { bytes.text(std::to_string(i)); }, noCode);
    // Long functions that end in Return, so that the loader looks for a fast form.
    using internal::OpCode;
    const std::vector<std::vector<std::pair<OpCode, std::uint32_t>>> shapes{
        {{OpCode::PushConst, 0}},
        {{OpCode::PushConst, 0}, {OpCode::Pop, 0}},
        {{OpCode::PushConst, 0}, {OpCode::PushConst, 0}, {OpCode::Add, 0}, {OpCode::Pop, 0}},
        {{OpCode::MakeArray, 0}},
        {{OpCode::PushConst, 0}, {OpCode::MakeArray, 1}},
        {{OpCode::LoadName, 1}},
        {{OpCode::PushConst, 0}, {OpCode::StoreName, 1}, {OpCode::Pop, 0}},
        {{OpCode::PushConst, 0}, {OpCode::Not, 0}},
        {{OpCode::DefineFunction, 1}},
        {{OpCode::PushConst, 0}, {OpCode::JumpIfFalse, kNext}},
        {{OpCode::Jump, kNext}},
        {{OpCode::LoadName, 1}, {OpCode::Call, 0}, {OpCode::Pop, 0}},
        {{OpCode::Return, 0}},
    };
    // Also with a string that is stored once in the image and used by all the rest.
    const std::string longName(kSize / 2, 'n');
    const auto repeat = [&](const auto& shape, bool isMain, const std::string& name) {
        const auto code = [isMain, &name](Bytes& bytes, std::uint32_t count) {
            bytes.number(2).byte(1).number(7).number(0).byte(4).text(name);
            bytes.number(isMain ? 1 : 2).text("").number(0);
            if (!isMain) {
                bytes.number(0).text("f").number(0);
            }
            bytes.number(count == kHuge ? count : count + 1);
        };
        full(
            code,
            [&shape](Bytes& bytes, std::uint32_t i) {
                const auto& [op, a] = shape[i % shape.size()];
                bytes.instruction(op, a == kNext ? i + 1 : a);
            },
            [](Bytes& bytes, std::uint32_t) { bytes.instruction(OpCode::Return, 0); });
    };
    for (const auto& shape : shapes) {
        for (const bool isMain : {true, false}) {
            repeat(shape, isMain, "name");
            repeat(shape, isMain, longName);
        }
    }
    const std::vector<std::vector<std::pair<OpCode, std::uint32_t>>> bodies{
        {{OpCode::PushConst, 0}, {OpCode::StoreName, 0}, {OpCode::Return, 0}},
        {{OpCode::DefineFunction, 0}},
        // A guarded function whose error message is the long string.
        {{OpCode::PushConst, 0},
         {OpCode::JumpIfFalse, 7},
         {OpCode::LoadName, 1},
         {OpCode::PushConst, 0},
         {OpCode::Call, 1},
         {OpCode::Pop, 0},
         {OpCode::Jump, 7},
         {OpCode::PushConst, 0},
         {OpCode::Return, 0}},
    };
    for (const auto& body : bodies) {
        full([&](Bytes& bytes,
                 std::uint32_t count) { bytes.number(2).byte(4).text(longName).byte(4).text("error").number(count); },
             [&](Bytes& bytes, std::uint32_t) {
                 bytes.text("").number(0).number(static_cast<std::uint32_t>(body.size()));
                 for (const auto& [op, a] : body) {
                     bytes.instruction(op, a);
                 }
             },
             nothing);
    }
    return inputs;
}

TEST(LoaderMemory, IsInProportionToTheImage) {
    double worst = 0;
    const std::vector<RubyBytecode> inputs = loaderInputs();
    for (const RubyBytecode& input : inputs) {
        const double factor = peakFactor(input.bytes.size(), [&] { (void)internal::deserializeProgram(input); });
        EXPECT_LT(factor, kLoaderFactor) << "input " << &input - inputs.data();
        worst = std::max(worst, factor);
    }
    std::cout << "loader: at most " << worst << " bytes for each byte of the image\n";
    EXPECT_GT(worst, 5.0);
}

// Running a function for the first time may translate it.
TEST(TranslationMemory, IsInProportionToTheImage) {
    double worst = 0;
    std::size_t number = 0;
    for (const RubyBytecode& input : loaderInputs()) {
        const double factor = peakFactor(input.bytes.size(), [&] {
            RubyVM vm;
            vm.setGlobal("name", 1);
            (void)vm.runBytecode(input);
        });
        EXPECT_LT(factor, kTranslationFactor) << "input " << number;
        worst = std::max(worst, factor);
        ++number;
    }
    std::cout << "running: at most " << worst << " bytes for each byte of the image\n";
}

/// Checks that `seconds` is about the same for deep stacks as for flat ones.
template <typename Seconds>
void expectNoGrowth(Seconds seconds) {
    constexpr double kMostTimes = 10;
    constexpr double kNoise = 0.03;
    EXPECT_LT(seconds(30'000), kMostTimes * (seconds(1) + kNoise));
}

// A call may change any global that lies on the expression stack; finding these must not take longer the deeper the
// stack is.
TEST(TranslationTime, DoesNotGrowWithTheDepthOfTheStack) {
    constexpr std::size_t kCalls = 40'000;
    const auto seconds = [](std::size_t depth) {
        RubyVM vm;
        const RubyBytecode image = vm.compileScript(
            "if false then x = [" + repeated("1,", depth) + "f()" + repeated("+f()", kCalls) + "] end", "t");
        const std::clock_t start = std::clock();
        EXPECT_TRUE(vm.runBytecode(image).ok);
        return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    };
    expectNoGrowth(seconds);
}

// Nor must the operations of hand-made code: jumps, taking the whole stack, stores to a local, calls while a global
// lies there.
TEST(TranslationTime, DoesNotGrowWithTheDepthOfHandMadeStacks) {
    constexpr std::size_t kTimes = 40'000;
    enum Constant : std::int32_t { One, A, B, F, Global, TypeOf };
    using internal::Instruction;
    using internal::OpCode;
    using Codes = std::vector<Instruction>;
    const auto secondsOf = [](const Instruction& deep, const Codes& part, std::size_t depth) {
        Codes code(depth, deep);
        for (std::size_t i = 0; i < kTimes; ++i) {
            for (Instruction instruction : part) {
                if (instruction.op == OpCode::JumpIfFalse) {
                    // Here the operand is a distance.
                    instruction.a += static_cast<std::int32_t>(code.size() + 1);
                }
                code.push_back(instruction);
            }
        }
        code.push_back(op(OpCode::MakeArray, static_cast<std::int32_t>(depth)));
        code.push_back(op(OpCode::Return));
        const Codes main{op(OpCode::PushConst, One), op(OpCode::StoreName, Global), op(OpCode::DefineFunction, F, 1),
                         op(OpCode::LoadName, F),    op(OpCode::PushConst, One),    op(OpCode::PushConst, One),
                         op(OpCode::Call, 2)};
        const RubyBytecode image =
            assemble({1, "a", "b", "f", "global", "type_of"}, main, {function("f", {"a", "b"}, std::move(code))});
        RubyVM vm;
        const std::clock_t start = std::clock();
        EXPECT_EQ(vm.runBytecode(image).error, "");
        return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    };
    const Instruction one = op(OpCode::PushConst, One);
    const Instruction pop = op(OpCode::Pop);
    const Codes jump{one, op(OpCode::JumpIfFalse)};
    const Codes store{one, op(OpCode::StoreName, B), pop};
    const Codes call{op(OpCode::LoadName, Global), op(OpCode::LoadName, TypeOf), one, op(OpCode::Call, 1), pop, pop};
    expectNoGrowth([&](std::size_t depth) { return secondsOf(one, jump, depth); });
    expectNoGrowth([&](std::size_t depth) {
        const Codes takeAll{op(OpCode::LoadName, A), op(OpCode::JumpIfFalse, 2),
                            op(OpCode::MakeArray, static_cast<std::int32_t>(depth)), op(OpCode::Return)};
        return secondsOf(one, takeAll, depth);
    });
    expectNoGrowth([&](std::size_t depth) { return secondsOf(op(OpCode::LoadName, A), store, depth); });
    expectNoGrowth([&](std::size_t depth) { return secondsOf(one, call, depth); });
}

}  // namespace

}  // namespace morvel::ruby::tests
