// Generates programs from a fuzzer's bytes: source text by the grammar of the language, and lists of instructions.
#pragma once

#include <string>

#include "byte_source.h"
#include "compiler/program.h"

namespace morvel::ruby::fuzz {

/// Source text that always compiles. Leans towards what two executors could disagree on: mixed types, errors inside
/// expressions, nested pcall, globals and functions that change while they are used, names read before they are
/// assigned, recursion.
[[nodiscard]] std::string generateSource(ByteSource& bytes);

/// A program of arbitrary instructions, most of which make sense.
[[nodiscard]] internal::Program generateProgram(ByteSource& bytes);

/// Changes some instructions, constants and parameters.
void mutateProgram(internal::Program& program, ByteSource& bytes);

}  // namespace morvel::ruby::fuzz
