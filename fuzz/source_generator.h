// Generates source code from a fuzzer's bytes, following the grammar of the language.
#pragma once

#include <string>

#include "byte_source.h"

namespace morvel::ruby::fuzz {

/// Source code that always compiles. Favours constructs on which two executors could disagree: mixed types, errors
/// inside expressions, nested pcall, globals, built-ins and functions that change while they are used, names read
/// before they are assigned, recursion.
[[nodiscard]] std::string generateSource(ByteSource& bytes);

}  // namespace morvel::ruby::fuzz
