// The entry point of every fuzz target, called by libFuzzer or by standalone_main.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

/// Tries one input. Ends the process if the outcome is wrong.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace morvel::ruby::fuzz {

/// Reports a finding and ends the process.
[[noreturn]] void reportFinding(const char* what, const char* details);

}  // namespace morvel::ruby::fuzz
