// The program `morveltesk`.
#include <cstddef>
#include <span>

#include "cli/program.h"

int main(int argumentCount, char** arguments) {
    return morvel::ruby::cli::runProgram(std::span(arguments, static_cast<std::size_t>(argumentCount)));
}
