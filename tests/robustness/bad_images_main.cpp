// The program bad_images: loads and runs every damaged copy of the images of many scripts. Options:
//     bad_images [--step N] [--images N] [--milliseconds N] <directory of scripts>...
// Prints a summary; exits with 1 if a copy ended the process or ran differently on the two executors.
#include <cstdlib>
#include <iostream>
#include <span>
#include <string>
#include <vector>

#include "bad_images.h"

int main(int argumentCount, char** arguments) {
    using namespace morvel::ruby::tests;
    std::size_t step = 1;
    std::size_t most = 100;
    unsigned milliseconds = 200;
    std::vector<std::string> directories;
    const std::span words(arguments, static_cast<std::size_t>(argumentCount));
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::string word = words[i];
        const auto number = [&] { return i + 1 < words.size() ? std::strtoul(words[++i], nullptr, 10) : 1; };
        if (word == "--step") {
            step = number();
        } else if (word == "--images") {
            most = number();
        } else if (word == "--milliseconds") {
            milliseconds = static_cast<unsigned>(number());
        } else {
            directories.push_back(word);
        }
    }
    constexpr std::size_t kLargest = 2000;
    const std::vector<NamedImage> images = imagesOfScripts(directories, most, kLargest);
    const BadImageTally tally = tryDamagedImages(images, step == 0 ? 1 : step, milliseconds);
    std::cout << "images " << images.size() << ", damaged copies " << tally.tried << ", completed " << tally.completed
              << ", failed " << tally.failed << ", stopped " << tally.stopped << ", crashes " << tally.crashes.size()
              << ", differences " << tally.differences.size() << '\n';
    for (const auto* list : {&tally.crashes, &tally.differences}) {
        for (const std::string& line : *list) {
            std::cout << line << '\n';
        }
    }
    return tally.crashes.empty() && tally.differences.empty() ? 0 : 1;
}
