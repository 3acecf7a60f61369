// Compiles scripts into images, as seeds for the fuzzers: seed_images <output directory> <directory of scripts>...
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <span>
#include <string>

#include "morvel/ruby/vm.h"

int main(int argumentCount, char** arguments) {
    const std::span words(arguments, static_cast<std::size_t>(argumentCount));
    if (words.size() < 3) {
        std::cerr << "usage: seed_images <output directory> <directory of scripts>...\n";
        return 1;
    }
    const std::filesystem::path output = words[1];
    std::filesystem::create_directories(output);
    const morvel::ruby::RubyVM vm;
    std::size_t written = 0;
    for (const char* directory : words.subspan(2)) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
            if (entry.path().extension() != ".rb") {
                continue;
            }
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string source{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
            const std::string image = (output / entry.path().stem()).string() + ".bytecode";
            // Some test scripts do not compile.
            written += vm.writeBytecodeFile(source, image, entry.path().filename().string()) ? 1U : 0U;
        }
    }
    std::cout << written << " images\n";
    return 0;
}
