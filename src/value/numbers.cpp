#include "value/numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace morvel::ruby::internal {

namespace {

/// Appends a number below a million with at most three decimals, or none from a thousand on; false for all others. Most
/// numbers that people write are of this kind. They fit into six digits, so every number this near to one also rounds
/// to it.
bool appendShortDecimal(std::string& text, double number) {
    constexpr double kNear = 1e-8;
    constexpr std::uint32_t kThousand = 1000;
    const double size = std::fabs(number);
    if (!(size >= 0.001 && size < 1e6)) {
        return false;
    }
    const double scaled = size * kThousand;
    auto thousandths = static_cast<std::uint32_t>(scaled);
    thousandths += scaled - thousandths >= 0.5 ? 1 : 0;
    const std::uint32_t decimals = thousandths % kThousand;
    if (std::fabs(scaled - thousandths) > kNear || (size >= kThousand && decimals != 0)) {
        return false;
    }
    std::array<char, 16> buffer{};
    char* end = buffer.data();
    *end = '-';
    end += std::signbit(number) ? 1 : 0;
    end = std::to_chars(end, buffer.data() + buffer.size(), thousandths / kThousand).ptr;
    if (decimals != 0) {
        *end++ = '.';
        *end++ = static_cast<char>('0' + decimals / 100);
        *end++ = static_cast<char>('0' + decimals / 10 % 10);
        *end++ = static_cast<char>('0' + decimals % 10);
        while (end[-1] == '0') {
            --end;
        }
    }
    text.append(buffer.data(), end);
    return true;
}

}  // namespace

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
    if (appendShortDecimal(text, number)) {
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
