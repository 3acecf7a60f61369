// Runs the scripts under tests/scripts/ and the example programs with the real program, and compares their output and
// exit status, byte for byte, with the expectations in them or in the files beside them. A few command-line tests that
// need several runs, or a conversation, follow at the end.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <filesystem>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/conversation.h"
#include "support/files.h"
#include "support/process.h"
#include "support/temporary_directory.h"

namespace morvel::ruby::tests {

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

ProcessSetup setupOf(const std::vector<std::string>& words, const fs::path& directory) {
    ProcessSetup setup;
    setup.arguments = words;
    setup.directory = directory.string();
    setup.timeLimit = std::chrono::seconds(60);
    return setup;
}

// Through pipes, as other programs usually run it.
ProcessOutcome runProgram(const std::vector<std::string>& words, const fs::path& directory,
                          std::string_view input = {}) {
    Conversation conversation(setupOf(words, directory));
    conversation.send(input);
    return conversation.finish();
}

std::optional<std::string> readIfPresent(const fs::path& path) {
    return fs::exists(path) ? std::optional(readFile(path)) : std::nullopt;
}

// ---------------------------------------------------------------------------------------------------------------------
// Comparing

std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

std::string escaped(std::string_view text) {
    constexpr std::size_t kMost = 400;
    std::string result = "\"";
    for (char c : text.substr(0, kMost)) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n') {
            result += "\\n";
        } else if (c == '\\' || c == '"') {
            result += '\\';
            result += c;
        } else if (byte < 32 || byte == 127) {
            constexpr std::string_view kDigits = "0123456789abcdef";
            result += "\\x";
            result += kDigits[byte / 16];
            result += kDigits[byte % 16];
        } else {
            result += c;
        }
    }
    result += '"';
    if (text.size() > kMost) {
        result += "... (" + std::to_string(text.size()) + " bytes)";
    }
    return result;
}

// Shows the first line that differs, with the lines before it.
std::string describeDifference(std::string_view expected, std::string_view actual) {
    constexpr std::size_t kContext = 3;
    const std::vector<std::string_view> wanted = splitLines(expected);
    const std::vector<std::string_view> got = splitLines(actual);
    std::size_t line = 0;
    while (line < wanted.size() && line < got.size() && wanted[line] == got[line]) {
        ++line;
    }
    std::ostringstream text;
    text << "first difference in line " << line + 1 << " (" << wanted.size() << " lines expected, " << got.size()
         << " lines written)\n";
    for (std::size_t i = line - std::min(line, kContext); i < line; ++i) {
        text << "              " << escaped(wanted[i]) << '\n';
    }
    text << "    expected: " << (line < wanted.size() ? escaped(wanted[line]) : "the end") << '\n';
    text << "    written:  " << (line < got.size() ? escaped(got[line]) : "the end") << '\n';
    return text.str();
}

struct Expectation {
    std::string out;
    std::string err;
    int status = 0;
};

void expectOutcome(const Expectation& expected, const ProcessOutcome& outcome) {
    EXPECT_EQ(expected.status, outcome.status) << "signal " << outcome.signal;
    EXPECT_TRUE(expected.out == outcome.output)
        << "standard output: " << describeDifference(expected.out, outcome.output);
    EXPECT_TRUE(expected.err == outcome.error) << "standard error: " << describeDifference(expected.err, outcome.error);
}

// ---------------------------------------------------------------------------------------------------------------------
// Scripts as data

struct Script {
    std::string name;  // as a part of a test's name
    fs::path path;

    [[nodiscard]] fs::path beside(const std::string& ending) const { return fs::path(path).replace_extension(ending); }
    [[nodiscard]] std::string fileName() const { return path.filename().string(); }
};

void PrintTo(const Script& script, std::ostream* stream) { *stream << script.path.string(); }

std::string nameOfScript(const testing::TestParamInfo<Script>& info) { return info.param.name; }

void appendScripts(std::vector<Script>& scripts, const fs::path& directory, const std::string& prefix) {
    if (!fs::is_directory(directory)) {
        return;
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        if (entry.path().extension() == ".rb") {
            std::string name = prefix + "_" + entry.path().stem().string();
            std::replace_if(
                name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
            scripts.push_back({name, entry.path()});
        }
    }
}

// All scripts of all areas in a fixed order, except those of the area `skipped`.
std::vector<Script> findScripts(std::string_view skipped = {}) {
    std::vector<Script> scripts;
    if (fs::is_directory(MORVELTESK_SCRIPTS_DIR)) {
        for (const fs::directory_entry& area : fs::directory_iterator(MORVELTESK_SCRIPTS_DIR)) {
            const std::string name = area.path().filename().string();
            if (name != skipped) {
                appendScripts(scripts, area.path(), name);
            }
        }
    }
    appendScripts(scripts, MORVELTESK_EXAMPLES_DIR, "examples");
    std::sort(scripts.begin(), scripts.end(), [](const Script& a, const Script& b) { return a.name < b.name; });
    return scripts;
}

std::vector<Script> findScriptsToCompile() {
    std::vector<Script> scripts = findScripts("compile_errors");
    std::erase_if(scripts, [](const Script& script) { return fs::exists(script.beside(".args")); });
    return scripts;
}

std::string withProgramName(std::string text) {
    constexpr std::string_view kPlaceholder = "{program}";
    const std::string program = programPath();
    for (std::size_t at = 0; (at = text.find(kPlaceholder, at)) != std::string::npos; at += program.size()) {
        text.replace(at, kPlaceholder.size(), program);
    }
    return text;
}

// Expected output follows the statements that print it: each "#=> TEXT" is a line. Other output has its own file.
constexpr std::string_view kPrints = "#=>";

std::string outputInComments(std::string_view source) {
    std::string output;
    for (std::string_view line : splitLines(source)) {
        const std::size_t comment = line.find(kPrints);
        if (comment != std::string_view::npos) {
            line.remove_prefix(comment + kPrints.size());
            output += line.substr(line.starts_with(' ') ? 1 : 0);
        }
    }
    return output;
}

Expectation expectationOf(const Script& script) {
    Expectation expected;
    const std::optional<std::string> output = readIfPresent(script.beside(".out"));
    expected.out = withProgramName(output ? *output : outputInComments(readFile(script.path)));
    expected.err = withProgramName(readIfPresent(script.beside(".err")).value_or(""));
    expected.status = std::stoi(readIfPresent(script.beside(".status")).value_or("0"));
    return expected;
}

std::vector<std::string> wordsOf(const Script& script) {
    const std::optional<std::string> text = readIfPresent(script.beside(".args"));
    if (!text) {
        return {script.fileName()};
    }
    std::vector<std::string> words;
    for (std::string_view line : splitLines(*text)) {
        words.emplace_back(line.substr(0, line.find('\n')));
    }
    return words;
}

void fillDirectory(const Script& script, const fs::path& directory) {
    fs::copy_file(script.path, directory / script.fileName());
    const fs::path files = script.beside(".files");
    if (fs::is_directory(files)) {
        fs::copy(files, directory, fs::copy_options::recursive);
    }
}

class ScriptTest : public testing::TestWithParam<Script> {};

TEST_P(ScriptTest, PrintsAndEndsAsExpected) {
    const Script& script = GetParam();
    const TemporaryDirectory directory;
    fillDirectory(script, directory.path());
    const std::string input = readIfPresent(script.beside(".stdin")).value_or("");
    expectOutcome(expectationOf(script), runProgram(wordsOf(script), directory.path(), input));
}

INSTANTIATE_TEST_SUITE_P(Source, ScriptTest, testing::ValuesIn(findScripts()), nameOfScript);

class CompiledScriptTest : public testing::TestWithParam<Script> {};

// The bytecode file of a script has the same output and exit status as the script itself.
TEST_P(CompiledScriptTest, PrintsAndEndsAsExpected) {
    const Script& script = GetParam();
    const TemporaryDirectory directory;
    fillDirectory(script, directory.path());
    const ProcessOutcome compiled = runProgram({"--compile", script.fileName(), "compiled.bytecode"}, directory.path());
    expectOutcome({}, compiled);
    const std::string input = readIfPresent(script.beside(".stdin")).value_or("");
    expectOutcome(expectationOf(script), runProgram({"--run-bytecode", "compiled.bytecode"}, directory.path(), input));
}

INSTANTIATE_TEST_SUITE_P(Bytecode, CompiledScriptTest, testing::ValuesIn(findScriptsToCompile()), nameOfScript);

// A misspelt side file would silently weaken its test.
TEST(ScriptFiles, BelongToAScript) {
    int scripts = 0;
    for (const fs::directory_entry& area : fs::directory_iterator(MORVELTESK_SCRIPTS_DIR)) {
        ASSERT_TRUE(area.is_directory()) << area.path();
        for (const fs::directory_entry& entry : fs::directory_iterator(area.path())) {
            const std::string ending = entry.path().extension().string();
            const std::vector<std::string> endings =
                entry.is_directory() ? std::vector{".files"s}
                                     : std::vector{".rb"s, ".out"s, ".err"s, ".status"s, ".stdin"s, ".args"s};
            EXPECT_EQ(1, std::count(endings.begin(), endings.end(), ending)) << entry.path();
            EXPECT_TRUE(fs::is_regular_file(fs::path(entry.path()).replace_extension(".rb"))) << entry.path();
            // Two expectations for the same output would soon diverge.
            const bool hasComments =
                ending == ".out" &&
                readFile(fs::path(entry.path()).replace_extension(".rb")).find(kPrints) != std::string::npos;
            EXPECT_FALSE(hasComments) << entry.path();
            scripts += ending == ".rb" ? 1 : 0;
        }
    }
    EXPECT_GT(scripts, 0) << "no script found under " << MORVELTESK_SCRIPTS_DIR;
}

// ---------------------------------------------------------------------------------------------------------------------
// The command line, in several steps

class CommandLine : public testing::Test {
protected:
    void write(const std::string& name, std::string_view content) const { writeFile(path(name), content); }
    [[nodiscard]] std::string read(const std::string& name) const { return readFile(path(name)); }
    [[nodiscard]] std::string path(const std::string& name) const { return m_directory.file(name); }
    [[nodiscard]] ProcessOutcome run(const std::vector<std::string>& words, std::string_view input = {}) const {
        return runProgram(words, m_directory.path(), input);
    }
    [[nodiscard]] const fs::path& directory() const { return m_directory.path(); }

private:
    TemporaryDirectory m_directory;
};

TEST_F(CommandLine, CompilingABrokenScriptCreatesNoFile) {
    write("broken.rb", "puts(1)\nx = (\n");
    expectOutcome({"", "morveltesk: broken.rb:2:6: expected expression\n", 1},
                  run({"--compile", "broken.rb", "out.bytecode"}));
    EXPECT_FALSE(fs::exists(path("out.bytecode")));
}

TEST_F(CommandLine, CompilingABrokenScriptKeepsAnOlderFile) {
    write("broken.rb", "end\n");
    write("out.bytecode", "an older file");
    expectOutcome({"", "morveltesk: broken.rb:1:1: expected expression\n", 1},
                  run({"--compile", "broken.rb", "out.bytecode"}));
    EXPECT_EQ("an older file", read("out.bytecode"));
}

TEST_F(CommandLine, CompilingAMissingScriptCreatesNoFile) {
    expectOutcome({"", "morveltesk: failed to open file: missing.rb\n", 1},
                  run({"--compile", "missing.rb", "out.bytecode"}));
    EXPECT_FALSE(fs::exists(path("out.bytecode")));
}

TEST_F(CommandLine, CompilingReplacesAnOlderFile) {
    write("script.rb", "puts(\"new\")\n");
    expectOutcome({}, run({"--compile", "script.rb", "fresh.bytecode"}));
    write("out.bytecode", std::string(100000, 'x'));
    expectOutcome({}, run({"--compile", "script.rb", "out.bytecode"}));
    EXPECT_EQ(read("fresh.bytecode"), read("out.bytecode"));
    expectOutcome({"new\n", "", 0}, run({"--run-bytecode", "out.bytecode"}));
}

TEST_F(CommandLine, CompilingDoesNotRunTheScript) {
    write("script.rb", "write_file(\"trace.txt\", \"ran\")\n");
    expectOutcome({}, run({"--compile", "script.rb", "out.bytecode"}));
    EXPECT_FALSE(fs::exists(path("trace.txt")));
    expectOutcome({}, run({"--run-bytecode", "out.bytecode"}));
    EXPECT_EQ("ran", read("trace.txt"));
}

TEST_F(CommandLine, BytecodeStandsAloneAndKeepsTheScriptsName) {
    fs::create_directory(path("sub"));
    write("sub/script.rb", "puts(\"alone\")\n\nx = 1 / 0\n");
    expectOutcome({}, run({"--compile", "sub/script.rb", "sub/out.bytecode"}));
    fs::remove(path("sub/script.rb"));
    fs::rename(path("sub/out.bytecode"), path("moved"));
    expectOutcome({"alone\n", "morveltesk: sub/script.rb:3: division by zero\n", 1}, run({"--run-bytecode", "moved"}));
}

TEST_F(CommandLine, BytecodeBeginsWithMagicAndVersion) {
    write("script.rb", "puts(1)\n");
    expectOutcome({}, run({"--compile", "script.rb", "out.bytecode"}));
    EXPECT_EQ("MTBC\x02\0\0\0"s, read("out.bytecode").substr(0, 8));
}

TEST_F(CommandLine, TruncatedBytecodeIsRefused) {
    write("script.rb", "def f(a) return a + 1.5 end\nputs(f(\"x\"), true)\n");
    expectOutcome({}, run({"--compile", "script.rb", "whole.bytecode"}));
    const std::string whole = read("whole.bytecode");
    // Any cut would do; these keep the test short.
    for (std::size_t length = 0; length < whole.size(); length += 7) {
        write("cut.bytecode", std::string_view(whole).substr(0, length));
        const ProcessOutcome outcome = run({"--run-bytecode", "cut.bytecode"});
        EXPECT_EQ(1, outcome.status) << length << " bytes: signal " << outcome.signal;
        EXPECT_EQ("", outcome.output) << length << " bytes";
        const std::string expected = length < 8 ? "bytecode file is too small" : "bytecode ";
        EXPECT_EQ(0u, outcome.error.find("morveltesk: " + expected)) << length << " bytes: " << outcome.error;
    }
}

// Output from before a failure precedes the error line when both streams go to one file.
TEST_F(CommandLine, OutputComesBeforeTheErrorInOneFile) {
    write("script.rb", "puts(\"first\")\nprint(\"second\", \"\\n\")\nerror(\"third\")\n");
    Conversation process(setupOf({"script.rb"}, directory()), path("shared.txt"));
    EXPECT_EQ(1, process.finish().status);
    EXPECT_EQ("first\nsecond\nmorveltesk: third\n", read("shared.txt"));
}

TEST_F(CommandLine, ReplOutputComesInOrderInOneFile) {
    Conversation process(setupOf({"--repl"}, directory()), path("shared.txt"));
    process.send("puts(1)\nx = nil + 1\nprint(2)\nerror(3)\nputs(4)\n");
    EXPECT_EQ(0, process.finish().status);
    EXPECT_EQ(
        "rb> 1\n"
        "rb> <repl>:1: operator '+' expects numbers, strings, or arrays\n"
        "rb> 2rb> 3\n"
        "rb> 4\n"
        "rb> ",
        read("shared.txt"));
}

// A program connected by two pipes sees each prompt, and the output before it, without sending the next line.
TEST_F(CommandLine, ReplShowsItsPromptBeforeItReads) {
    Conversation process(setupOf({"--repl"}, directory()));
    ASSERT_TRUE(process.waitForOutput("rb> "));
    process.send("x = 20\n");
    ASSERT_TRUE(process.waitForOutput("rb> "));
    process.send("puts(x + 1)\n");
    ASSERT_TRUE(process.waitForOutput("21\nrb> "));
    process.send("print(x)\n");
    ASSERT_TRUE(process.waitForOutput("20rb> "));
    process.send("x = nil + 1\n");
    ASSERT_TRUE(process.waitForOutput("rb> "));
    process.send("exit\n");
    expectOutcome({"rb> rb> 21\nrb> 20rb> rb> ", "<repl>:1: operator '+' expects numbers, strings, or arrays\n", 0},
                  process.finish());
}

TEST_F(CommandLine, ReplReadsLongLines) {
    std::string line = "x = \"" + std::string(1000000, 'x') + "\" puts(len(x))\n";
    expectOutcome({"rb> 1000000\nrb> ", "", 0}, run({"--repl"}, line));
}

TEST_F(CommandLine, LargeOutputArrivesWhole) {
    write("script.rb",
          "s = string_rep(\"0123456789\", 10000)\n"
          "i = 0\n"
          "while i < 100 do puts(s) i = i + 1 end\n"
          "error(s)\n");
    std::string line;
    for (int i = 0; i < 10000; ++i) {
        line += "0123456789";
    }
    line += "\n";
    Expectation expected{"", "morveltesk: " + line, 1};
    for (int i = 0; i < 100; ++i) {
        expected.out += line;
    }
    expectOutcome(expected, run({"script.rb"}));
}

TEST_F(CommandLine, LargeScriptReportsItsLine) {
    std::string source;
    for (int i = 0; i < 100000; ++i) {
        source += "x = " + std::to_string(i) + "\n";
    }
    write("large.rb", source + "puts(x)\nputs(y)\n");
    expectOutcome({"99999\n", "morveltesk: large.rb:100002: undefined variable or function 'y'\n", 1},
                  run({"large.rb"}));
}

TEST_F(CommandLine, UncaughtStackOverflowIsAnOrdinaryError) {
    write("script.rb", "def f(n) return f(n + 1) + 1 end\nputs(\"start\")\nf(0)\n");
    const ProcessOutcome outcome = run({"script.rb"});
    EXPECT_EQ(1, outcome.status) << "signal " << outcome.signal;
    EXPECT_EQ("start\n", outcome.output);
    EXPECT_EQ("morveltesk: script.rb:1: stack overflow\n", outcome.error);
}

TEST_F(CommandLine, ReplGoesOnAfterAStackOverflow) {
    const ProcessOutcome outcome = run({"--repl"}, "def f(n) return f(n + 1) + 1 end\nf(0)\nputs(\"on\")\n");
    EXPECT_EQ(0, outcome.status) << "signal " << outcome.signal;
    EXPECT_EQ("rb> rb> rb> on\nrb> ", outcome.output);
    EXPECT_EQ("<repl>:1: stack overflow\n", outcome.error);
}

}  // namespace

}  // namespace morvel::ruby::tests
