// What expressions and statements share: tokens, code and constants.
#include "compiler/compiler.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "compiler/diagnostics.h"
#include "compiler/lexer.h"
#include "value/native_stack.h"

namespace morvel::ruby::internal {

Program compileSource(std::string_view source, const std::string& chunkName) {
    Lexer lexer(source, chunkName);
    return Compiler(lexer, chunkName).compileProgram();
}

Compiler::Compiler(Lexer& lexer, const std::string& chunkName) : m_tokens(lexer), m_chunkName(chunkName) {
    m_program.name = chunkName;
    m_program.functions.emplace_back().name = "<main>";
}

Program Compiler::compileProgram() {
    constexpr int kMain = 0;
    skipSeparators();
    while (!at(TokenType::EndOfFile)) {
        compileStatement(kMain);
        skipSeparators();
    }
    return std::move(m_program);
}

Token Compiler::require(TokenType kind, std::string_view message) {
    if (!at(kind)) {
        failAtToken(message);
    }
    return advance();
}

void Compiler::failAtToken(std::string_view message) {
    const Token found = token();
    m_tokens.readAll();
    fail(formatError(m_chunkName, found.line, found.column, message));
}

void Compiler::checkNesting() {
    if (nativeStackLow()) {
        failAtToken("stack overflow");
    }
}

void Compiler::emit(int functionIndex, OpCode op, std::int32_t a, std::int32_t b, std::uint32_t line) {
    m_program.functions[static_cast<std::size_t>(functionIndex)].code.push_back({op, a, b, line});
}

std::size_t Compiler::codeSize(int functionIndex) const {
    return m_program.functions[static_cast<std::size_t>(functionIndex)].code.size();
}

void Compiler::patchJump(int functionIndex, std::size_t instruction) {
    auto& code = m_program.functions[static_cast<std::size_t>(functionIndex)].code;
    code[instruction].a = toOperand(code.size());
}

std::int32_t Compiler::addConstant(RubyValue value) {
    const std::int32_t index = toOperand(m_program.constants.size());
    m_program.constants.push_back(std::move(value));
    return index;
}

std::int32_t Compiler::addText(std::string_view text) {
    if (text.size() <= kLongestShortString) {
        return addConstant(m_names.valueOf(text));
    }
    const auto [entry, isNew] = m_texts.try_emplace(text);
    if (isNew) {
        entry->second = RubyValue(text);
    }
    return addConstant(entry->second);
}

void Compiler::pushConstant(int functionIndex, RubyValue value, std::uint32_t line) {
    emit(functionIndex, OpCode::PushConst, addConstant(std::move(value)), 0, line);
}

RubyValue Compiler::integerLiteral() {
    const std::string_view digits = token().text;
    std::int64_t number = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), number).ec != std::errc()) {
        failAtToken("integer literal is out of range");
    }
    return number;
}

RubyValue Compiler::floatLiteral() {
    const std::string_view digits = token().text;
    double number = 0.0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (result.ec == std::errc() && std::isfinite(number)) {
        return number;
    }
    // Out of range: with a whole part the literal is too large; without one it is too small and rounds to 0.
    if (digits.find_first_not_of('0') < digits.find('.')) {
        failAtToken("float literal is out of range");
    }
    return 0.0;
}

}  // namespace morvel::ruby::internal
