// Exact rules for turning numbers into each other and into text. Independent of the process's locale.
#pragma once

#include <cstdint>
#include <string>

namespace morvel::ruby::internal {

/// The integer part of `number`, saturating at the ends of the range; NaN gives 0.
[[nodiscard]] std::int64_t truncateToInteger(double number) noexcept;

/// Appends `number` in general notation with 6 significant digits: 2.0 gives 2, 1e6 gives 1e+06, NaN gives nan.
void appendFloat(std::string& text, double number);

/// Appends the decimal digits of `number`, with a leading "-" for negatives.
void appendInteger(std::string& text, std::int64_t number);

}  // namespace morvel::ruby::internal
