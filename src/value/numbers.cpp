#include "value/numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace morvel::ruby::internal {

std::int64_t truncateToInteger(double number) noexcept {
    constexpr double kTwoTo63 = 9223372036854775808.0;
    if (number >= kTwoTo63) {
        return std::numeric_limits<std::int64_t>::max();
    }
    if (number < -kTwoTo63) {
        return std::numeric_limits<std::int64_t>::min();
    }
    return std::isnan(number) ? 0 : static_cast<std::int64_t>(number);
}

void appendFloat(std::string& text, double number) {
    if (std::isnan(number)) {
        text += "nan";
        return;
    }
    constexpr int kSignificantDigits = 6;
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general,
                                      kSignificantDigits);
    text.append(buffer.data(), result.ptr);
}

void appendInteger(std::string& text, std::int64_t number) {
    std::array<char, 24> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    text.append(buffer.data(), result.ptr);
}

}  // namespace morvel::ruby::internal
