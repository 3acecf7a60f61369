#include "support/engine_facts.h"

#include <utility>

#include "compiler/compiler.h"
#include "compiler/metadata.h"
#include "vm/engine/translator.h"

namespace morvel::ruby::tests {

TranslatedProgram::TranslatedProgram(internal::Program program)
    : m_program(std::move(program)), m_names(m_program, m_globals) {
    finalizeProgramMetadata(m_program);
}

TranslatedProgram::TranslatedProgram(const std::string& source)
    : TranslatedProgram(internal::compileSource(source, "t")) {}

internal::FunctionFacts TranslatedProgram::facts(std::size_t index) {
    return findFacts(m_program, static_cast<std::int32_t>(index), analyzeFlow(m_program, function(index)).value(),
                     m_names);
}

std::unique_ptr<internal::Code> TranslatedProgram::code(std::size_t index) {
    return translateFunction(m_program, static_cast<std::int32_t>(index), m_names);
}

std::string TranslatedProgram::names(std::size_t index) {
    const std::unique_ptr<internal::Code> translated = code(index);
    std::string text;
    for (std::size_t i = 0; translated != nullptr && i < translated->instructions.size(); ++i) {
        text += text.empty() ? "" : " ";
        text += internal::kEngineOpNames.at(static_cast<std::size_t>(translated->instructions[i].op));
    }
    return text;
}

std::string repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

}  // namespace morvel::ruby::tests
