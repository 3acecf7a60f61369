// Translates calls. Calls of some built-ins, as they are bound right now, have instructions of their own.
#pragma once

#include <cstddef>

#include "value/function_internals.h"
#include "vm/engine/code_builder.h"
#include "vm/engine/function_facts.h"
#include "vm/engine/symbolic_stack.h"
#include "vm/globals.h"

namespace morvel::ruby::internal {

class CallSites {
public:
    /// All arguments must outlive the object.
    CallSites(const FunctionFacts& facts, const GlobalTable& globals, CodeBuilder& code, SymbolicStack& stack)
        : m_facts(facts), m_globals(globals), m_code(code), m_stack(stack) {}

    /// Translates the Call at `index`. Returns how many instructions this covers: a Pop before `blockEnd` may be
    /// included.
    std::size_t call(std::size_t index, std::size_t blockEnd);

private:
    /// The built-in that a callee entry stands for right now, if the engine has an instruction for it.
    [[nodiscard]] Shortcut shortcutOf(const Entry& callee) const;
    // The callee is the entry at depth `callee`; the entries above it are its arguments.
    void callLen(std::size_t callee);
    void callArrayPush(std::size_t callee);
    void callGeneral(std::size_t callee, bool lastValueDies);

    const FunctionFacts& m_facts;
    const GlobalTable& m_globals;
    CodeBuilder& m_code;
    SymbolicStack& m_stack;
};

}  // namespace morvel::ruby::internal
