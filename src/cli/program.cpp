#include "cli/program.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "morvel/ruby/vm.h"

namespace morvel::ruby::cli {

namespace {

constexpr int kSuccess = 0;
constexpr int kFailure = 1;

// Keeps NUL bytes of a script error, which what() would cut off.
std::string messageOf(const std::exception& exception) {
    if (const auto* error = dynamic_cast<const RubyError*>(&exception)) {
        return error->message();
    }
    return dynamic_cast<const std::bad_alloc*>(&exception) != nullptr ? "out of memory" : exception.what();
}

/// Writes what scripts have printed so far, so that it stands before anything that follows. False when it is lost.
bool flushOutput() {
    std::cout.flush();
    return std::cout.good() && std::ferror(stdout) == 0;
}

constexpr std::string_view kLostOutput = "failed to write to standard output";

void reportLine(const std::string& line) {
    flushOutput();
    std::cerr << line << '\n' << std::flush;
}

void reportError(std::string_view message) { reportLine("morveltesk: " + std::string(message)); }

int printUsage(std::string_view invocation) {
    std::cerr << "Usage:\n";
    for (const std::string_view form : {" <script>\n", " --compile <script> <output.bytecode>\n",
                                        " --run-bytecode <input.bytecode>\n", " --repl\n"}) {
        std::cerr << "  " << invocation << form;
    }
    return kFailure;
}

void requireOk(const RubyResult& result) {
    if (!result.ok) {
        throw RubyError(result.error.empty() ? "MorvelTesk execution failed" : result.error);
    }
}

std::string readSource(const std::string& path) {
    constexpr std::size_t kBlock = 1 << 16;
    std::error_code ignored;
    std::ifstream file(path, std::ios::binary);
    // A directory opens like a file here; only reading it would fail.
    bool isReadable = file.is_open() && !std::filesystem::is_directory(path, ignored);
    std::string content;
    std::vector<char> block(kBlock);
    while (isReadable && file) {
        file.read(block.data(), kBlock);
        content.append(block.data(), static_cast<std::size_t>(file.gcount()));
        // The end of the file is a failure too, but not a bad one.
        isReadable = !file.bad();
    }
    if (!isReadable) {
        throw RubyError("failed to open file: " + path);
    }
    return content;
}

void compileFile(const RubyVM& vm, const std::string& scriptPath, const std::string& outputPath) {
    std::string error;
    if (!vm.writeBytecodeFile(readSource(scriptPath), outputPath, scriptPath, &error)) {
        throw RubyError(error.empty() ? "failed to write bytecode" : error);
    }
}

void runRepl(RubyVM& vm) {
    // A line that there is no memory for throws; it would look like the end of the input otherwise.
    std::cin.exceptions(std::ios::badbit);
    std::string line;
    while (true) {
        std::cout << "rb> " << std::flush;
        if (!std::getline(std::cin, line) || line == "exit" || line == "quit") {
            return;
        }
        if (line.empty()) {
            continue;
        }
        try {
            requireOk(vm.runScriptString(line, "<repl>"));
        } catch (const std::exception& exception) {
            reportLine(messageOf(exception));
        }
    }
}

/// Carries out the mode that the words ask for. False when they fit none of the forms.
bool runMode(RubyVM& vm, std::span<char*> words) {
    if (words.size() < 2) {
        return false;
    }
    const std::string mode = words[1];
    if (mode == "--compile") {
        if (words.size() != 4) {
            return false;
        }
        compileFile(vm, words[2], words[3]);
    } else if (mode == "--run-bytecode") {
        if (words.size() != 3) {
            return false;
        }
        requireOk(vm.runBytecodeFile(words[2]));
    } else if (mode == "--repl") {
        runRepl(vm);
    } else {
        if (words.size() != 2) {
            return false;
        }
        requireOk(vm.runScriptFile(mode));
    }
    return true;
}

}  // namespace

int runProgram(std::span<char*> words) {
    // A reader that goes away or a file that may not grow is an error to report, not a reason to die without a word.
    (void)std::signal(SIGPIPE, SIG_IGN);
    (void)std::signal(SIGXFSZ, SIG_IGN);
    int status = kSuccess;
    std::string failure;
    try {
        RubyVM vm;
        if (!runMode(vm, words)) {
            return printUsage(words.empty() ? "morveltesk" : words[0]);
        }
    } catch (const std::exception& exception) {
        failure = messageOf(exception);
        reportError(failure);
        status = kFailure;
    }
    if (!flushOutput() && failure != kLostOutput) {
        reportError(kLostOutput);
        status = kFailure;
    }
    return status;
}

}  // namespace morvel::ruby::cli
