#include "platform/c_locale.h"

// NOLINTNEXTLINE(modernize-deprecated-headers): newlocale is POSIX and not in <clocale>.
#include <locale.h>

#include <cstdlib>

namespace morvel::ruby::platform {

namespace {

locale_t cLocale() noexcept {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

}  // namespace

long long integerFromText(const char* text, char** end, int base) noexcept {
    return strtoll_l(text, end, base, cLocale());
}

double floatFromText(const char* text, char** end) noexcept { return strtod_l(text, end, cLocale()); }

}  // namespace morvel::ruby::platform
