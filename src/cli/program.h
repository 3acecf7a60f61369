// The command line: four modes over the embedding interface.
#pragma once

#include <span>

namespace morvel::ruby::cli {

/// Runs the program with its command-line words, the invocation name first. Returns the exit status: 0 on success,
/// 1 after the usage text or any reported error.
int runProgram(std::span<char*> words);

}  // namespace morvel::ruby::cli
