// Generates and mutates lists of instructions from a fuzzer's bytes.
#pragma once

#include "byte_source.h"
#include "compiler/program.h"

namespace morvel::ruby::fuzz {

/// A program of arbitrary instructions, most of which make sense.
[[nodiscard]] internal::Program generateProgram(ByteSource& bytes);

/// Changes some instructions, constants and parameters.
void mutateProgram(internal::Program& program, ByteSource& bytes);

}  // namespace morvel::ruby::fuzz
