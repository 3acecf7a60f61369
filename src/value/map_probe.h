// The words in which a map stores keys, and the keys to look up or store.
#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "morvel/ruby/map.h"
#include "value/hash.h"

namespace morvel::ruby {

namespace internal {

/// True for integers that fit into a key word beside its tag bit: their two highest bits are equal.
inline bool fitsKey(std::int64_t number) noexcept {
    const auto bits = static_cast<std::uint64_t>(number);
    return static_cast<std::int64_t>(bits ^ (bits << 1)) >= 0;
}

inline bool isIntegerKey(std::uint64_t key) noexcept { return (key & 1) != 0; }

inline std::uint64_t integerKey(std::int64_t number) noexcept { return (static_cast<std::uint64_t>(number) << 1) | 1; }

inline std::int64_t integerOf(std::uint64_t key) noexcept { return static_cast<std::int64_t>(key) >> 1; }

inline StringBox* boxOf(std::uint64_t key) noexcept {
    return reinterpret_cast<StringBox*>(static_cast<std::uintptr_t>(key));
}

inline std::uint64_t keyOf(StringBox* box) noexcept { return reinterpret_cast<std::uintptr_t>(box); }

/// True for strings that begin like an integer; most keys do not.
inline bool beginsLikeInteger(std::string_view text) noexcept {
    return !text.empty() && (text[0] == '-' || (text[0] >= '0' && text[0] <= '9'));
}

/// The integer whose decimal form is exactly `text`, so that either can be made from the other.
inline std::optional<std::int64_t> canonicalInteger(std::string_view text) noexcept {
    constexpr std::size_t kMostCharacters = 20;
    if (!beginsLikeInteger(text) || text.size() > kMostCharacters) {
        return std::nullopt;
    }
    const bool negative = text[0] == '-';
    const std::string_view digits = text.substr(negative ? 1 : 0);
    if (digits.empty() || (digits[0] == '0' && (negative || digits.size() > 1))) {
        return std::nullopt;
    }
    std::int64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !fitsKey(number)) {
        return std::nullopt;
    }
    return number;
}

// A key hash has 32 bits. The lowest three take no part in choosing a group of slots, so two of them serve as flags.
inline constexpr std::uint32_t kKnown = 1;
inline constexpr std::uint32_t kIsInteger = 2;

/// The hash of an integer key.
inline std::uint32_t hashOfInteger(std::int64_t number) noexcept {
    return static_cast<std::uint32_t>(hashInteger(number));
}

/// The hash of a string as a key, never 0.
inline std::uint32_t keyHashOf(std::string_view text) noexcept {
    if (canonicalInteger(text)) {
        return kKnown | kIsInteger;
    }
    return (static_cast<std::uint32_t>(hashText(text)) & ~kIsInteger) | kKnown;
}

/// The same for a box, computed once and kept with it.
inline std::uint32_t keyHashOf(const StringBox& box) noexcept {
    if (box.keyHash == 0) {
        box.keyHash = keyHashOf(std::string_view(box.text));
    }
    return box.keyHash;
}

/// True when the key hash of a string says that the string spells an integer; the hash of that integer counts then.
inline bool isHashOfInteger(std::uint32_t hash) noexcept { return (hash & kIsInteger) != 0; }

}  // namespace internal

/// A key to look up or store: an integer key word, or a string, perhaps with a box to share.
struct RubyMap::Probe {
    explicit Probe(std::string_view keyText) noexcept : text(keyText) { recognizeInteger(); }

    explicit Probe(internal::StringBox* keyBox) noexcept { setBox(keyBox); }

    explicit Probe(const RubyValue& keyValue) noexcept {
        if (!keyValue.isInteger()) {
            setBox(static_cast<internal::StringBox*>(keyValue.data.box));
        } else if (internal::fitsKey(keyValue.data.integer)) {
            integer = internal::integerKey(keyValue.data.integer);
        } else {
            const char* const end =
                std::to_chars(digits.data(), digits.data() + digits.size(), keyValue.data.integer).ptr;
            text = {digits.data(), static_cast<std::size_t>(end - digits.data())};
        }
    }
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    void setBox(internal::StringBox* keyBox) noexcept {
        box = keyBox;
        text = keyBox->text;
        if (internal::beginsLikeInteger(text) && internal::isHashOfInteger(internal::keyHashOf(*keyBox))) {
            recognizeInteger();
        }
    }

    void recognizeInteger() noexcept {
        if (const auto number = internal::canonicalInteger(text)) {
            integer = internal::integerKey(*number);
        }
    }

    [[nodiscard]] std::uint32_t hash() const noexcept {
        if (integer != kErased) {
            return internal::hashOfInteger(internal::integerOf(integer));
        }
        return box != nullptr ? internal::keyHashOf(*box) : internal::keyHashOf(text);
    }

    /// The key word to store; for a string, it owns one reference to the box.
    [[nodiscard]] Key makeKey() const {
        if (integer != kErased) {
            return integer;
        }
        if (box != nullptr) {
            ++box->references;
            return internal::keyOf(box);
        }
        return internal::keyOf(new internal::StringBox(std::string(text)));
    }

    Key integer = kErased;
    internal::StringBox* box = nullptr;
    std::string_view text;
    /// The digits of an integer that is too large for a key word.
    std::array<char, 24> digits;
};

}  // namespace morvel::ruby
