// How the engine's register instructions are encoded.
//
//      0      1     2           4           6           8
//      +------+-----+-----------+-----------+-----------+
//      |  op  |  n  |     a     |     b     |     c     |   SubtractRK %2, <%1>, 1
//      +------+-----+-----------+-----------+-----------+
//      |  op  |  n  |     a     |         wide          |   JumpIfFalse <%1>, -> 7
//      +------+-----+-----------+-----------------------+
//
//   n     flags, or how many arguments, elements or temporaries, as the operation has it
//   a, b  registers, constants or globals, each number doubled
//   c     the same; a count; or the distance of a jump from the next instruction, signed
//   wide  a constant or global, doubled; a signed distance; an index into a side table; or a length
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "vm/engine/instruction_table.h"

namespace morvel::ruby::internal {

/// One register instruction. Operands that name registers, constants or globals are stored doubled, as counts of
/// machine words: the processor's addressing modes can scale by a word, but not by a value, which is two words.
struct EngineInstruction {
    EngineOp op;
    /// Argument count of a call, element count of an ExtendArray; elsewhere the flags below.
    std::uint8_t n;
    std::uint16_t a;
    std::uint16_t b;
    std::uint16_t c;

    /// The 32-bit operand that takes the place of b and c.
    [[nodiscard]] std::int32_t wide() const noexcept {
        std::int32_t value = 0;
        std::memcpy(&value, &b, sizeof value);
        return value;
    }
    void setWide(std::int32_t value) noexcept { std::memcpy(&b, &value, sizeof value); }
};

static_assert(sizeof(EngineInstruction) == 8 && offsetof(EngineInstruction, c) == 6, "b and c lie side by side");

// Flags in `n`: of the operands that may die with the instruction, the first or the second does.
inline constexpr std::uint8_t kFirstDies = 1;
inline constexpr std::uint8_t kSecondDies = 2;

// Flags in `n` of additions; the first one also of indexed stores.

/// The last expression statement's value can no longer be returned, so it does not count as a holder of the string to
/// be changed.
inline constexpr std::uint8_t kLastValueDies = 8;
/// The first addition of an append chain. The register before its target is dead; the string may be set aside there
/// while the target collects the parts.
inline constexpr std::uint8_t kBeginsAppend = 16;
/// The last addition of an append chain. If the string was set aside, it is in the register before operand b.
inline constexpr std::uint8_t kEndsAppend = 32;

// Flags in `n` of comparisons that combine their outcome with a boolean.

/// By "or" instead of "and".
inline constexpr std::uint8_t kCombinesByOr = 4;
/// A JumpIfFalse or a JumpIfTrue on the result follows. The comparison makes that jump, and the result itself is dead.
inline constexpr std::uint8_t kJumpsIfFalse = 8;
inline constexpr std::uint8_t kJumpsIfTrue = 16;

/// Flag in `n` of returns: the frame has more than kRegistersAtOnce registers to release. It is the bit by which
/// the types of boxed values differ from the others, so that one test answers for both.
inline constexpr std::uint8_t kReleasesMany = 4;

/// Operands above this do not fit their field; separate instructions load them.
inline constexpr std::size_t kLargestOperand = 0x7fff;

}  // namespace morvel::ruby::internal
