// Exposes what the translator finds out about a function, for tests of its parts.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "compiler/program.h"
#include "vm/engine/code.h"
#include "vm/engine/function_facts.h"
#include "vm/engine/global_names.h"
#include "vm/globals.h"

namespace morvel::ruby::tests {

/// A program with its own, initially empty, table of globals.
class TranslatedProgram {
public:
    /// Fills in the program's derived tables.
    explicit TranslatedProgram(internal::Program program);
    /// Compiles a script.
    explicit TranslatedProgram(const std::string& source);

    [[nodiscard]] const internal::Program& program() const { return m_program; }
    [[nodiscard]] const internal::CompiledFunction& function(std::size_t index) const {
        return m_program.functions.at(index);
    }
    [[nodiscard]] const internal::GlobalTable& globals() const { return m_globals; }
    [[nodiscard]] std::size_t slotOf(const std::string& global) { return m_globals.ensureSlot(global); }

    /// The facts about function `index`, which must be valid code.
    [[nodiscard]] internal::FunctionFacts facts(std::size_t index);
    /// The register code of function `index`; null if it cannot be translated.
    [[nodiscard]] std::unique_ptr<internal::Code> code(std::size_t index);
    /// The instruction names of that code, such as "AddRR ReturnLocal ReturnNil".
    [[nodiscard]] std::string names(std::size_t index);

private:
    internal::Program m_program;
    internal::GlobalTable m_globals;
    internal::GlobalNames m_names;
};

/// `text` repeated `count` times.
[[nodiscard]] std::string repeated(const std::string& text, int count);

}  // namespace morvel::ruby::tests
