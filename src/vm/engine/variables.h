// Reads and writes of variables, local and global.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vm/engine/assignment.h"
#include "vm/engine/code_builder.h"
#include "vm/engine/function_facts.h"
#include "vm/engine/global_names.h"
#include "vm/engine/symbolic_stack.h"

namespace morvel::ruby::internal {

/// Tracks which variables are known to have a value, and makes instructions compute directly into variables.
class Variables {
public:
    /// All arguments must outlive the object.
    Variables(const FunctionFacts& facts, GlobalNames& names, CodeBuilder& code, SymbolicStack& stack)
        : m_facts(facts),
          m_names(names),
          m_assignment(facts.function, facts.flow, names.table(), facts.globalSlots),
          m_code(code),
          m_stack(stack) {}

    void enterBlock(std::size_t block) { m_assignment.enterBlock(block); }

    void loadName(std::size_t index);
    void storeName(std::size_t index);
    void popEntry(bool isLive);
    void defineFunction(std::size_t index);

private:
    /// Moves an entry that was popped into a register below the temporaries.
    void moveInto(std::uint32_t target, const Entry& value);
    /// Puts the value of an entry into a register that may still hold another one.
    void loadInto(std::uint16_t target, const Entry& entry);
    void storeGlobal(std::uint32_t slot);

    const FunctionFacts& m_facts;
    GlobalNames& m_names;
    DefiniteAssignment m_assignment;
    CodeBuilder& m_code;
    SymbolicStack& m_stack;
};

}  // namespace morvel::ruby::internal
