// Numbers from text, by the rules of the C library's strtoll and strtod in the "C" locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace morvel::ruby::internal {

/// The integer that the whole string spells in the given base (2 to 36). Leading white space, a sign and, in base 16,
/// the prefix "0x" are accepted. Nothing for an empty string, trailing characters, or a number out of range.
[[nodiscard]] std::optional<std::int64_t> parseInteger(const std::string& text, int base);

/// The double that the whole string spells: decimal and hexadecimal forms, "inf" and "nan". An empty string gives 0.
/// Nothing for trailing characters or a range error, inexact subnormal numbers included.
[[nodiscard]] std::optional<double> parseFloat(const std::string& text);

}  // namespace morvel::ruby::internal
