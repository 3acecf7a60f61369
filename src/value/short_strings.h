// A cache of short strings, so that equal ones share their memory.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// Longer strings are not worth comparing.
inline constexpr std::size_t kLongestShortString = 15;

/// Remembers the short strings made last. Words, fields and keys repeat: sharing them saves each further copy its
/// allocation, its memory and its hash. From its first use on, the cache takes 32 bytes for each of its sets, whose
/// number is a power of two. It doubles, up to `MostSets`, once it has dropped more strings still in use than it has
/// places, and shared at least as many: further copies of those would cost more memory than the places. If it shares
/// few, there are too many different strings for a cache, and a larger one would only be slower.
template <std::size_t Sets, std::size_t MostSets = Sets>
class ShortStrings {
public:
    /// The value for a string; for a short one that is remembered, a copy that shares its memory.
    [[nodiscard]] RubyValue valueOf(std::string_view text) {
        if (text.size() > kLongestShortString) {
            return text;
        }
        if (m_recent.empty()) {
            m_recent.resize(Sets * kStringsOfSet);
            m_setShift = shiftFor(Sets);
        }
        const Bytes bytes = bytesOf(text);
        const RubyValue* const set = &m_recent[setOf(bytes, text.size()) * kStringsOfSet];
        for (std::size_t i = 0; i < kStringsOfSet; ++i) {
            if (holds(set[i], bytes, text.size())) {
                ++m_shared;
                return set[i];
            }
        }
        return remember(text, bytes);
    }

    /// Forgets all strings and frees the memory of the cache; true when there were any.
    bool clear() noexcept {
        const bool hadAny = std::any_of(m_recent.begin(), m_recent.end(), [](const auto& s) { return s.isString(); });
        m_recent = {};
        m_shared = 0;
        m_forgotten = 0;
        return hadAny;
    }

private:
    /// All bytes of a string of known size: its first and last 8 or 4, or each one.
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

    // Not inlined, so that sharing a string needs little stack.
    [[gnu::noinline]] RubyValue remember(std::string_view text, const Bytes& bytes) {
        RubyValue fresh(text);
        if (m_recent.empty()) {
            // Memory ran out meanwhile, and the cache gave up its own.
            return fresh;
        }
        RubyValue* set = &m_recent[setOf(bytes, text.size()) * kStringsOfSet];
        if (set[1].isString() && set[1].data.box->references > 1 && ++m_forgotten > m_recent.size() && grow()) {
            set = &m_recent[setOf(bytes, text.size()) * kStringsOfSet];
        }
        set[1] = std::move(set[0]);
        set[0] = fresh;
        return fresh;
    }

    /// Doubles the cache; false when it is at its full size, shares too little, or there is no memory.
    bool grow() noexcept {
        const bool isUseful = m_shared >= m_forgotten;
        m_shared = 0;
        m_forgotten = 0;
        const std::size_t sets = m_recent.size();
        if (!isUseful || sets > MostSets) {
            return false;
        }
        try {
            std::vector<RubyValue> smaller(sets * kStringsOfSet);
            smaller.swap(m_recent);
            m_setShift = shiftFor(sets);
            // Each set is split over two; the older string of a set moves first.
            for (std::size_t i = smaller.size(); i-- > 0;) {
                if (smaller[i].isString()) {
                    const std::string& text = smaller[i].asString();
                    RubyValue* const set = &m_recent[setOf(bytesOf(text), text.size()) * kStringsOfSet];
                    set[1] = std::move(set[0]);
                    set[0] = std::move(smaller[i]);
                }
            }
        } catch (const std::bad_alloc&) {
            return false;
        }
        return true;
    }

    /// The highest bits of a product are the best mixed: the shift leaves as many of them as number the sets.
    static unsigned shiftFor(std::size_t sets) noexcept {
        return static_cast<unsigned>(std::numeric_limits<std::uint64_t>::digits - std::countr_zero(sets));
    }

    [[nodiscard]] std::size_t setOf(const Bytes& bytes, std::size_t size) const noexcept {
        // Odd multipliers without a pattern in their bits.
        constexpr std::uint64_t kMixFirst = 0x9E3779B97F4A7C15;
        constexpr std::uint64_t kMixLast = 0xD6E8FEB86659FD93;
        return static_cast<std::size_t>(((bytes.first * kMixFirst) ^ (bytes.last + size)) * kMixLast >> m_setShift);
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

    static_assert(std::has_single_bit(Sets) && Sets > 1 && std::has_single_bit(MostSets));

    /// The newer of the two strings of a set comes first.
    static constexpr std::size_t kStringsOfSet = 2;

    std::vector<RubyValue> m_recent;
    unsigned m_setShift = 0;
    /// Since the last decision whether to grow: how many strings were shared, and how many were dropped that were still
    /// in use elsewhere.
    std::size_t m_shared = 0;
    std::size_t m_forgotten = 0;
};

}  // namespace morvel::ruby::internal
