// Runs damaged images by the thousand: every truncation and every flipped bit of the images of varied scripts.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "morvel/ruby/vm.h"

namespace morvel::ruby::tests {

/// The image of a script, to be damaged.
struct NamedImage {
    std::string name;
    RubyBytecode image;
    /// The script goes to a limit on purpose, and may look at where it lies: the executors need not agree.
    bool reachesLimit = false;
};

/// The images of the scripts in the given directories and below, no two of the same size and none larger than
/// `largest` bytes, spread evenly over all that there are when they are more than `most`.
[[nodiscard]] std::vector<NamedImage> imagesOfScripts(const std::vector<std::string>& directories, std::size_t most,
                                                      std::size_t largest);

/// How many damaged copies of an image there are: one for each bit and one for each length.
[[nodiscard]] std::size_t damagedCopies(const RubyBytecode& image);

/// Copy number `number`: first the flipped bits, then the truncations.
[[nodiscard]] RubyBytecode damagedCopy(const RubyBytecode& image, std::size_t number);

struct BadImageTally {
    std::size_t tried = 0;
    /// Ended with a value or with an error message.
    std::size_t completed = 0;
    std::size_t failed = 0;
    /// Were still running when their processor time was used up.
    std::size_t stopped = 0;
    /// Ended the process, or gave different results on the two executors: what must not happen.
    std::vector<std::string> crashes;
    std::vector<std::string> differences;
};

/// Loads and runs every `step`-th damaged copy of each image, on both executors, in child processes. Each run may use
/// `milliseconds` of processor time and a bounded amount of memory, and can touch no files.
[[nodiscard]] BadImageTally tryDamagedImages(const std::vector<NamedImage>& images, std::size_t step,
                                             unsigned milliseconds);

}  // namespace morvel::ruby::tests
