// Readable listings of the engine's register code.
#pragma once

#include <string>

namespace morvel::ruby::internal {
struct Program;
}

namespace morvel::ruby::tools {

/// The register code of a program: for each function its signature, locals, temporaries and constants, then one line
/// per instruction with position, source line where it changes, name, operands and, after ";", other effects. The
/// top-level code is translated with only the built-ins defined, the other functions as if it had run and defined its
/// globals. Functions that the baseline interpreter runs are marked as such.
///
/// Operands are written as follows: a local by its name, a temporary as % and its depth, the last expression
/// statement's value as %last, a global as $ and its name, a constant by its value, a jump target as -> and a position.
/// A register that dies with the instruction is in angle brackets. Long strings are cut. A block starts at a ">".
///
/// Example of one line: `>   3  line 2  AddRR               total, <total>, <%0>  ; last value dies`
///
/// Any program that was loaded can be listed; only running out of memory can make listing fail.
[[nodiscard]] std::string listEngineCode(const internal::Program& program);

}  // namespace morvel::ruby::tools
