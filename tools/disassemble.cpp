// Lists the contents of an image file, or the code that a script compiles to.
//
//   morvel-disassemble IMAGE            lists an image file
//   morvel-disassemble --source SCRIPT  compiles a script in memory and lists the result
//
// With --engine in front, the listing is of the engine's register code.

#include <cstddef>
#include <exception>
#include <iostream>
#include <span>
#include <string>
#include <string_view>

#include "bytecode/image.h"
#include "engine_listing.h"
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

// Loading fills in the locals and fast forms, so a script passes through its image, as it does when run.
RubyBytecode compileScriptFile(const std::string& path) { return RubyVM().compileScript(readFile(path), path); }

int usage(const char* invocation) {
    std::cerr << "Usage:\n  " << invocation << " [--engine] <image>\n  " << invocation
              << " [--engine] --source <script>\n";
    return 1;
}

int run(const char* invocation, std::span<char*> words) {
    const bool ofEngine = !words.empty() && std::string_view(words[0]) == "--engine";
    words = words.subspan(ofEngine ? 1 : 0);
    const bool fromSource = words.size() == 2 && std::string_view(words[0]) == "--source";
    if (words.size() != 1 && !fromSource) {
        return usage(invocation);
    }
    const internal::Program program =
        internal::deserializeProgram(fromSource ? compileScriptFile(words[1]) : readImage(words[0]));
    std::cout << (ofEngine ? tools::listEngineCode(program) : tools::listProgram(program)) << std::flush;
    return std::cout ? 0 : 1;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    try {
        const std::span words(arguments, static_cast<std::size_t>(argumentCount));
        return words.empty() ? usage("morvel-disassemble") : run(words[0], words.subspan(1));
    } catch (const std::exception& exception) {
        std::cerr << "morvel-disassemble: " << exception.what() << '\n';
        return 1;
    }
}
