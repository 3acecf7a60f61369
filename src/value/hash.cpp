#include "value/hash.h"

#include <bit>
#include <chrono>
#include <cstring>
#include <exception>
#include <random>

namespace morvel::ruby::internal {

namespace {

HashKey drawHashKey() noexcept {
    try {
        std::random_device device;
        const auto draw = [&device] { return (std::uint64_t{device()} << 32) | device(); };
        const std::uint64_t first = draw();
        return {first, draw()};
    } catch (const std::exception&) {
        // Without an entropy source, the clock and the load address still vary the key.
        const auto ticks = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
        return {ticks * 0x9E3779B97F4A7C15U, reinterpret_cast<std::uint64_t>(&drawHashKey)};
    }
}

struct SipState {
    std::uint64_t v0;
    std::uint64_t v1;
    std::uint64_t v2;
    std::uint64_t v3;

    explicit SipState(const HashKey& key) noexcept
        : v0(key.first ^ 0x736f6d6570736575U),
          v1(key.second ^ 0x646f72616e646f6dU),
          v2(key.first ^ 0x6c7967656e657261U),
          v3(key.second ^ 0x7465646279746573U) {}

    void round() noexcept {
        v0 += v1;
        v1 = std::rotl(v1, 13) ^ v0;
        v0 = std::rotl(v0, 32);
        v2 += v3;
        v3 = std::rotl(v3, 16) ^ v2;
        v0 += v3;
        v3 = std::rotl(v3, 21) ^ v0;
        v2 += v1;
        v1 = std::rotl(v1, 17) ^ v2;
        v2 = std::rotl(v2, 32);
    }

    void absorb(std::uint64_t word) noexcept {
        v3 ^= word;
        round();
        v0 ^= word;
    }

    std::uint64_t finish() noexcept {
        v2 ^= 0xff;
        round();
        round();
        round();
        return v0 ^ v1 ^ v2 ^ v3;
    }
};

}  // namespace

// Drawn before any other initialiser runs, so that maps made by initialisers find the key ready.
[[gnu::init_priority(101)]] const HashKey hashKey = drawHashKey();

std::uint64_t hashText(std::string_view text) noexcept {
    SipState state(hashKey);
    const char* bytes = text.data();
    std::size_t left = text.size();
    for (; left >= 8; left -= 8, bytes += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes, 8);
        state.absorb(word);
    }
    std::uint64_t last = 0;
    // An empty view may have a null address, which memcpy does not accept.
    if (left != 0) {
        std::memcpy(&last, bytes, left);
    }
    state.absorb(last | (std::uint64_t{text.size()} << 56));
    const std::uint64_t hash = state.finish();
    return hash == 0 ? 1 : hash;
}

}  // namespace morvel::ruby::internal
