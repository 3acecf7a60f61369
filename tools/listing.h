// Readable listings of compiled programs.
#pragma once

#include <string>

namespace morvel::ruby::internal {
struct Program;
}

namespace morvel::ruby::tools {

/// The listing of a program: its name, then for each function its signature and one line per instruction with index,
/// source line, opcode name, operands and, after ";", the constant, name or function that an operand refers to.
/// Operands that refer to nothing are marked as invalid; listing never fails on them.
///
/// Example of one line: `   3  line 2   StoreName       4          ; total`
[[nodiscard]] std::string listProgram(const internal::Program& program);

/// `text` in double quotes on one line: quotes, backslashes and bytes outside printable ASCII are escaped.
[[nodiscard]] std::string quoteText(const std::string& text);

}  // namespace morvel::ruby::tools
