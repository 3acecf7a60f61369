// Readable listings of the engine's register code.
#pragma once

#include <string>

namespace morvel::ruby::internal {
struct Program;
}

namespace morvel::ruby::tools {

/// The register code of a program: for each function its signature, locals, temporaries and constants, then one line an
/// instruction with position, source line where it changes, name, operands and, after ";", what else it does. The
/// top-level code is shown as translated when only the built-ins are defined, the other functions as when it has run
/// and defined its globals. Functions that the baseline interpreter runs are marked as such.
///
/// An operand is a local by its name, a temporary as % and its depth, the last expression statement's value as %last, a
/// global as $ and its name, a constant by its value, a jump's target as -> and a position. A register that dies with
/// the instruction is shown in angle brackets. Long texts are cut. Positions that are jumped to are marked with ">".
///
/// Example of one line: `>   3  line 2  AddRR               total, <total>, <%0>  ; last value dies`
///
/// Only memory can run out: any program that was loaded can be listed.
[[nodiscard]] std::string listEngineCode(const internal::Program& program);

}  // namespace morvel::ruby::tools
