// Images: what is written, read back and refused.
#include "bytecode/image.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include "compiler/compiler.h"
#include "support/allocation_meter.h"
#include "support/assembler.h"
#include "support/describe.h"
#include "support/runs.h"

namespace morvel::ruby::tests {
namespace {

using internal::CompiledFunction;
using internal::deserializeProgram;
using internal::Instruction;
using internal::OpCode;
using internal::Program;
using internal::serializeProgram;

std::string loadError(const RubyBytecode& image) {
    return errorOf([&] { (void)deserializeProgram(image); });
}

std::string loadError(const ImageBytes& bytes) { return loadError(bytes.image()); }

/// A program with every kind of constant, several functions, and odd operands.
Program sampleProgram() {
    return makeProgram({nullptr, -5, 2.5, true, false, "text", std::string("a\0\xff", 3), ""},
                       {op(OpCode::PushConst, 1), op(OpCode::DefineFunction, 5, 1), opNumber(255, -1, -2)},
                       {function("f", {"a", "", "b"},
                                 {op(OpCode::Jump, std::numeric_limits<std::int32_t>::min(),
                                     std::numeric_limits<std::int32_t>::max())}),
                        function("", {}, {})});
}

TEST(ImageWriter, WritesEveryFieldInOrder) {
    Program program = sampleProgram();
    program.functions[1].code[0].line = 4294967295U;
    ImageBytes expected;
    expected.raw("MTBC").u32(2).text("hand");
    expected.u32(8);
    expected.u8(0);
    expected.u8(1).u64(static_cast<std::uint64_t>(-5));
    expected.u8(2).u64(std::bit_cast<std::uint64_t>(2.5));
    expected.u8(3).u8(1);
    expected.u8(3).u8(0);
    expected.u8(4).text("text");
    expected.u8(4).text(std::string("a\0\xff", 3));
    expected.u8(4).text("");
    expected.u32(3);
    expected.text("<main>").u32(0).u32(3);
    expected.record(0, 1, 0, 1).record(22, 5, 1, 2).record(255, -1, -2, 3);
    expected.text("f").u32(3).text("a").text("").text("b").u32(1);
    expected.record(19, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max(),
                    4294967295U);
    expected.text("").u32(0).u32(0);
    EXPECT_EQ(expected.bytes(), serializeProgram(program).bytes);
}

TEST(ImageWriter, NumbersAreLittleEndian) {
    const std::vector<std::uint8_t> bytes = serializeProgram(makeProgram({0x0102030405060708}, {})).bytes;
    // Magic, version, name "hand" with its length, constant count, tag, integer.
    const std::vector<std::uint8_t> expected{'M', 'T', 'B', 'C', 2, 0, 0, 0, 4, 0, 0, 0, 'h', 'a', 'n',
                                             'd', 1,   0,   0,   0, 1, 8, 7, 6, 5, 4, 3, 2,   1};
    ASSERT_GE(bytes.size(), expected.size());
    EXPECT_EQ(expected, std::vector<std::uint8_t>(bytes.begin(), bytes.begin() + 29));
}

TEST(ImageWriter, AWholeCompiledScript) {
    ImageBytes expected;
    expected.header().text("t");
    expected.u32(4).u8(1).u64(1).u8(4).text("a").u8(4).text("x").u8(4).text("f");
    expected.u32(2);
    // The constants of the function's body precede the name under which it is defined.
    expected.text("<main>").u32(0).u32(3).record(0, 0, 0, 1).record(3, 0, 0, 1).record(22, 3, 1, 2);
    expected.text("f").u32(1).text("a").u32(3).record(1, 1, 0, 2).record(2, 2, 0, 2).record(3, 0, 0, 2);
    EXPECT_EQ(expected.bytes(), RubyVM().compileScript("1\ndef f(a) x = a end", "t").bytes);
}

TEST(ImageWriter, RefusesConstantsThatAreNoScalars) {
    const std::string message = "bytecode serializer only supports scalar constants";
    EXPECT_EQ(message, errorOf([] { (void)serializeProgram(makeProgram({RubyValue::makeArray()}, {})); }));
    EXPECT_EQ(message, errorOf([] { (void)serializeProgram(makeProgram({1, RubyValue::makeMap()}, {})); }));
    const RubyValue function(std::make_unique<RubyFunctionHandle>());
    EXPECT_EQ(message, errorOf([&] { (void)serializeProgram(makeProgram({function}, {})); }));
}

TEST(ImageWriter, RefusesCountsThatDoNotFit) {
    EXPECT_EQ(0u, internal::toImageCount(0));
    EXPECT_EQ(4294967295u, internal::toImageCount(4294967295u));
    for (const std::size_t count : {std::size_t{4294967296u}, std::numeric_limits<std::size_t>::max()}) {
        EXPECT_EQ("bytecode image is too large", errorOf([&] { (void)internal::toImageCount(count); })) << count;
    }
}

TEST(ImageWriter, StoresNothingThatIsDerived) {
    Program program = internal::compileSource("def f(x) return x end", "t");
    const std::vector<std::uint8_t> before = serializeProgram(program).bytes;
    program = deserializeProgram(serializeProgram(program));
    ASSERT_NE(internal::FastKind::None, program.functions[1].fastKind);
    EXPECT_EQ(before, serializeProgram(program).bytes);
}

void expectSamePrograms(const Program& expected, const Program& loaded) {
    EXPECT_EQ(expected.name, loaded.name);
    ASSERT_EQ(expected.constants.size(), loaded.constants.size());
    for (std::size_t i = 0; i < expected.constants.size(); ++i) {
        EXPECT_EQ(describe(expected.constants[i]), describe(loaded.constants[i]));
        if (expected.constants[i].isFloat()) {
            EXPECT_EQ(std::bit_cast<std::uint64_t>(expected.constants[i].asFloat()),
                      std::bit_cast<std::uint64_t>(loaded.constants[i].asFloat()));
        }
    }
    ASSERT_EQ(expected.functions.size(), loaded.functions.size());
    for (std::size_t i = 0; i < expected.functions.size(); ++i) {
        EXPECT_EQ(expected.functions[i].name, loaded.functions[i].name);
        EXPECT_EQ(expected.functions[i].params, loaded.functions[i].params);
        ASSERT_EQ(expected.functions[i].code.size(), loaded.functions[i].code.size());
        for (std::size_t j = 0; j < expected.functions[i].code.size(); ++j) {
            const Instruction& wanted = expected.functions[i].code[j];
            const Instruction& got = loaded.functions[i].code[j];
            EXPECT_EQ(wanted.op, got.op);
            EXPECT_EQ(wanted.a, got.a);
            EXPECT_EQ(wanted.b, got.b);
            EXPECT_EQ(wanted.line, got.line);
        }
    }
}

TEST(RoundTrip, HandMadePrograms) {
    expectSamePrograms(sampleProgram(), deserializeProgram(serializeProgram(sampleProgram())));
}

TEST(RoundTrip, FloatsKeepTheirBits) {
    for (const double number : {-0.0, 5e-324, 1.7976931348623157e308, std::numeric_limits<double>::infinity(),
                                std::bit_cast<double>(std::uint64_t{0x7ff8000000000001}),
                                std::bit_cast<double>(std::uint64_t{0xfff0dead00000001})}) {
        const Program program = makeProgram({number}, {});
        expectSamePrograms(program, deserializeProgram(serializeProgram(program)));
    }
}

TEST(RoundTrip, CompiledPrograms) {
    const Program program = internal::compileSource(
        "x = [1, -2.5, 'a\\n\\0', true, nil]\n"
        "def f(a, b?) if a then error('m') end return a * b? end\n"
        "def g while x do def h(a) return a[0] end x = nil end end\n"
        "x[0] = f(1, 2) && !g() % 7\n",
        "dir/name with spaces.rb");
    expectSamePrograms(program, deserializeProgram(serializeProgram(program)));
}

TEST(RoundTrip, RandomPrograms) {
    std::mt19937_64 random(7);
    const auto text = [&random] {
        std::string bytes(random() % 6, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random());
        }
        return bytes;
    };
    for (int round = 0; round < 200; ++round) {
        Program program = makeProgram({}, {});
        program.name = text();
        program.functions.clear();
        for (std::size_t i = random() % 5; i > 0; --i) {
            const std::vector<RubyValue> choices{nullptr, static_cast<std::int64_t>(random()),
                                                 std::bit_cast<double>(random()), random() % 2 == 0, text()};
            program.constants.push_back(choices[random() % choices.size()]);
        }
        for (std::size_t i = 1 + random() % 3; i > 0; --i) {
            CompiledFunction& made = program.functions.emplace_back();
            made.name = text();
            for (std::size_t j = random() % 3; j > 0; --j) {
                made.params.push_back(text());
            }
            for (std::size_t j = random() % 6; j > 0; --j) {
                made.code.push_back({static_cast<OpCode>(random() % 256), static_cast<std::int32_t>(random()),
                                     static_cast<std::int32_t>(random()), static_cast<std::uint32_t>(random())});
            }
        }
        const RubyBytecode image = serializeProgram(program);
        const Program loaded = deserializeProgram(image);
        expectSamePrograms(program, loaded);
        EXPECT_EQ(image.bytes, serializeProgram(loaded).bytes);
    }
}

/// An image up to the end of its empty constant pool.
ImageBytes noConstants() {
    ImageBytes bytes;
    bytes.header().text("hand").u32(0);
    return bytes;
}

TEST(ImageLoader, TooSmall) {
    EXPECT_EQ("bytecode file is too small", loadError(ImageBytes()));
    EXPECT_EQ("bytecode file is too small", loadError(ImageBytes().raw("MTBC")));
    EXPECT_EQ("bytecode file is too small", loadError(ImageBytes().raw(std::string("MTBC\x02\0\0", 7))));
    EXPECT_EQ("bytecode file is too small", loadError(ImageBytes().raw("XXXXXXX")));
}

TEST(ImageLoader, InvalidHeader) {
    EXPECT_EQ("invalid bytecode header", loadError(ImageBytes().raw("MTBX").u32(2)));
    EXPECT_EQ("invalid bytecode header", loadError(ImageBytes().raw("mtbc").u32(2)));
    EXPECT_EQ("invalid bytecode header", loadError(ImageBytes().raw("XTBC").u32(9)));
    EXPECT_EQ("invalid bytecode header", loadError(ImageBytes().u64(0)));
}

TEST(ImageLoader, Versions) {
    for (const std::uint32_t version : {0u, 3u, 0x0200u, 0x01000000u, 0x80000002u, 0xffffffffu}) {
        ImageBytes bytes;
        bytes.header(version).text("hand").u32(0).u32(1).text("<main>").u32(0).u32(0);
        EXPECT_EQ("unsupported bytecode version", loadError(bytes)) << version;
    }
    EXPECT_EQ("unsupported bytecode version", loadError(ImageBytes().header(3)));
}

TEST(ImageLoader, BothVersionsLoadAlike) {
    for (const std::uint32_t version : {1u, 2u}) {
        ImageBytes bytes;
        bytes.header(version).text("hand").u32(1).u8(1).u64(7).u32(1);
        bytes.text("<main>").u32(0).u32(2).record(0, 0, 0, 1).record(23, 0, 0, 1);
        expectValue("7", bytes.image());
        EXPECT_EQ(bytes.bytes()[4], version);
        EXPECT_EQ(2, serializeProgram(deserializeProgram(bytes.image())).bytes[4]);
    }
}

TEST(ImageLoader, ExactlyTheHeaderLacksTheName) {
    EXPECT_EQ("bytecode is truncated", loadError(ImageBytes().header()));
}

TEST(ImageLoader, StringsThatRunPastTheEnd) {
    const std::string message = "bytecode string exceeds file size";
    EXPECT_EQ(message, loadError(ImageBytes().header().u32(1)));
    EXPECT_EQ(message, loadError(ImageBytes().header().u32(4).raw("abc")));
    EXPECT_EQ(message, loadError(ImageBytes().header().u32(0xffffffff).raw("abc")));
    EXPECT_EQ(message, loadError(ImageBytes().header().text("n").u32(1).u8(4).u32(0x80000000)));
    EXPECT_EQ(message, loadError(noConstants().u32(1).u32(100).raw("<main>")));
    EXPECT_EQ(message, loadError(noConstants().u32(1).text("<main>").u32(1).u32(2).raw("a")));
}

TEST(ImageLoader, ConstantTags) {
    for (const unsigned tag : {5u, 6u, 7u, 8u, 128u, 255u}) {
        EXPECT_EQ("bytecode constant type is not supported",
                  loadError(ImageBytes().header().text("n").u32(1).u8(tag).u64(0).u64(0)));
        // The tag is checked before the payload is read.
        EXPECT_EQ("bytecode constant type is not supported", loadError(ImageBytes().header().text("n").u32(1).u8(tag)));
    }
}

TEST(ImageLoader, AnyBooleanByteButZeroIsTrue) {
    for (const unsigned byte : {0u, 1u, 2u, 255u}) {
        ImageBytes bytes;
        bytes.header().text("n").u32(1).u8(3).u8(byte).u32(1).text("<main>").u32(0).u32(0);
        const Program program = deserializeProgram(bytes.image());
        EXPECT_EQ(byte != 0, program.constants[0].asBoolean());
        ImageBytes written;
        written.header().text("n").u32(1).u8(3).u8(byte != 0 ? 1 : 0).u32(1).text("<main>").u32(0).u32(0);
        EXPECT_EQ(written.bytes(), serializeProgram(program).bytes);
    }
}

TEST(ImageLoader, NoFunctions) {
    EXPECT_EQ("bytecode contains no entry function", loadError(noConstants().u32(0)));
    EXPECT_EQ("bytecode contains no entry function", loadError(noConstants().u32(0).text("<main>").u32(0).u32(0)));
}

TEST(ImageLoader, BytesAfterTheLastFunctionAreIgnored) {
    const RubyBytecode whole = serializeProgram(sampleProgram());
    ImageBytes bytes;
    bytes.raw(std::string(whole.bytes.begin(), whole.bytes.end()));
    bytes.raw("trailing garbage");
    expectSamePrograms(sampleProgram(), deserializeProgram(bytes.image()));
}

TEST(ImageLoader, EmptyStringsAreFine) {
    const Program program = deserializeProgram(
        ImageBytes().header().text("").u32(1).u8(4).text("").u32(1).text("").u32(1).text("").u32(0).image());
    EXPECT_EQ("", program.name);
    EXPECT_EQ("\"\"", describe(program.constants[0]));
    EXPECT_EQ((std::vector<std::string>{""}), program.functions[0].params);
}

TEST(ImageLoader, FillsTheDerivedTables) {
    const Program program = deserializeProgram(RubyVM().compileScript("def f(a) b = a return b end", "t"));
    EXPECT_EQ((std::vector<std::string_view>{"a", "b"}), program.functions[1].localNames);
}

TEST(ImageLoader, DoesNotLookAtOperands) {
    const Program program = deserializeProgram(assemble({}, {opNumber(200, 7, -9), op(OpCode::Jump, -5)}));
    EXPECT_EQ(200u, static_cast<unsigned>(program.functions[0].code[0].op));
}

// The message depends only on the field that the cut goes through.
TEST(ImageLoader, EveryTruncationIsRefused) {
    const RubyBytecode whole = serializeProgram(sampleProgram());
    for (std::size_t length = 0; length < whole.bytes.size(); ++length) {
        const RubyBytecode cut{{whole.bytes.begin(), whole.bytes.begin() + static_cast<std::ptrdiff_t>(length)}};
        const std::string message = loadError(cut);
        if (length < 8) {
            EXPECT_EQ("bytecode file is too small", message) << length;
        } else {
            EXPECT_TRUE(message == "bytecode is truncated" || message == "bytecode string exceeds file size")
                << length << ": " << message;
        }
        RubyVM vm;
        const RubyResult result = vm.runBytecode(cut);
        EXPECT_FALSE(result.ok);
        EXPECT_EQ(message, result.error);
        EXPECT_TRUE(result.value.isNil());
    }
    EXPECT_EQ("no error", loadError(whole));
}

TEST(ImageLoader, CutsBetweenAndInsideFields) {
    const std::string truncated = "bytecode is truncated";
    EXPECT_EQ(truncated, loadError(ImageBytes().header().raw(std::string("\x01\0\0", 3))));
    EXPECT_EQ(truncated, loadError(ImageBytes().header().text("n")));
    EXPECT_EQ(truncated, loadError(ImageBytes().header().text("n").raw(std::string("\x01\0\0", 3))));
    EXPECT_EQ(truncated, loadError(ImageBytes().header().text("n").u32(1)));
    EXPECT_EQ(truncated, loadError(ImageBytes().header().text("n").u32(1).u8(1).u32(0)));
    EXPECT_EQ(truncated, loadError(ImageBytes().header().text("n").u32(1).u8(2).raw("1234567")));
    EXPECT_EQ(truncated, loadError(ImageBytes().header().text("n").u32(1).u8(3)));
    EXPECT_EQ(truncated, loadError(ImageBytes().header().text("n").u32(1).u8(4)));
    EXPECT_EQ(truncated, loadError(ImageBytes().header().text("n").u32(1).u8(0)));
    EXPECT_EQ(truncated, loadError(noConstants().u32(1)));
    EXPECT_EQ(truncated, loadError(noConstants().u32(1).text("<main>")));
    EXPECT_EQ(truncated, loadError(noConstants().u32(1).text("<main>").u32(1)));
    EXPECT_EQ(truncated, loadError(noConstants().u32(1).text("<main>").u32(0)));
    EXPECT_EQ(truncated, loadError(noConstants().u32(2).text("<main>").u32(0).u32(0)));
    for (std::size_t size = 0; size < 13; ++size) {
        EXPECT_EQ(truncated, loadError(noConstants().u32(1).text("<main>").u32(0).u32(1).raw(std::string(size, '\0'))));
    }
}

// A count must not lead to an allocation unless the bytes for it are present.
TEST(ImageLoader, HugeCountsTakeNoMemory) {
    const std::vector<RubyBytecode> images{
        ImageBytes().header().text("n").u32(0xffffffff).image(),
        ImageBytes().header().text("n").u32(0xffffffff).u8(0).u8(0).image(),
        noConstants().u32(0xffffffff).image(),
        noConstants().u32(0xffffffff).text("<main>").u32(0).u32(0).image(),
        noConstants().u32(1).text("<main>").u32(0xffffffff).image(),
        noConstants().u32(1).text("<main>").u32(0).u32(0xffffffff).record(0, 0, 0, 1).image(),
        noConstants().u32(0x7fffffff).image(),
    };
    for (const RubyBytecode& image : images) {
        const AllocationMeter meter;
        EXPECT_EQ("bytecode is truncated", loadError(image));
        EXPECT_LT(AllocationMeter::largest(), 4096u);
    }
}

TEST(ImageLoader, MemoryGrowsWithTheImageNotWithItsCounts) {
    ImageBytes bytes;
    bytes.header().text("n").u32(0xffffffff);
    for (int i = 0; i < 10000; ++i) {
        bytes.u8(0);
    }
    const AllocationMeter meter;
    EXPECT_EQ("bytecode is truncated", loadError(bytes));
    // Room for one value per byte present.
    EXPECT_LE(AllocationMeter::largest(), 10000 * sizeof(RubyValue));
}

// The smallest entries are the ones of which an image of a given size holds most.
TEST(ImageLoader, ReservesRoomForAllEntriesAtOnce) {
    constexpr std::uint32_t kCount = 2000;
    const auto largestAllocation = [](const ImageBytes& image) {
        const AllocationMeter meter;
        (void)deserializeProgram(image.image());
        return AllocationMeter::largest();
    };
    ImageBytes nils = ImageBytes().header().text("t").u32(kCount);
    ImageBytes parameters = ImageBytes().header().text("t").u32(0).u32(1).text("f").u32(kCount);
    ImageBytes functions = ImageBytes().header().text("t").u32(0).u32(kCount);
    for (std::uint32_t i = 0; i < kCount; ++i) {
        nils.u8(0);
        parameters.text("");
        functions.text("").u32(0).u32(0);
    }
    nils.u32(1).text("f").u32(0).u32(0);
    parameters.u32(0);
    EXPECT_EQ(kCount * sizeof(RubyValue), largestAllocation(nils));
    EXPECT_EQ(kCount * sizeof(std::string), largestAllocation(parameters));
    EXPECT_EQ(kCount * sizeof(CompiledFunction), largestAllocation(functions));
}

TEST(ImageLoader, AnyDamagedByteGivesAnImageOrAMessage) {
    const RubyBytecode whole = serializeProgram(sampleProgram());
    std::mt19937 random(3);
    for (int round = 0; round < 3000; ++round) {
        RubyBytecode damaged = whole;
        for (int i = 0; i < 1 + round % 3; ++i) {
            damaged.bytes[random() % damaged.bytes.size()] = static_cast<std::uint8_t>(random());
        }
        const std::string message = loadError(damaged);
        EXPECT_TRUE(message == "no error" || message == "invalid bytecode header" ||
                    message.find("bytecode") != std::string::npos)
            << message;
    }
}

TEST(ReadString, ReadsAndAdvances) {
    const std::vector<std::uint8_t> bytes{9, 2, 0, 0, 0, 'h', 'i', 0, 0, 0, 0};
    std::size_t position = 1;
    EXPECT_EQ("hi", internal::readString(bytes, position));
    EXPECT_EQ(7u, position);
    EXPECT_EQ("", internal::readString(bytes, position));
    EXPECT_EQ(11u, position);
    EXPECT_EQ("bytecode is truncated", errorOf([&] { (void)internal::readString(bytes, position); }));
    position = 8;
    EXPECT_EQ("bytecode is truncated", errorOf([&] { (void)internal::readString(bytes, position); }));
    position = 0;
    EXPECT_EQ("bytecode string exceeds file size", errorOf([&] { (void)internal::readString(bytes, position); }));
}

}  // namespace
}  // namespace morvel::ruby::tests
