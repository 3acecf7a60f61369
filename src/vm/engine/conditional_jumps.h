// Conditional jumps, fused with the test of their condition where possible.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "vm/engine/code_builder.h"
#include "vm/engine/symbolic_stack.h"

namespace morvel::ruby::internal {

class ConditionalJumps {
public:
    /// A comparison in a chain, and how it combines with those before it.
    struct Link {
        EngineInstruction comparison;
        std::uint32_t line;

        [[nodiscard]] bool isOr() const { return (comparison.n & kCombinesByOr) != 0; }
    };

    /// Both arguments must outlive the object.
    ConditionalJumps(CodeBuilder& code, SymbolicStack& stack) : m_code(code), m_stack(stack) {}

    /// Pops a condition and jumps to the stack instruction `target` when its truth is `whenTrue`.
    void conditionalJump(std::size_t target, bool whenTrue);

private:
    /// Where a jump within or out of a condition goes.
    struct Destination {
        /// A stack instruction,
        std::size_t target;
        /// or past this many of the next instructions.
        std::optional<std::size_t> skipped;
    };

    /// Fuses the jump with the code just emitted for its condition.
    bool fuseJump(const Entry& condition, std::size_t target, bool whenTrue);
    /// Jumps on the left operand of the "and" or "or" emitted last before the right one is computed, if that decides
    /// the outcome and computing the right one cannot fail. Returns the register of the right one, whose code is last
    /// then.
    [[nodiscard]] std::optional<std::uint16_t> jumpOnLeft(std::uint16_t result, std::size_t target, bool whenTrue,
                                                          std::size_t nesting);
    /// Jumps on the result of the code emitted last, the left operand of `nesting` others.
    void jumpOnTests(std::uint16_t result, std::size_t target, bool whenTrue, std::size_t nesting);
    /// Jumps on the result of a chain of comparisons, or of a single test. "and" and "or" evaluate all their operands,
    /// but comparisons that cannot fail have no visible effect: those at the end of the chain are jumped over once the
    /// others have decided the outcome.
    void fuseChain(std::uint16_t result, std::size_t target, bool whenTrue);
    /// Removes the instruction emitted last if it negates the value computed before it in the same register.
    bool takeNegation(std::uint16_t result);
    /// Removes from the code, and returns, the comparisons that may be jumped over.
    [[nodiscard]] std::vector<Link> takeLinks(std::uint16_t result);
    /// Jumps on the result of the last instruction, making the test part of the jump where possible.
    void jumpOnLast(std::uint16_t result, const Destination& destination, bool whenTrue);
    void emitShort(EngineOp op, std::uint8_t n, std::uint16_t a, std::uint16_t b, const Destination& destination);
    void emitWide(EngineOp op, std::uint8_t n, std::uint16_t a, const Destination& destination);
    /// True when the comparison emitted last cannot fail.
    [[nodiscard]] bool lastCannotFail() const;
    /// True when the current block has compared the register with a constant of this kind already.
    [[nodiscard]] bool isKnown(std::uint16_t local, const RubyValue& kind) const;
    /// True when the instruction at `position` of the current block has no effect but its result.
    [[nodiscard]] bool isPure(std::size_t position) const;

    CodeBuilder& m_code;
    SymbolicStack& m_stack;
};

}  // namespace morvel::ruby::internal
