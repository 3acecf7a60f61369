// What every fuzz target defines, for libFuzzer and for the plain tester in standalone_main.cpp alike.
#pragma once

#include <cstddef>
#include <cstdint>

/// Tries one input. Ends the process when something is wrong with what happened.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace morvel::ruby::fuzz {

/// Reports a finding and ends the process.
[[noreturn]] void reportFinding(const char* what, const char* details);

}  // namespace morvel::ruby::fuzz
