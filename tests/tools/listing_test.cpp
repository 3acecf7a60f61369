// Listings of compiled and translated scripts against the files in tests/golden/, and the disassembler program.
#include "listing.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "bytecode/image.h"
#include "engine_listing.h"
#include "morvel/ruby/error.h"
#include "support/assembler.h"
#include "support/engine_facts.h"
#include "support/files.h"
#include "support/golden.h"
#include "support/process.h"
#include "support/temporary_directory.h"

namespace morvel::ruby::tests {
namespace {

using internal::OpCode;
using tools::listEngineCode;
using tools::listProgram;
using tools::quoteText;

std::string listScript(const std::string& source, const std::string& chunkName) {
    return listProgram(internal::deserializeProgram(RubyVM().compileScript(source, chunkName)));
}

std::string listImage(const RubyBytecode& image) { return listProgram(internal::deserializeProgram(image)); }

std::string engineListing(const RubyBytecode& image) { return listEngineCode(internal::deserializeProgram(image)); }

std::string engineListing(const std::string& source, const std::string& chunkName) {
    return engineListing(RubyVM().compileScript(source, chunkName));
}

const std::string kGolden = MORVELTESK_GOLDEN_DIR;
const std::string kEngineGolden = kGolden + "/engine";

std::string fileIn(const std::string& directory, const std::string& file) { return directory + '/' + file; }

class GoldenListing : public testing::TestWithParam<std::string> {};

TEST_P(GoldenListing, IsWhatTheScriptCompilesTo) {
    const std::string source = readFile(fileIn(kGolden, GetParam() + ".rb"));
    EXPECT_EQ(readFile(fileIn(kGolden, GetParam() + ".listing")), listScript(source, GetParam() + ".rb"));
}

INSTANTIATE_TEST_SUITE_P(Scripts, GoldenListing, testing::ValuesIn(namesIn(kGolden, ".rb")),
                         [](const testing::TestParamInfo<std::string>& script) { return script.param; });

class GoldenEngineListing : public testing::TestWithParam<std::string> {};

TEST_P(GoldenEngineListing, IsWhatTheScriptIsTranslatedTo) {
    const std::string source = readFile(fileIn(kEngineGolden, GetParam() + ".rb"));
    EXPECT_EQ(readFile(fileIn(kEngineGolden, GetParam() + ".listing")), engineListing(source, GetParam() + ".rb"));
}

INSTANTIATE_TEST_SUITE_P(Scripts, GoldenEngineListing, testing::ValuesIn(namesIn(kEngineGolden, ".rb")),
                         [](const testing::TestParamInfo<std::string>& script) { return script.param; });

TEST(GoldenListings, EachBelongsToAScript) {
    EXPECT_EQ(namesIn(kGolden, ".rb"), namesIn(kGolden, ".listing"));
    EXPECT_EQ(namesIn(kEngineGolden, ".rb"), namesIn(kEngineGolden, ".listing"));
    EXPECT_GE(namesIn(kGolden, ".rb").size(), 15U);
    EXPECT_GE(namesIn(kEngineGolden, ".rb").size(), 20U);
}

TEST(QuoteText, StaysOnOneLine) {
    EXPECT_EQ("\"\"", quoteText(""));
    EXPECT_EQ("\"plain text ~\"", quoteText("plain text ~"));
    EXPECT_EQ("\"a\\\"b\\\\c\"", quoteText("a\"b\\c"));
    EXPECT_EQ("\"\\n\\t\\r\"", quoteText("\n\t\r"));
    EXPECT_EQ("\"\\x00\\x1b\\x7f\\x80\\xff\"", quoteText(std::string("\0\x1b\x7f\x80\xff", 5)));
}

TEST(Listing, OperandsThatMeanNothing) {
    EXPECT_EQ(
        "program \"hand\", 2 constants, 2 functions\n"
        "\n"
        "function 0 <main>()\n"
        "   0  line 1    PushConst       -1     ; invalid constant\n"
        "   1  line 2    PushConst       2      ; invalid constant\n"
        "   2  line 3    LoadName        1      ; invalid name: 5\n"
        "   3  line 4    StoreName       9      ; invalid constant\n"
        "   4  line 5    Jump            -3     ; invalid target\n"
        "   5  line 6    JumpIfFalse     99     ; invalid target\n"
        "   6  line 7    Call            -1     ; invalid count\n"
        "   7  line 8    MakeArray       -2147483648 ; invalid count\n"
        "   8  line 9    DefineFunction  0 7    ; \"a b\" = invalid function\n"
        "   9  line 10   DefineFunction  1 -1   ; invalid name: 5 = invalid function\n"
        "  10  line 11   opcode 27       3 -4   ; unknown opcode\n"
        "  11  line 12   opcode 255      0 0    ; unknown opcode\n"
        "  12  line 13   Add             5 -6\n"
        "  13  line 14   Pop             0 1\n"
        "  14  line 15   Jump            15     ; end\n"
        "\n"
        "function 1 \"\"(p, \"not a name\")\n"
        "   0  line 1    LoadName        0      ; \"a b\"\n",
        listImage(assemble({"a b", 5},
                           {op(OpCode::PushConst, -1), op(OpCode::PushConst, 2), op(OpCode::LoadName, 1),
                            op(OpCode::StoreName, 9), op(OpCode::Jump, -3), op(OpCode::JumpIfFalse, 99),
                            op(OpCode::Call, -1), op(OpCode::MakeArray, std::numeric_limits<std::int32_t>::min()),
                            op(OpCode::DefineFunction, 0, 7), op(OpCode::DefineFunction, 1, -1), opNumber(27, 3, -4),
                            opNumber(255), op(OpCode::Add, 5, -6), op(OpCode::Pop, 0, 1), op(OpCode::Jump, 15)},
                           {function("", {"p", "not a name"}, {op(OpCode::LoadName, 0)})})));
}

TEST(Listing, ConstantsOfEveryKind) {
    const std::string listing = listImage(assemble(
        {nullptr, true, false, -7, 2.0, 0.1, 1e300, -0.0, std::numeric_limits<double>::infinity(),
         std::numeric_limits<double>::quiet_NaN(), "a\nb"},
        {op(OpCode::PushConst, 0), op(OpCode::PushConst, 1), op(OpCode::PushConst, 2), op(OpCode::PushConst, 3),
         op(OpCode::PushConst, 4), op(OpCode::PushConst, 5), op(OpCode::PushConst, 6), op(OpCode::PushConst, 7),
         op(OpCode::PushConst, 8), op(OpCode::PushConst, 9), op(OpCode::PushConst, 10)}));
    std::string meanings;
    for (std::size_t at = listing.find("; "); at != std::string::npos; at = listing.find("; ", at + 1)) {
        meanings += listing.substr(at + 2, listing.find('\n', at) - at - 1);
    }
    EXPECT_EQ("nil\ntrue\nfalse\n-7\n2.0\n0.1\n1e+300\n-0.0\ninf\nnan\n\"a\\nb\"\n", meanings);
}

TEST(EngineListing, TellsWhatTheBaselineInterpreterRuns) {
    EXPECT_EQ(
        "engine code of program \"hand\", 3 functions\n"
        "\n"
        "function 0 <main>()\n"
        "  run by the baseline interpreter\n"
        "\n"
        "function 1 f(a, \"not a name\", a)\n"
        "  locals: a, \"not a name\"\n"
        "  temporaries: 2\n"
        ">    0  line 2     Drop                 <%0>\n"
        "     1             ReturnLocal          <\"not a name\">\n"
        ">    2  line 0     ReturnNil\n"
        "\n"
        "function 2 \"\"()\n"
        "  temporaries: 1\n"
        ">    0  line 0     ReturnNil\n",
        engineListing(assemble({"not a name"}, {op(OpCode::Pop)},
                               {function("f", {"a", "not a name", "a"}, {op(OpCode::LoadName, 0), op(OpCode::Return)}),
                                function("", {}, {})})));
}

TEST(EngineListing, ShortcutsAreTakenUpToADepthOf255) {
    // The callee of len is at the given depth.
    const auto atDepth = [](int depth) {
        return engineListing("def f(a) return " + repeated("[1, ", depth) + "len(a)" + repeated("]", depth) + " end",
                             "t");
    };
    EXPECT_NE(atDepth(255).find(" Len "), std::string::npos);
    EXPECT_EQ(atDepth(256).find(" Len "), std::string::npos);
    EXPECT_NE(atDepth(256).find("CallGlobal"), std::string::npos);
}

TEST(EngineListing, OnlyGlobalsStandForBuiltIns) {
    // However many locals there are, none is mistaken for the built-in with the same slot number.
    std::string parameters = "p";
    std::string calls;
    for (int i = 0; i < 200; ++i) {
        const std::string name = "p" + std::to_string(i);
        parameters += ", " + name;
        calls += ' ' + name + "(p) " + name + "(p, p)";
    }
    const std::string listing = engineListing("def f(" + parameters + ")" + calls + " return 1 end", "t");
    EXPECT_EQ(listing.find(" Len "), std::string::npos);
    EXPECT_EQ(listing.find(" ArrayPush "), std::string::npos);
    EXPECT_NE(listing.find("CallRegister"), std::string::npos);
}

TEST(EngineListing, IsNotMuchLongerThanTheCode) {
    constexpr std::size_t kUses = 2000;
    const std::string text(100'000, 'x');
    std::vector<internal::Instruction> code;
    for (std::size_t i = 0; i < kUses; ++i) {
        code.insert(code.end(), {op(OpCode::LoadName, 0), op(OpCode::PushConst, 0), op(OpCode::Add), op(OpCode::Pop)});
    }
    const std::string listing = engineListing(assemble({RubyValue(text)}, code, {function("f", {text}, code)}));
    EXPECT_NE(listing.find('$' + text.substr(0, 60) + "... 100000 bytes"), std::string::npos);
    EXPECT_LT(listing.size(), 2 * kUses * 2 * 300 + text.size() * 2);
}

TEST(EngineListing, EndsWhereTheCodeEnds) {
    // If a jump leads to the end of the code, the end is a separate instruction.
    EXPECT_EQ(
        "engine code of program \"hand\", 1 functions\n"
        "\n"
        "function 0 <main>()\n"
        "  temporaries: 1\n"
        ">    0  line 1     Jump                 -> 0\n"
        ">    1  line 0     ReturnNil\n",
        engineListing(assemble({}, {op(OpCode::Jump, 0)})));
}

TEST(Listing, AnythingThatLoadsCanBeListed) {
    const RubyBytecode whole = RubyVM().compileScript(
        "def f(a, b) if a then error('m') end return a * b end\nwhile x do f(1, [2.5, 'x']) x[0] = nil end", "t");
    std::mt19937 random(11);
    int listed = 0;
    for (int round = 0; round < 3000; ++round) {
        RubyBytecode damaged = whole;
        for (int i = 0; i < 1 + round % 4; ++i) {
            damaged.bytes[8 + random() % (damaged.bytes.size() - 8)] = static_cast<std::uint8_t>(random());
        }
        try {
            EXPECT_EQ("program ", listImage(damaged).substr(0, 8));
            EXPECT_EQ("engine code of program ", engineListing(damaged).substr(0, 23));
            ++listed;
        } catch (const RubyError&) {
            // It did not load.
        }
    }
    EXPECT_GT(listed, 1000);
}

TEST(Disassembler, ListsScriptsAndImages) {
    const TemporaryDirectory directory;
    const std::string script = directory.file("script.rb");
    const std::string image = directory.file("image");
    const std::string source = "x = 'text'\ndef f(a) return a end";
    writeFile(script, source);
    ASSERT_TRUE(RubyVM().writeBytecodeFile(source, image, "name"));

    const ProcessOutcome fromScript = runProcess(MORVELTESK_DISASSEMBLER, {"--source", script});
    EXPECT_EQ(0, fromScript.status);
    EXPECT_EQ(listScript(source, script), fromScript.output);
    EXPECT_EQ("", fromScript.error);

    const ProcessOutcome ofEngine = runProcess(MORVELTESK_DISASSEMBLER, {"--engine", "--source", script});
    EXPECT_EQ(0, ofEngine.status);
    EXPECT_EQ(engineListing(source, script), ofEngine.output);
    EXPECT_EQ("", ofEngine.error);
    EXPECT_EQ(engineListing(source, "name"), runProcess(MORVELTESK_DISASSEMBLER, {"--engine", image}).output);

    const ProcessOutcome fromImage = runProcess(MORVELTESK_DISASSEMBLER, {image});
    EXPECT_EQ(0, fromImage.status);
    EXPECT_EQ(listScript(source, "name"), fromImage.output);
    EXPECT_EQ("", fromImage.error);
}

TEST(Disassembler, ReportsFailures) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("file");
    const auto failure = [](const std::vector<std::string>& arguments) {
        const ProcessOutcome outcome = runProcess(MORVELTESK_DISASSEMBLER, arguments);
        EXPECT_EQ(1, outcome.status);
        EXPECT_EQ("", outcome.output);
        return outcome.error;
    };
    EXPECT_EQ("morvel-disassemble: failed to open file: " + path + "\n", failure({path}));
    EXPECT_EQ("morvel-disassemble: failed to open file: " + path + "\n", failure({"--source", path}));
    writeFile(path, "x = (");
    EXPECT_EQ("morvel-disassemble: bytecode file is too small\n", failure({path}));
    EXPECT_EQ("morvel-disassemble: " + path + ":1:6: expected expression\n", failure({"--source", path}));
    const std::string program = MORVELTESK_DISASSEMBLER;
    const std::string usage =
        "Usage:\n  " + program + " [--engine] <image>\n  " + program + " [--engine] --source <script>\n";
    EXPECT_EQ(usage, failure({}));
    EXPECT_EQ(usage, failure({path, path}));
    EXPECT_EQ(usage, failure({"--engine"}));
    EXPECT_EQ(usage, failure({path, "--engine"}));
    EXPECT_EQ(usage, failure({"--source", path, path}));
}

}  // namespace
}  // namespace morvel::ruby::tests
