// Jumps on a condition, which make one instruction with the test of the condition where they can.
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
    /// A comparison in a chain, with how it is combined with those before it.
    struct Link {
        EngineInstruction comparison;
        std::uint32_t line;

        [[nodiscard]] bool isOr() const { return (comparison.n & kCombinesByOr) != 0; }
    };

    /// Both must outlive the object.
    ConditionalJumps(CodeBuilder& code, SymbolicStack& stack) : m_code(code), m_stack(stack) {}

    /// Pops a condition and jumps to the stack instruction `target` when its truth is `whenTrue`.
    void conditionalJump(std::size_t target, bool whenTrue);

private:
    /// Where a jump within or out of a condition goes.
    struct Destination {
        /// A stack instruction,
        std::size_t target;
        /// or past this many of the instructions that come next.
        std::optional<std::size_t> skipped;
    };

    /// Makes one instruction of the jump and what was just emitted to compute its condition.
    bool fuseJump(const Entry& condition, std::size_t target, bool whenTrue);
    /// The same for a chain of comparisons, or just one test, with its result in `result`. All operands of "and" and
    /// "or" are evaluated; but of comparisons at the end that cannot fail nothing is seen, and those that the others
    /// have decided are jumped over.
    void fuseChain(std::uint16_t result, std::size_t target, bool whenTrue);
    /// Takes back the negation of what was computed before it in the same place, if that is what was emitted last.
    bool takeNegation(std::uint16_t result);
    /// Takes back comparisons that may be jumped over.
    [[nodiscard]] std::vector<Link> takeLinks(std::uint16_t result);
    /// Jumps on the result of the last instruction, making the test part of the jump where possible.
    void jumpOnLast(std::uint16_t result, const Destination& destination, bool whenTrue);
    void emitShort(EngineOp op, std::uint8_t n, std::uint16_t a, std::uint16_t b, const Destination& destination);
    void emitWide(EngineOp op, std::uint8_t n, std::uint16_t a, const Destination& destination);
    /// True when the comparison that was emitted last cannot fail.
    [[nodiscard]] bool lastCannotFail() const;
    /// True when the current block has compared the register with a constant of this kind already.
    [[nodiscard]] bool isKnown(std::uint16_t local, const RubyValue& kind) const;

    CodeBuilder& m_code;
    SymbolicStack& m_stack;
};

}  // namespace morvel::ruby::internal
