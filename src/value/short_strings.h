// A cache of short strings, so that equal ones made one after the other share their memory.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// Longer texts are not worth comparing.
inline constexpr std::size_t kLongestShortString = 15;

/// Remembers the last short strings that were made. Words, fields and keys repeat: sharing them saves the allocation,
/// the memory, and the hash of each further copy. The cache takes 32 bytes for each of its sets, a power of two, from
/// its first use on.
template <std::size_t Sets>
class ShortStrings {
public:
    /// The string value of a text: of a short one, the same as for an equal text before, where that is remembered.
    [[nodiscard]] RubyValue valueOf(std::string_view text) {
        if (text.size() > kLongestShortString) {
            return text;
        }
        if (m_recent.empty()) {
            m_recent.resize(Sets * 2);
        }
        const Bytes bytes = bytesOf(text);
        RubyValue* const set = &m_recent[setOf(bytes, text.size()) * 2];
        if (!holds(set[0], bytes, text.size())) {
            if (holds(set[1], bytes, text.size())) {
                return set[1];
            }
            RubyValue fresh(text);
            set[1] = std::move(set[0]);
            set[0] = std::move(fresh);
        }
        return set[0];
    }

    /// Forgets them all; true when there were any.
    bool clear() noexcept {
        bool hadAny = false;
        for (RubyValue& string : m_recent) {
            hadAny |= string.isString();
            string = RubyValue();
        }
        return hadAny;
    }

private:
    /// All bytes of a text of known size: its first and its last 8 or 4, or each one.
    struct Bytes {
        std::uint64_t first = 0;
        std::uint64_t last = 0;
    };

    template <typename Word>
    static std::uint64_t wordAt(const char* bytes) noexcept {
        Word word;
        std::memcpy(&word, bytes, sizeof word);
        return word;
    }

    static Bytes bytesOf(std::string_view text) noexcept {
        const char* const begin = text.data();
        const std::size_t size = text.size();
        if (size >= sizeof(std::uint64_t)) {
            return {wordAt<std::uint64_t>(begin), wordAt<std::uint64_t>(begin + size - sizeof(std::uint64_t))};
        }
        if (size >= sizeof(std::uint32_t)) {
            return {wordAt<std::uint32_t>(begin), wordAt<std::uint32_t>(begin + size - sizeof(std::uint32_t))};
        }
        if (size == 0) {
            return {};
        }
        constexpr unsigned kByteBits = 8;
        return {wordAt<std::uint8_t>(begin),
                wordAt<std::uint8_t>(begin + size / 2) << kByteBits | wordAt<std::uint8_t>(begin + size - 1)};
    }

    static std::size_t setOf(const Bytes& bytes, std::size_t size) noexcept {
        // Two odd numbers without a pattern; the best bits of a product are its highest.
        constexpr std::uint64_t kMixFirst = 0x9E3779B97F4A7C15;
        constexpr std::uint64_t kMixLast = 0xD6E8FEB86659FD93;
        constexpr unsigned kSetBits = std::bit_width(Sets) - 1;
        static_assert(std::has_single_bit(Sets) && Sets > 1);
        return static_cast<std::size_t>(((bytes.first * kMixFirst) ^ (bytes.last + size)) * kMixLast >>
                                        (64 - kSetBits));
    }

    static bool holds(const RubyValue& value, const Bytes& bytes, std::size_t size) noexcept {
        if (!value.isString()) {
            return false;
        }
        const std::string& text = static_cast<const StringBox*>(value.data.box)->text;
        if (text.size() != size) {
            return false;
        }
        const Bytes held = bytesOf(text);
        return held.first == bytes.first && held.last == bytes.last;
    }

    std::vector<RubyValue> m_recent;
};

}  // namespace morvel::ruby::internal
