// Numbers from text by the rules of the C library, in the "C" locale: the host may have set a locale with a different
// decimal point for the process.
#pragma once

namespace morvel::ruby::platform {

/// strtoll in the "C" locale; sets errno as it does.
[[nodiscard]] long long integerFromText(const char* text, char** end, int base) noexcept;

/// strtod in the "C" locale; sets errno as it does.
[[nodiscard]] double floatFromText(const char* text, char** end) noexcept;

}  // namespace morvel::ruby::platform
