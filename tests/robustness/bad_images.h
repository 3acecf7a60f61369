// Runs thousands of damaged images: every truncation and every single-bit flip of the images of varied scripts.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "morvel/ruby/vm.h"

namespace morvel::ruby::tests {

/// The undamaged image of a script.
struct NamedImage {
    std::string name;
    RubyBytecode image;
    /// The script reaches a limit on purpose and may observe where it lies, so the executors need not agree.
    bool reachesLimit = false;
};

/// The images of the scripts in and below the given directories, no two of the same size and none larger than `largest`
/// bytes. If there are more than `most`, an even selection.
[[nodiscard]] std::vector<NamedImage> imagesOfScripts(const std::vector<std::string>& directories, std::size_t most,
                                                      std::size_t largest);

/// The number of damaged copies of an image: one for each bit and one for each length.
[[nodiscard]] std::size_t damagedCopies(const RubyBytecode& image);

/// Copy number `number`: first the flipped bits, then the truncations.
[[nodiscard]] RubyBytecode damagedCopy(const RubyBytecode& image, std::size_t number);

struct BadImageTally {
    std::size_t tried = 0;
    /// Copies that ended with a value or an error message.
    std::size_t completed = 0;
    std::size_t failed = 0;
    /// Copies that were still running when their CPU time was used up.
    std::size_t stopped = 0;
    /// Failures: copies that ended the process or gave different results on the two executors.
    std::vector<std::string> crashes;
    std::vector<std::string> differences;
};

/// Loads and runs every `step`-th damaged copy of each image, on both executors, in child processes. Each run gets
/// `milliseconds` of CPU time, a bounded amount of memory, and no access to files.
[[nodiscard]] BadImageTally tryDamagedImages(const std::vector<NamedImage>& images, std::size_t step,
                                             unsigned milliseconds);

}  // namespace morvel::ruby::tests
