// Character classes of the "C" locale, independent of the process's locale.
#pragma once

namespace morvel::ruby::internal {

[[nodiscard]] constexpr bool isDigitByte(char c) noexcept { return c >= '0' && c <= '9'; }

[[nodiscard]] constexpr bool isLetterByte(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

[[nodiscard]] constexpr bool isSpaceByte(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

[[nodiscard]] constexpr char toUpperByte(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

[[nodiscard]] constexpr char toLowerByte(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace morvel::ruby::internal
