// Array literals and argument lists that are too long to have a register for each of their values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "compiler/program.h"
#include "vm/engine/flow.h"

namespace morvel::ruby::internal {

/// A step in collecting the values of a long list in an array. Part by part they are moved there as soon as they are
/// made, so that the list takes the registers of one part, however long it is.
struct LongListStep {
    enum class Kind : std::uint8_t {
        /// Before the first value is made: an empty array.
        Begin,
        /// Before the next part is made: the one that is complete is moved.
        Part,
        /// In place of the MakeArray or Call: the last part is moved.
        End,
    };

    /// The instruction that the step is taken before, or in place of.
    std::size_t instruction = 0;
    Kind kind = Kind::Begin;
    /// The stack depth below the list.
    std::int32_t base = 0;
    /// How many values are moved.
    std::uint32_t count = 0;
    /// How many the list has in all.
    std::uint32_t length = 0;
};

/// The longest list whose values may all be in registers, and the longest part.
inline constexpr std::uint32_t kLongestPart = 255;

/// The steps for all lists of more than `part` values, at most kLongestPart, in the order in which they are taken.
/// Hand-made lists with values from other blocks have none.
[[nodiscard]] std::vector<LongListStep> findLongLists(const CompiledFunction& function, const Flow& flow,
                                                      std::uint32_t part);

}  // namespace morvel::ruby::internal
