// A cache of short strings, so that equal ones made one after the other share their memory.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// Remembers the last short string of each of a number of slots. Words, fields and keys repeat: sharing them saves the
/// allocation, the memory, and the hash of each further copy.
template <std::size_t Slots>
class ShortStrings {
public:
    /// Longer texts are not worth comparing; strings up to this length need one allocation only.
    static constexpr std::size_t kLongest = 15;

    /// The string value of a text of at most kLongest bytes.
    [[nodiscard]] const RubyValue& valueOf(std::string_view text) {
        RubyValue& recent = m_recent[slotOf(text)];
        if (!recent.isString() || recent.asString() != text) {
            recent = RubyValue(text);
        }
        return recent;
    }

private:
    static std::size_t slotOf(std::string_view text) {
        std::size_t hash = text.size();
        for (const char c : text) {
            hash = hash * 31 + static_cast<unsigned char>(c);
        }
        return (hash ^ (hash >> 8)) % Slots;
    }

    std::array<RubyValue, Slots> m_recent;
};

}  // namespace morvel::ruby::internal
