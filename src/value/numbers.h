// Exact rules for converting numbers to each other and to text, independent of the process's locale.
#pragma once

#include <cstdint>
#include <string>

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// The integer part of `number`, saturating at the ends of the range; NaN gives 0.
[[nodiscard]] std::int64_t truncateToInteger(double number) noexcept;

/// True for an integer that a double holds exactly and that no other integer rounds to. Comparing such integers, or
/// calculating with them, gives the same result as with their doubles.
[[nodiscard]] inline bool isExactInteger(const RubyValue& value) noexcept {
    constexpr std::int64_t kFirstAmbiguous = std::int64_t{1} << 53;
    return value.isInteger() && value.data.integer > -kFirstAmbiguous && value.data.integer < kFirstAmbiguous;
}

/// Appends `number` in general notation with 6 significant digits: 2.0 gives 2, 1e6 gives 1e+06, NaN gives nan.
void appendFloat(std::string& text, double number);

/// Appends the decimal digits of `number`, with a leading "-" for negatives.
void appendInteger(std::string& text, std::int64_t number);

}  // namespace morvel::ruby::internal
