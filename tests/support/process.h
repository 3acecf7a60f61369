// Runs a program and collects what it prints.
#pragma once

#include <string>
#include <vector>

namespace morvel::ruby::tests {

struct ProcessOutcome {
    /// Exit status; -1 when the program was killed.
    int status = -1;
    std::string out;
    std::string err;
};

/// Runs the program with these arguments and an empty standard input.
[[nodiscard]] ProcessOutcome runProcess(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace morvel::ruby::tests
