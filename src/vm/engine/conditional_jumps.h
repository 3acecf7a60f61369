// Jumps on a condition, which make one instruction with the test of the condition where they can.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vm/engine/code_builder.h"
#include "vm/engine/symbolic_stack.h"

namespace morvel::ruby::internal {

class ConditionalJumps {
public:
    /// Both must outlive the object.
    ConditionalJumps(CodeBuilder& code, SymbolicStack& stack) : m_code(code), m_stack(stack) {}

    /// Pops a condition and jumps to the stack instruction `target` when its truth is `whenTrue`.
    void conditionalJump(std::size_t target, bool whenTrue);

private:
    /// Makes one instruction of the jump and what was just emitted to compute its condition.
    bool fuseJump(const Entry& condition, std::size_t target, bool whenTrue);
    /// Fuses a comparison, logical operation or look-up, if that is what was emitted last, whose result is in `result`.
    bool fuseTest(std::uint16_t result, std::size_t target, bool whenTrue);

    CodeBuilder& m_code;
    SymbolicStack& m_stack;
};

}  // namespace morvel::ruby::internal
