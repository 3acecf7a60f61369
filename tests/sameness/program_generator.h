// Random programs and random images for comparing the executors.
#pragma once

#include <cstdint>
#include <string>

#include "morvel/ruby/vm.h"

namespace morvel::ruby::sameness {

/// A random script that ends: loops count to small bounds, functions call only functions defined before them. It mixes
/// kinds, makes errors inside expressions, nests pcall, rebinds globals and built-ins while they are in use, redefines
/// functions, and reads names before they are assigned. The same seed gives the same script.
[[nodiscard]] std::string generateScript(std::uint64_t seed);

/// A random image that loads and ends: its instructions are drawn at random, sound and unsound ones, its jumps go
/// forward. The same seed gives the same image.
[[nodiscard]] RubyBytecode generateImage(std::uint64_t seed);

}  // namespace morvel::ruby::sameness
