#include "stdlib/numbers_from_text.h"

// NOLINTNEXTLINE(modernize-deprecated-headers): newlocale is POSIX and not in <clocale>.
#include <locale.h>

#include <cerrno>
#include <clocale>
#include <cstdlib>

namespace morvel::ruby::internal {

namespace {

// The host may have set another locale for the process, with another decimal point.
locale_t cLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

}  // namespace

std::optional<std::int64_t> parseInteger(const std::string& text, int base) {
    if (text.empty()) {
        return std::nullopt;
    }
    char* end = nullptr;
    errno = 0;
    const long long number = strtoll_l(text.c_str(), &end, base, cLocale());
    if (errno != 0 || end != text.c_str() + text.size()) {
        return std::nullopt;
    }
    return number;
}

std::optional<double> parseFloat(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    const double number = strtod_l(text.c_str(), &end, cLocale());
    if (errno != 0 || end != text.c_str() + text.size()) {
        return std::nullopt;
    }
    return number;
}

}  // namespace morvel::ruby::internal
