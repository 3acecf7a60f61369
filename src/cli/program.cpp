#include "cli/program.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "morvel/ruby/vm.h"
#include "platform/signals.h"

namespace morvel::ruby::cli {

namespace {

constexpr int kSuccess = 0;
constexpr int kFailure = 1;

// Reporting allocates nothing, since there may be no memory left.

/// The message of an exception, valid while it lives. Keeps the NUL bytes of a script error, at which what() would end.
std::string_view messageOf(const std::exception& exception) noexcept {
    if (const auto* error = dynamic_cast<const RubyError*>(&exception)) {
        return error->message();
    }
    return dynamic_cast<const std::bad_alloc*>(&exception) != nullptr ? "out of memory" : exception.what();
}

std::string_view messageOf(const RubyResult& result) noexcept {
    return result.error.empty() ? "MorvelTesk execution failed" : std::string_view(result.error);
}

/// Writes out what scripts have printed so far, so that it precedes anything that follows. False when output was lost.
bool flushOutput() {
    std::cout.flush();
    return std::cout.good() && std::ferror(stdout) == 0;
}

constexpr std::string_view kLostOutput = "failed to write to standard output";

void reportLine(std::string_view start, std::string_view message) {
    flushOutput();
    std::cerr << start << message << '\n' << std::flush;
}

void reportError(std::string_view message) { reportLine("morveltesk: ", message); }

int printUsage(std::string_view invocation) {
    std::cerr << "Usage:\n";
    for (const std::string_view form : {" <script>\n", " --compile <script> <output.bytecode>\n",
                                        " --run-bytecode <input.bytecode>\n", " --repl\n"}) {
        std::cerr << "  " << invocation << form;
    }
    return kFailure;
}

std::string readSource(const std::string& path) {
    // Large enough that reading takes few system calls.
    constexpr std::size_t kBlock = 1 << 16;
    std::error_code ignored;
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open() && errno == ENOMEM) {
        throw std::bad_alloc();
    }
    // A directory opens like a file; only reading it would fail.
    bool isReadable = file.is_open() && !std::filesystem::is_directory(path, ignored);
    std::string content;
    std::vector<char> block(kBlock);
    while (isReadable && file) {
        file.read(block.data(), kBlock);
        content.append(block.data(), static_cast<std::size_t>(file.gcount()));
        // The end of the file sets failbit, but not badbit.
        isReadable = !file.bad();
    }
    if (!isReadable) {
        throw RubyError("failed to open file: " + path);
    }
    return content;
}

RubyResult compileFile(const RubyVM& vm, const std::string& scriptPath, const std::string& outputPath) {
    RubyResult result;
    result.ok = vm.writeBytecodeFile(readSource(scriptPath), outputPath, scriptPath, &result.error);
    if (!result.ok && result.error.empty()) {
        result.error = "failed to write bytecode";
    }
    return result;
}

RubyResult runRepl(RubyVM& vm) {
    // Makes a line that does not fit into memory throw; otherwise it would look like the end of the input.
    std::cin.exceptions(std::ios::badbit);
    std::string line;
    while (true) {
        std::cout << "rb> " << std::flush;
        if (!std::getline(std::cin, line) || line == "exit" || line == "quit") {
            RubyResult result;
            result.ok = true;
            return result;
        }
        if (line.empty()) {
            continue;
        }
        const RubyResult result = vm.runScriptString(line, "<repl>");
        if (!result.ok) {
            reportLine("", messageOf(result));
        }
    }
}

/// Runs the mode that the words select. Nothing when they match none of the forms.
std::optional<RubyResult> runMode(RubyVM& vm, std::span<char*> words) {
    if (words.size() < 2) {
        return std::nullopt;
    }
    const std::string_view mode = words[1];
    if (mode == "--compile") {
        return words.size() == 4 ? std::optional(compileFile(vm, words[2], words[3])) : std::nullopt;
    }
    if (mode == "--run-bytecode") {
        return words.size() == 3 ? std::optional(vm.runBytecodeFile(words[2])) : std::nullopt;
    }
    if (mode == "--repl") {
        return runRepl(vm);
    }
    return words.size() == 2 ? std::optional(vm.runScriptFile(words[1])) : std::nullopt;
}

}  // namespace

int runProgram(std::span<char*> words) {
    // A pipe without a reader or a file that may not grow is an error to report, not a reason to die silently.
    platform::ignoreWriteSignals();
    int status = kSuccess;
    bool isLossReported = false;
    const auto fail = [&status, &isLossReported](std::string_view message) {
        reportError(message);
        isLossReported = message == kLostOutput;
        status = kFailure;
    };
    try {
        RubyVM vm;
        const std::optional<RubyResult> result = runMode(vm, words);
        if (!result.has_value()) {
            return printUsage(words.empty() ? "morveltesk" : words[0]);
        }
        if (!result->ok) {
            fail(messageOf(*result));
        }
    } catch (const std::exception& exception) {
        fail(messageOf(exception));
    }
    if (!flushOutput() && !isLossReported) {
        fail(kLostOutput);
    }
    return status;
}

}  // namespace morvel::ruby::cli
