// Generates source text by the grammar of the language from a fuzzer's bytes.
#pragma once

#include <string>

#include "byte_source.h"

namespace morvel::ruby::fuzz {

/// Source text that always compiles. Leans towards what two executors could disagree on: mixed types, errors inside
/// expressions, nested pcall, globals, built-ins and functions that change while they are used, names read before they
/// are assigned, recursion.
[[nodiscard]] std::string generateSource(ByteSource& bytes);

}  // namespace morvel::ruby::fuzz
