// Array literals and argument lists that are too long to have a register for each of their values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "compiler/program.h"
#include "vm/engine/flow.h"

namespace morvel::ruby::internal {

/// A step in collecting the values of a long list in an array. The values move there one part at a time, so a list of
/// any length takes the registers of one part only.
struct LongListStep {
    enum class Kind : std::uint8_t {
        /// Before the first value: makes an empty array.
        Begin,
        /// Before the next part: moves the complete one.
        Part,
        /// In place of the MakeArray or Call: moves the last part.
        End,
    };

    /// The instruction that the step precedes or replaces.
    std::size_t instruction = 0;
    Kind kind = Kind::Begin;
    /// The stack depth below the list.
    std::int32_t base = 0;
    /// How many values are moved.
    std::uint32_t count = 0;
    /// The length of the whole list.
    std::uint32_t length = 0;
};

/// The longest list whose values may all be in registers, and the longest part.
inline constexpr std::uint32_t kLongestPart = 255;

/// The steps for all lists of more than `part` values, at most kLongestPart, in the order in which they are taken.
/// Lists in hand-made code that have values from other blocks have no steps.
[[nodiscard]] std::vector<LongListStep> findLongLists(const CompiledFunction& function, const Flow& flow,
                                                      std::uint32_t part);

}  // namespace morvel::ruby::internal
