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
    /// All arguments must outlive the object.
    Operations(const FunctionFacts& facts, CodeBuilder& code, SymbolicStack& stack)
        : m_facts(facts), m_code(code), m_stack(stack) {}

    void negate();
    void logicalNot();
    /// And or Or.
    void logical(EngineOp op);
    /// The arithmetic operation or comparison at `index`.
    void binary(std::size_t index);

    void makeArray(std::size_t count);
    void getIndex();
    /// Translates the SetIndex at `index`. Returns how many instructions this covers: a StoreName before `blockEnd` may
    /// be included.
    std::size_t setIndex(std::size_t index, std::size_t blockEnd);

private:
    /// Makes the comparison emitted last combine its outcome with `left`; false when that is not possible.
    [[nodiscard]] bool combine(EngineOp op, const Entry& left, const Entry& right);
    /// True when the instruction at `index` stores into the very variable that `entry` stands for.
    [[nodiscard]] bool storesBack(std::size_t index, std::size_t blockEnd, const Entry& entry) const;

    const FunctionFacts& m_facts;
    CodeBuilder& m_code;
    SymbolicStack& m_stack;
};

}  // namespace morvel::ruby::internal
