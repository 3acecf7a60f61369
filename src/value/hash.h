// Seeded hashing of map keys.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace morvel::ruby::internal {

/// SipHash-1-3 (Aumasson and Bernstein, "SipHash: a fast short-input PRF", 2012) of the bytes under a key drawn at
/// random once per process. Never 0, so that 0 can stand for "not computed".
[[nodiscard]] std::uint64_t hashText(std::string_view text) noexcept;

/// Makes the standard hash tables hash strings with hashText: their own hash has no secret key, so chosen names could
/// make them slow.
struct TextHash {
    // Not noexcept: this makes the tables keep the hash with each entry instead of recomputing it.
    [[nodiscard]] std::size_t operator()(std::string_view text) const { return hashText(text); }
};

struct HashKey {
    std::uint64_t first;
    std::uint64_t second;
};

/// The key of this process.
extern const HashKey hashKey;

/// A hash of an integer under the same random key. Folding the 128-bit product mixes the key into every bit.
[[nodiscard]] inline std::uint64_t hashInteger(std::int64_t number) noexcept {
    __extension__ using Wide = unsigned __int128;
    const Wide product = Wide{static_cast<std::uint64_t>(number) ^ hashKey.first} * (hashKey.second | 1);
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

}  // namespace morvel::ruby::internal
