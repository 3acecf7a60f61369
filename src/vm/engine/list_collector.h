// Translates long lists so that their values are collected in arrays.
#pragma once

#include <cstddef>
#include <vector>

#include "vm/engine/code_builder.h"
#include "vm/engine/long_lists.h"
#include "vm/engine/symbolic_stack.h"

namespace morvel::ruby::internal {

/// While a list is open, the symbolic stack holds its array and the values of the current part instead of all values so
/// far.
class ListCollector {
public:
    /// All arguments must outlive the object.
    ListCollector(const CompiledFunction& function, const std::vector<LongListStep>& steps, CodeBuilder& code,
                  SymbolicStack& stack)
        : m_function(function), m_steps(steps), m_hasSteps(!steps.empty()), m_code(code), m_stack(stack) {}

    /// Takes the steps at stack instruction `index`; true when one of them replaces it.
    bool translate(std::size_t index) { return m_hasSteps && takeSteps(index); }
    /// The greatest depth of the stack, when there are long lists.
    [[nodiscard]] std::size_t deepest() const { return m_deepest; }

private:
    bool takeSteps(std::size_t index);
    void movePart(const LongListStep& step);
    /// The callee and the array of its arguments are on top.
    void call();

    const CompiledFunction& m_function;
    const std::vector<LongListStep>& m_steps;
    const bool m_hasSteps;
    CodeBuilder& m_code;
    SymbolicStack& m_stack;
    std::size_t m_next = 0;
    std::size_t m_deepest = 0;
};

}  // namespace morvel::ruby::internal
