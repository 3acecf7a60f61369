// Numbers from text, by the rules of the C library's strtoll and strtod in the "C" locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace morvel::ruby::internal {

/// The integer that the whole text stands for in the given base (2 to 36): leading white space, a sign and, in base
/// 16, the prefix "0x" are accepted. Nothing for an empty text, trailing characters, or a number out of range.
[[nodiscard]] std::optional<std::int64_t> parseInteger(const std::string& text, int base);

/// The double that the whole text stands for: decimal and hexadecimal forms, "inf" and "nan". An empty text gives 0.
/// Nothing for trailing characters or a range error, inexact subnormal numbers included.
[[nodiscard]] std::optional<double> parseFloat(const std::string& text);

}  // namespace morvel::ruby::internal
