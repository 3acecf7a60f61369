// Runs the scripts under tests/scripts/ and the example programs with the real program, and compares what they print
// and how they end, byte for byte, with the files beside them. A few tests of the command line that need more than one
// run, or a conversation, follow at the end.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using namespace std::string_literals;

constexpr std::chrono::seconds kTimeLimit{60};

std::string programPath() { return fs::absolute(MORVELTESK_PROGRAM).string(); }

// ---------------------------------------------------------------------------------------------------------------------
// Files

std::string readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::optional<std::string> readIfPresent(const fs::path& path) {
    if (!fs::exists(path)) {
        return std::nullopt;
    }
    return readFile(path);
}

void writeFile(const fs::path& path, std::string_view content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

class TemporaryDirectory {
public:
    TemporaryDirectory() {
        std::string name = (fs::temp_directory_path() / "morveltesk-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), "mkdtemp");
        }
        path_ = name;
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }

    [[nodiscard]] const fs::path& path() const { return path_; }

private:
    fs::path path_;
};

// ---------------------------------------------------------------------------------------------------------------------
// Running the program

class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd) : fd_(fd) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { close(); }

    [[nodiscard]] int get() const { return fd_; }
    [[nodiscard]] bool isOpen() const { return fd_ >= 0; }
    void reset(int fd) {
        close();
        fd_ = fd;
    }
    void close() {
        if (fd_ >= 0) {
            ::close(fd_);
            fd_ = -1;
        }
    }

private:
    int fd_ = -1;
};

// Both ends close on exec, so that the child holds only the copies it was given as its standard streams.
void makePipe(FileDescriptor& readEnd, FileDescriptor& writeEnd) {
    std::array<int, 2> fds{};
    if (::pipe(fds.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    readEnd.reset(fds[0]);
    writeEnd.reset(fds[1]);
    for (int fd : fds) {
        ::fcntl(fd, F_SETFD, FD_CLOEXEC);
    }
}

struct Outcome {
    int status = -1;  // the exit status, or -1 when the program was killed
    std::string ending;
    std::string out;
    std::string err;
};

// One run of the program. Input is fed and output collected side by side, so that neither side can block the other.
class Process {
public:
    // With a shared output file, standard output and standard error both go there, as with "> file 2>&1" in a shell.
    Process(const std::vector<std::string>& words, const fs::path& directory, const fs::path& sharedOutput = {})
        : deadline_(Clock::now() + kTimeLimit) {
        FileDescriptor childIn;
        FileDescriptor childOut;
        FileDescriptor childErr;
        makePipe(childIn, in_);
        if (sharedOutput.empty()) {
            makePipe(out_, childOut);
            makePipe(err_, childErr);
        } else {
            childOut.reset(::open(sharedOutput.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
            childErr.reset(::fcntl(childOut.get(), F_DUPFD_CLOEXEC, 0));
        }
        // A program that ends without reading its input must not end the tests.
        ::signal(SIGPIPE, SIG_IGN);
        ::fcntl(in_.get(), F_SETFL, O_NONBLOCK);

        const std::string program = programPath();
        std::vector<char*> arguments;
        arguments.push_back(const_cast<char*>(program.c_str()));
        for (const std::string& word : words) {
            arguments.push_back(const_cast<char*>(word.c_str()));
        }
        arguments.push_back(nullptr);
        pid_ = ::fork();
        if (pid_ < 0) {
            throw std::system_error(errno, std::generic_category(), "fork");
        }
        if (pid_ == 0) {
            ::signal(SIGPIPE, SIG_DFL);
            if (::dup2(childIn.get(), 0) >= 0 && ::dup2(childOut.get(), 1) >= 0 && ::dup2(childErr.get(), 2) >= 0 &&
                ::chdir(directory.c_str()) == 0) {
                ::execv(program.c_str(), arguments.data());
            }
            ::_exit(127);
        }
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() {
        if (pid_ > 0) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
        }
    }

    void send(std::string_view text) { pending_ += text; }

    // Waits until the program has written the text to standard output after what earlier calls have seen.
    [[nodiscard]] bool waitForOutput(std::string_view text) {
        std::size_t found = 0;
        while ((found = outcome_.out.find(text, seen_)) == std::string::npos) {
            if (!out_.isOpen() || !exchange()) {
                return false;
            }
        }
        seen_ = found + text.size();
        return true;
    }

    // Sends what is left, ends the input, collects the output and waits for the end.
    Outcome finish() {
        endInput_ = true;
        while (exchange()) {
        }
        int state = 0;
        pid_t waited = 0;
        while ((waited = ::waitpid(pid_, &state, WNOHANG)) == 0 && Clock::now() < deadline_) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        if (waited == 0) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, &state, 0);
            outcome_.ending = "ran longer than the time limit";
        } else if (WIFEXITED(state)) {
            outcome_.status = WEXITSTATUS(state);
            outcome_.ending = "ended with status " + std::to_string(outcome_.status);
        } else {
            outcome_.ending = "was ended by signal " + std::to_string(WTERMSIG(state));
        }
        pid_ = -1;
        return outcome_;
    }

private:
    // Moves some bytes in either direction. False when both outputs have ended or the time is up.
    bool exchange() {
        if (pending_.empty() && endInput_) {
            in_.close();
        }
        if (!out_.isOpen() && !err_.isOpen() && !in_.isOpen()) {
            return false;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - Clock::now());
        if (left.count() <= 0) {
            return false;
        }
        // poll() passes over negative descriptors.
        std::array<pollfd, 3> fds{pollfd{pending_.empty() ? -1 : in_.get(), POLLOUT, 0}, pollfd{out_.get(), POLLIN, 0},
                                  pollfd{err_.get(), POLLIN, 0}};
        if (::poll(fds.data(), fds.size(), static_cast<int>(left.count())) < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "poll");
        }
        if (fds[0].revents != 0) {
            feed();
        }
        if (fds[1].revents != 0) {
            collect(out_, outcome_.out);
        }
        if (fds[2].revents != 0) {
            collect(err_, outcome_.err);
        }
        return true;
    }

    void feed() {
        const ssize_t count = ::write(in_.get(), pending_.data(), pending_.size());
        if (count > 0) {
            pending_.erase(0, static_cast<std::size_t>(count));
        } else if (count < 0 && errno != EAGAIN && errno != EINTR) {
            // The program does not want its input.
            pending_.clear();
            in_.close();
        }
    }

    static void collect(FileDescriptor& from, std::string& into) {
        std::array<char, 65536> buffer{};
        const ssize_t count = ::read(from.get(), buffer.data(), buffer.size());
        if (count > 0) {
            into.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            from.close();
        }
    }

    FileDescriptor in_;
    FileDescriptor out_;
    FileDescriptor err_;
    pid_t pid_ = -1;
    Clock::time_point deadline_;
    std::string pending_;
    bool endInput_ = false;
    std::size_t seen_ = 0;
    Outcome outcome_;
};

Outcome runProgram(const std::vector<std::string>& words, const fs::path& directory, std::string_view input = {}) {
    Process process(words, directory);
    process.send(input);
    return process.finish();
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

void expectOutcome(const Expectation& expected, const Outcome& outcome) {
    EXPECT_EQ(expected.status, outcome.status) << "the program " << outcome.ending;
    EXPECT_TRUE(expected.out == outcome.out) << "standard output: " << describeDifference(expected.out, outcome.out);
    EXPECT_TRUE(expected.err == outcome.err) << "standard error: " << describeDifference(expected.err, outcome.err);
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

// All scripts of all areas in a fixed order; "skipped" names an area to leave out.
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

Expectation expectationOf(const Script& script) {
    Expectation expected;
    expected.out = withProgramName(readIfPresent(script.beside(".out")).value_or(""));
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

// The bytecode file of a script prints the same and ends the same as the script itself.
TEST_P(CompiledScriptTest, PrintsAndEndsAsExpected) {
    const Script& script = GetParam();
    const TemporaryDirectory directory;
    fillDirectory(script, directory.path());
    const Outcome compiled = runProgram({"--compile", script.fileName(), "compiled.bytecode"}, directory.path());
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
    [[nodiscard]] fs::path path(const std::string& name) const { return directory_.path() / name; }
    [[nodiscard]] Outcome run(const std::vector<std::string>& words, std::string_view input = {}) const {
        return runProgram(words, directory_.path(), input);
    }
    [[nodiscard]] const fs::path& directory() const { return directory_.path(); }

private:
    TemporaryDirectory directory_;
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
    // Every cut would do; these keep the test short.
    for (std::size_t length = 0; length < whole.size(); length += 7) {
        write("cut.bytecode", std::string_view(whole).substr(0, length));
        const Outcome outcome = run({"--run-bytecode", "cut.bytecode"});
        EXPECT_EQ(1, outcome.status) << length << " bytes: the program " << outcome.ending;
        EXPECT_EQ("", outcome.out) << length << " bytes";
        const std::string expected = length < 8 ? "bytecode file is too small" : "bytecode ";
        EXPECT_EQ(0u, outcome.err.find("morveltesk: " + expected)) << length << " bytes: " << outcome.err;
    }
}

// What a script printed before it failed stands before the error line when both streams are one file.
TEST_F(CommandLine, OutputComesBeforeTheErrorInOneFile) {
    write("script.rb", "puts(\"first\")\nprint(\"second\", \"\\n\")\nerror(\"third\")\n");
    Process process({"script.rb"}, directory(), path("shared.txt"));
    EXPECT_EQ(1, process.finish().status);
    EXPECT_EQ("first\nsecond\nmorveltesk: third\n", read("shared.txt"));
}

TEST_F(CommandLine, ReplOutputComesInOrderInOneFile) {
    Process process({"--repl"}, directory(), path("shared.txt"));
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

// A program at the other end of two pipes sees each prompt, and the output before it, without sending the next line.
TEST_F(CommandLine, ReplShowsItsPromptBeforeItReads) {
    Process process({"--repl"}, directory());
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
    const Outcome outcome = run({"script.rb"});
    EXPECT_EQ(1, outcome.status) << outcome.ending;
    EXPECT_EQ("start\n", outcome.out);
    EXPECT_EQ("morveltesk: script.rb:1: stack overflow\n", outcome.err);
}

TEST_F(CommandLine, ReplGoesOnAfterAStackOverflow) {
    const Outcome outcome = run({"--repl"}, "def f(n) return f(n + 1) + 1 end\nf(0)\nputs(\"on\")\n");
    EXPECT_EQ(0, outcome.status) << outcome.ending;
    EXPECT_EQ("rb> rb> rb> on\nrb> ", outcome.out);
    EXPECT_EQ("<repl>:1: stack overflow\n", outcome.err);
}

}  // namespace
