// Lists what an image file holds, or what a script compiles to.
//
//   morvel-disassemble IMAGE            lists an image file
//   morvel-disassemble --source SCRIPT  compiles a script in memory and lists the result

#include <cstddef>
#include <exception>
#include <iostream>
#include <span>
#include <string>

#include "bytecode/image.h"
#include "listing.h"
#include "morvel/ruby/error.h"
#include "morvel/ruby/vm.h"
#include "value/files.h"

namespace {

using namespace morvel::ruby;

std::string readFile(const std::string& path) {
    std::string content;
    if (!internal::readWholeFile(path, content)) {
        throw RubyError("failed to open file: " + path);
    }
    return content;
}

RubyBytecode readImage(const std::string& path) {
    const std::string content = readFile(path);
    return {{content.begin(), content.end()}};
}

// Loading fills in the locals and fast forms, so a script goes through its image as it does when it is run.
RubyBytecode compileScriptFile(const std::string& path) { return RubyVM().compileScript(readFile(path), path); }

int usage(const char* invocation) {
    std::cerr << "Usage:\n  " << invocation << " <image>\n  " << invocation << " --source <script>\n";
    return 1;
}

int run(std::span<char*> words) {
    const bool fromSource = words.size() == 3 && std::string(words[1]) == "--source";
    if (words.size() != 2 && !fromSource) {
        return usage(words.empty() ? "morvel-disassemble" : words[0]);
    }
    const RubyBytecode image = fromSource ? compileScriptFile(words[2]) : readImage(words[1]);
    std::cout << tools::listProgram(internal::deserializeProgram(image)) << std::flush;
    return std::cout ? 0 : 1;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    try {
        return run(std::span(arguments, static_cast<std::size_t>(argumentCount)));
    } catch (const std::exception& exception) {
        std::cerr << "morvel-disassemble: " << exception.what() << '\n';
        return 1;
    }
}
