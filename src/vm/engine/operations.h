// Operators and containers: operations whose operands and result are on the stack.
#pragma once

#include <cstddef>
#include <cstdint>

#include "compiler/opcodes.h"
#include "vm/engine/code_builder.h"
#include "vm/engine/function_facts.h"
#include "vm/engine/instruction.h"
#include "vm/engine/symbolic_stack.h"

namespace morvel::ruby::internal {

/// Each function translates one operation, whose operands are the topmost entries.
class Operations {
public:
    /// All must outlive the object.
    Operations(const FunctionFacts& facts, CodeBuilder& code, SymbolicStack& stack)
        : m_facts(facts), m_code(code), m_stack(stack) {}

    void negate();
    void logicalNot();
    /// And or Or.
    void logical(EngineOp op);
    /// Arithmetic or a comparison, which the instruction at `index` is.
    void binary(std::size_t index);

    void makeArray(std::size_t count);
    void getIndex();
    /// How many instructions from `index` on it took: with the SetIndex there, it may carry out a StoreName before
    /// `blockEnd`.
    std::size_t setIndex(std::size_t index, std::size_t blockEnd);

private:
    /// Lets the comparison that was emitted last combine its outcome with `left`; false when that cannot be.
    [[nodiscard]] bool combine(EngineOp op, const Entry& left, const Entry& right);
    /// True when the instruction at `index` stores into just the variable that `entry` stands for.
    [[nodiscard]] bool storesBack(std::size_t index, std::size_t blockEnd, const Entry& entry) const;

    const FunctionFacts& m_facts;
    CodeBuilder& m_code;
    SymbolicStack& m_stack;
};

}  // namespace morvel::ruby::internal
