// Turns source text into tokens.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "compiler/token.h"

namespace morvel::ruby::internal {

/// Tokenises a source text, a batch of tokens at a time. Works on bytes. The tokens point into the source text and into
/// the lexer, which both must outlive them.
class Lexer {
public:
    Lexer(std::string_view source, const std::string& chunkName) : m_source(source), m_chunkName(chunkName) {}
    Lexer(const Lexer&) = delete;
    Lexer& operator=(const Lexer&) = delete;

    /// Appends the next tokens to `tokens`: `count` of them, or fewer up to the last one, which is EndOfFile. Throws
    /// RubyError with a positioned message for the first lexical error in them: "unexpected '&', use '&&'",
    /// "unexpected '|', use '||'", "unterminated string literal", "unterminated string escape" or
    /// "unexpected character 'C'", and "bytecode image is too large" for more lines than an image can number.
    void read(std::vector<Token>& tokens, std::size_t count);

private:
    void readToken();
    void readLineBreak();
    void readComment();
    void readString();
    [[nodiscard]] std::string_view decodeString(std::size_t begin, std::size_t end);
    void readNumber();
    void readName();
    void readOperator();
    void readDoubled(TokenType kind, std::string_view message);

    /// Adds a token for the next `length` bytes.
    void emit(TokenType kind, std::size_t length) {
        m_tokens->push_back({kind, m_line, m_column, rest(length)});
        m_position += length;
        m_column += length;
    }
    [[nodiscard]] std::string_view rest(std::size_t length) const { return {m_source.data() + m_position, length}; }
    [[nodiscard]] char peek(std::size_t offset) const {
        return m_position + offset < m_source.size() ? m_source[m_position + offset] : '\0';
    }
    [[noreturn]] void failHere(std::string_view message) const;

    std::string_view m_source;
    const std::string& m_chunkName;
    std::size_t m_position = 0;
    std::uint32_t m_line = 1;
    std::size_t m_column = 1;
    /// Where tokens go during `read`.
    std::vector<Token>* m_tokens = nullptr;
    /// Literals with escapes; a deque, because tokens point at its elements.
    std::deque<std::string> m_decoded;
};

}  // namespace morvel::ruby::internal
