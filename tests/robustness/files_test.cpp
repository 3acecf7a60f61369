// Failing files, devices and streams: every failure is reported, none is lost or fatal.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <limits>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "cli/program.h"
#include "counting_allocator.h"
#include "morvel/ruby/vm.h"
#include "support.h"

namespace morvel::ruby::tests {

namespace {

using namespace std::string_literals;

TEST(WritingFiles, ReportsAFullDevice) {
    for (const char* content : {"'x'", "string_rep('0123456789', 100000)", "[1, 2]"}) {
        EXPECT_EQ(outcome("write_file('/dev/full', "s + content + ")"), "error: failed to write file: /dev/full");
        EXPECT_EQ(outcome("append_file('/dev/full', "s + content + ")"), "error: failed to append file: /dev/full");
        EXPECT_EQ(outcome("pcall(write_file, '/dev/full', "s + content + ")"),
                  "[true, false, failed to write file: /dev/full]");
    }
    EXPECT_EQ(outcome("write_file('/dev/full', '')"), "0");
    const RubyVM vm;
    std::string error;
    EXPECT_FALSE(vm.writeBytecodeFile("x = 1", "/dev/full", "t", &error));
    EXPECT_EQ(error, "failed to write file: /dev/full");
}

TEST(WritingFiles, RefusesDirectoriesAndNulBytes) {
    const TemporaryDirectory directory;
    RubyVM vm;
    vm.setGlobal("dir", directory.file(""));
    vm.setGlobal("nul", directory.file("file\0.txt"s));
    EXPECT_EQ(outcome(vm, "write_file(dir, 'x')"), "error: failed to open file for writing: " + directory.file(""));
    EXPECT_EQ(outcome(vm, "append_file(dir, 'x')"), "error: failed to open file for appending: " + directory.file(""));
    EXPECT_EQ(outcome(vm, "read_file(dir)"), "error: failed to open file: " + directory.file(""));
    EXPECT_EQ(outcome(vm, "file_exists?(dir)"), "true");
    const std::string nul = directory.file("file\0.txt"s);
    EXPECT_EQ(outcome(vm, "write_file(nul, 'x')"), "error: failed to open file for writing: " + nul);
    EXPECT_EQ(outcome(vm, "append_file(nul, 'x')"), "error: failed to open file for appending: " + nul);
    EXPECT_EQ(outcome(vm, "read_file(nul)"), "error: failed to open file: " + nul);
    EXPECT_EQ(outcome(vm, "file_exists?(nul)"), "false");
    EXPECT_TRUE(std::filesystem::is_empty(directory.file("")));
    EXPECT_EQ(vm.runScriptFile(nul).error, "unable to open script file: " + nul);
    EXPECT_EQ(vm.runBytecodeFile(nul).error, "unable to open bytecode file: " + nul);
    std::string error;
    EXPECT_FALSE(vm.writeBytecodeFile("x = 1", nul, "t", &error));
    EXPECT_EQ(error, "unable to open bytecode output file: " + nul);
    for (const std::string& path : {directory.file(std::string(5000, 'x')), ""s, directory.file("no/such/dir")}) {
        vm.setGlobal("path", path);
        EXPECT_EQ(outcome(vm, "write_file(path, 'x')"), "error: failed to open file for writing: " + path);
        EXPECT_EQ(outcome(vm, "read_file(path)"), "error: failed to open file: " + path);
    }
}

TEST(WritingFiles, ReportsAClosedPipe) {
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const std::string path = "/proc/self/fd/" + std::to_string(ends[1]);
    close(ends[0]);
    EXPECT_EQ(outcome("write_file('" + path + "', 'x')"), "error: failed to write file: " + path);
    EXPECT_EQ(outcome("append_file('" + path + "', 'x')"), "error: failed to append file: " + path);
    close(ends[1]);
    (void)std::signal(SIGPIPE, before);
}

// By default, the system kills a process whose file exceeds the size limit.
TEST(WritingFiles, ReportsALimitOfSize) {
    const TemporaryDirectory directory;
    ProcessSetup setup;
    setup.prepare = limited(RLIMIT_FSIZE, 100'000);
    const std::string large = directory.file("large");
    writeFile(directory.file("s.rb"), "puts(pcall(write_file, '" + large + "', string_rep('x', 1000000))[2])");
    setup.arguments = {directory.file("s.rb")};
    const ProcessOutcome script = runProcess(setup);
    EXPECT_EQ(script.status, 0);
    EXPECT_EQ(script.output, "failed to write file: " + large + '\n');

    writeFile(directory.file("s.rb"), "x = '" + std::string(1'000'000, 'x') + "'");
    setup.arguments = {"--compile", directory.file("s.rb"), directory.file("image")};
    const ProcessOutcome compiled = runProcess(setup);
    EXPECT_EQ(compiled.status, 1);
    EXPECT_EQ(compiled.error, "morveltesk: failed to write file: " + directory.file("image") + '\n');
}

TEST(NamedPipes, AreFoundWithoutWaitingForTheirOtherEnd) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), S_IRUSR | S_IWUSR), 0);
    const ProcessOutcome child =
        runInChild([&] { return outcome("file_exists?('" + path + "')") == "true" ? 0 : 1; }, 20);
    EXPECT_EQ(child.status, 0);
}

TEST(Sockets, AreThereButCannotBeOpened) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("socket");
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(descriptor, 0);
    const int bound = bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    close(descriptor);
    ASSERT_EQ(bound, 0);
    ASSERT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(outcome("file_exists?('" + path + "')"), "false");
    EXPECT_EQ(outcome("read_file('" + path + "')"), "error: failed to open file: " + path);
    EXPECT_EQ(outcome("write_file('" + path + "', 'x')"), "error: failed to open file for writing: " + path);
    EXPECT_EQ(outcome("append_file('" + path + "', 'x')"), "error: failed to open file for appending: " + path);
}

TEST(ReadingFiles, ReportsAReadError) {
    // Opening succeeds, reading from address 0 does not.
    const std::string path = "/proc/self/mem";
    EXPECT_EQ(outcome("read_file('" + path + "')"), "error: failed to open file: " + path);
    RubyVM vm;
    EXPECT_EQ(vm.runScriptFile(path).error, "unable to open script file: " + path);
    EXPECT_EQ(vm.runBytecodeFile(path).error, "unable to open bytecode file: " + path);
}

TEST(ReadingFiles, TakesWhatIsThere) {
    // Files whose size is unknown in advance or misreported.
    EXPECT_EQ(outcome("len(read_file('/proc/self/status')) > 100"), "true");
    EXPECT_EQ(outcome("read_file('/dev/null')"), "");
    const TemporaryDirectory directory;
    const std::string path = directory.file("shrinking");
    constexpr std::size_t kSize = 3'000'000;
    writeFile(path, std::string(kSize, 'x'));
    std::atomic<bool> done{false};
    std::thread resizer([&] {
        while (!done) {
            std::filesystem::resize_file(path, 10);
            std::filesystem::resize_file(path, kSize);
        }
    });
    RubyVM vm;
    for (int i = 0; i < 200; ++i) {
        const RubyResult result = vm.runScriptString("read_file('" + path + "')", "t");
        ASSERT_TRUE(result.ok) << result.error;
        ASSERT_LE(result.value.asString().size(), kSize);
        ASSERT_GE(result.value.asString().size(), 10U);
        ASSERT_EQ(result.value.asString().substr(0, 10), "xxxxxxxxxx");
        ASSERT_FALSE(vm.runBytecodeFile(path).ok);
    }
    done = true;
    resizer.join();
}

TEST(OpenFiles, AreClosedAtOnce) {
    const TemporaryDirectory directory;
    const auto openFiles = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                             std::filesystem::directory_iterator());
    };
    const auto before = openFiles();
    RubyVM vm;
    vm.setGlobal("dir", directory.file(""));
    vm.setGlobal("path", directory.file("data"));
    vm.bindFunction("open_files", [&](RubyVM&, RubyArguments) { return RubyValue(openFiles() - before); });
    EXPECT_EQ(outcome(vm, "write_file(path, 'a') open_files()"), "0");
    EXPECT_EQ(outcome(vm, "append_file(path, 'b') open_files()"), "0");
    EXPECT_EQ(outcome(vm, "text = read_file(path) text + open_files()"), "ab0");
    EXPECT_EQ(outcome(vm, "[file_exists?(path), file_exists?(dir), open_files()]"), "[true, true, 0]");
    // Files that open but cannot be used are closed too.
    EXPECT_EQ(outcome(vm, "pcall(read_file, dir) pcall(write_file, '/dev/full', 'x') open_files()"), "0");
    const std::string script = directory.file("script.rb");
    const std::string image = directory.file("image");
    writeFile(script, "open_files()");
    EXPECT_TRUE(vm.writeBytecodeFile("open_files()", image, "image"));
    EXPECT_EQ(vm.runScriptFile(script).value.toString(), "0");
    EXPECT_EQ(vm.runBytecodeFile(image).value.toString(), "0");
    writeFile(image, "no image");
    EXPECT_FALSE(vm.runBytecodeFile(image).ok);
    EXPECT_FALSE(vm.runScriptFile(directory.file("")).ok);
    EXPECT_EQ(openFiles(), before);
}

/// Runs the program on a script, with the standard streams set up by `prepare`.
ProcessOutcome runScript(const std::string& source, std::function<void()> prepare) {
    const TemporaryDirectory directory;
    writeFile(directory.file("script.rb"), source);
    ProcessSetup setup;
    setup.arguments = {directory.file("script.rb")};
    setup.prepare = std::move(prepare);
    return runProcess(setup);
}

void outputTo(const char* path) { dup2(open(path, O_WRONLY), STDOUT_FILENO); }

void outputToClosedPipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
    }
}

constexpr const char* kLostOutput = "morveltesk: failed to write to standard output\n";

TEST(StandardOutput, IsNotLostInSilence) {
    const std::array<std::function<void()>, 3> failing{[] { close(STDOUT_FILENO); }, [] { outputTo("/dev/full"); },
                                                       outputToClosedPipe};
    for (const auto& prepare : failing) {
        for (const char* source : {"puts('a line')", "print('x')", "print(string_rep('x', 1000000))",
                                   "i = 0 while i < 100000 do puts(i) i = i + 1 end"}) {
            const ProcessOutcome child = runScript(source, prepare);
            EXPECT_EQ(child.status, 1) << source;
            EXPECT_EQ(child.error, kLostOutput) << source;
        }
        // The script catches the failure, but the program still reports it, because output was lost.
        const ProcessOutcome caught = runScript("pcall(print, string_rep('x', 1000000))", prepare);
        EXPECT_EQ(caught.status, 1);
        EXPECT_EQ(caught.error, kLostOutput);
        // An error of the script takes precedence.
        const ProcessOutcome failed = runScript("puts('a line') error('its own')", prepare);
        EXPECT_EQ(failed.status, 1);
        EXPECT_EQ(failed.error, std::string("morveltesk: its own\n") + kLostOutput);
        // Without output, nothing is lost.
        EXPECT_EQ(runScript("x = 1", prepare).status, 0);
    }
    ProcessSetup repl;
    repl.arguments = {"--repl"};
    repl.input = "x = 1\nputs(x)\n";
    repl.prepare = [] { outputTo("/dev/full"); };
    EXPECT_EQ(runProcess(repl).status, 1);
}

TEST(StandardOutput, IsNotTakenOverByAFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("data");
    const ProcessOutcome child =
        runScript("print('not for the file') write_file('" + path + "', 'content') print('nor this')",
                  [] { close(STDOUT_FILENO); });
    EXPECT_EQ(readFile(path), "content");
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.error, kLostOutput);
    const ProcessOutcome closed = runScript("write_file('" + path + "', 'content') error('not for the file')", [] {
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
    });
    EXPECT_EQ(readFile(path), "content");
    EXPECT_EQ(closed.status, 1);
}

TEST(StandardInput, MayBeClosedOrADirectory) {
    ProcessSetup repl;
    repl.arguments = {"--repl"};
    const std::array<std::function<void()>, 2> unreadable{[] { close(STDIN_FILENO); },
                                                          [] { dup2(open("/", O_RDONLY), STDIN_FILENO); }};
    for (const auto& prepare : unreadable) {
        repl.prepare = prepare;
        const ProcessOutcome child = runProcess(repl);
        EXPECT_EQ(child.status, 0);
        EXPECT_EQ(child.output, "rb> ");
        EXPECT_EQ(child.error, "");
    }
}

TEST(StandardInput, GivesScriptsAndImages) {
    const std::string source = "puts('from a stream', 1 + 1)";
    const RubyVM vm;
    const RubyBytecode image = vm.compileScript(source, "image");
    const std::string imageText(image.bytes.begin(), image.bytes.end());
    const auto fromPipe = [](const std::string& text) {
        return [text] {
            std::array<int, 2> ends{};
            if (pipe(ends.data()) == 0 && write(ends[1], text.data(), text.size()) > 0) {
                close(ends[1]);
                dup2(ends[0], STDIN_FILENO);
                close(ends[0]);
            }
        };
    };
    for (const bool asPipe : {false, true}) {
        ProcessSetup script;
        script.arguments = {"/dev/stdin"};
        ProcessSetup bytecode;
        bytecode.arguments = {"--run-bytecode", "/dev/stdin"};
        ProcessSetup compile;
        compile.arguments = {"--compile", "/dev/stdin", "/dev/stdout"};
        if (asPipe) {
            script.prepare = fromPipe(source);
            bytecode.prepare = fromPipe(imageText);
            compile.prepare = fromPipe(source);
        } else {
            script.input = source;
            bytecode.input = imageText;
            compile.input = source;
        }
        EXPECT_EQ(runProcess(script).output, "from a stream 2\n");
        EXPECT_EQ(runProcess(bytecode).output, "from a stream 2\n");
        const RubyBytecode expected = vm.compileScript(source, "/dev/stdin");
        EXPECT_EQ(runProcess(compile).output, std::string(expected.bytes.begin(), expected.bytes.end()));
    }
}

/// Runs the command line program in this process; returns its status and its standard error.
std::pair<int, std::string> runHere(std::vector<std::string> words, std::size_t memory) {
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    testing::internal::CaptureStderr();
    limitLiveBytes(allocationCounts().liveBytes + memory);
    const int status = cli::runProgram(pointers);
    limitLiveBytes(std::numeric_limits<std::size_t>::max());
    return {status, testing::internal::GetCapturedStderr()};
}

TEST(Starting, ReportsThatNoVmCanBeMade) {
    // The VM is created before the arguments are parsed.
    constexpr std::size_t kTooLittle = 1000;
    const auto failure = std::pair(1, "morveltesk: out of memory\n"s);
    EXPECT_EQ(runHere({"morveltesk"}, kTooLittle), failure);
    EXPECT_EQ(runHere({"morveltesk", "--run-bytecode", "/no/such/image"}, kTooLittle), failure);
    EXPECT_EQ(runHere({"morveltesk", "/no/such/script"}, kTooLittle), failure);
}

TEST(Starting, ShowsTheUsageUnderTheNameItWasInvokedBy) {
    constexpr std::size_t kEnough = std::size_t{64} * 1024 * 1024;
    EXPECT_EQ(runHere({"./some name"}, kEnough), std::pair(1,
                                                           "Usage:\n"
                                                           "  ./some name <script>\n"
                                                           "  ./some name --compile <script> <output.bytecode>\n"
                                                           "  ./some name --run-bytecode <input.bytecode>\n"
                                                           "  ./some name --repl\n"s));
}

TEST(Compiling, ReportsWhatItCannotReadOrWrite) {
    const auto compiled = [](const std::string& source, const std::string& output) {
        ProcessSetup setup;
        setup.arguments = {"--compile", source, output};
        const ProcessOutcome child = runProcess(setup);
        EXPECT_EQ(child.status, 1);
        return child.error;
    };
    const TemporaryDirectory directory;
    writeFile(directory.file("script.rb"), "x = 1");
    const std::string output = directory.file("image");
    EXPECT_EQ(compiled("/proc/self/mem", output), "morveltesk: failed to open file: /proc/self/mem\n");
    EXPECT_EQ(compiled("/", output), "morveltesk: failed to open file: /\n");
    EXPECT_FALSE(std::filesystem::exists(output));
    EXPECT_EQ(compiled(directory.file("script.rb"), "/dev/full"), "morveltesk: failed to write file: /dev/full\n");
    EXPECT_EQ(compiled(directory.file("script.rb"), "/"), "morveltesk: unable to open bytecode output file: /\n");
}

TEST(Compiling, ReportsThatMemoryIsOut) {
    constexpr std::size_t kMemory = std::size_t{64} * 1024 * 1024;
    const TemporaryDirectory directory;
    std::string script = directory.file("script.rb");
    std::string image = directory.file("image");
    writeFile(script, "x = 1");
    std::filesystem::resize_file(script, kMemory * 2);
    std::string name = "morveltesk";
    std::string compile = "--compile";
    std::array compiling{name.data(), compile.data(), script.data(), image.data()};
    std::array running{name.data(), script.data()};
    for (const std::span<char*> words : {std::span<char*>(compiling), std::span<char*>(running)}) {
        testing::internal::CaptureStderr();
        limitLiveBytes(allocationCounts().liveBytes + kMemory);
        const int status = cli::runProgram(words);
        limitLiveBytes(std::numeric_limits<std::size_t>::max());
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "morveltesk: out of memory\n");
        EXPECT_EQ(status, 1);
    }
    EXPECT_FALSE(std::filesystem::exists(image));
}

}  // namespace

}  // namespace morvel::ruby::tests
