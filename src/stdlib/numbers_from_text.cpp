#include "stdlib/numbers_from_text.h"

#include <cerrno>

#include "platform/c_locale.h"

namespace morvel::ruby::internal {

std::optional<std::int64_t> parseInteger(const std::string& text, int base) {
    if (text.empty()) {
        return std::nullopt;
    }
    char* end = nullptr;
    errno = 0;
    const long long number = platform::integerFromText(text.c_str(), &end, base);
    if (errno != 0 || end != text.c_str() + text.size()) {
        return std::nullopt;
    }
    return number;
}

std::optional<double> parseFloat(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    const double number = platform::floatFromText(text.c_str(), &end);
    if (errno != 0 || end != text.c_str() + text.size()) {
        return std::nullopt;
    }
    return number;
}

}  // namespace morvel::ruby::internal
