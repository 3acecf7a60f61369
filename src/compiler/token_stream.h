// The tokens of a source text, read as the compiler reaches them.
#pragma once

#include <cstddef>
#include <vector>

#include "compiler/lexer.h"

namespace morvel::ruby::internal {

/// A window that moves over the tokens: keeping all of them would take many times the memory of the source.
class TokenStream {
public:
    /// Starts at the first token of `lexer`. Throws as Lexer::read does, here and wherever more tokens are read.
    explicit TokenStream(Lexer& lexer) : m_lexer(lexer) { readMore(); }

    [[nodiscard]] const Token& current() const noexcept { return m_window[m_current]; }
    /// Steps over the current token and returns it; the end-of-file token stays current.
    Token advance() {
        const Token passed = current();
        if (passed.kind != TokenType::EndOfFile) {
            ++m_current;
            if (m_current == m_window.size()) {
                readMore();
            }
        }
        return passed;
    }
    /// The token `distance` places after the current one, which must exist: no token before it may be the last.
    [[nodiscard]] const Token& ahead(std::size_t distance) {
        while (m_current + distance >= m_window.size()) {
            readMore();
        }
        return m_window[m_current + distance];
    }
    /// Reads all remaining tokens, to raise the first lexical error in them.
    void readAll() {
        while (m_window.back().kind != TokenType::EndOfFile) {
            m_current = m_window.size();
            readMore();
        }
    }

private:
    /// Drops the tokens before the current one and reads more.
    void readMore();

    Lexer& m_lexer;
    std::vector<Token> m_window;
    std::size_t m_current = 0;
};

}  // namespace morvel::ruby::internal
