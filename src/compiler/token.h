// The tokens of the language.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace morvel::ruby::internal {

enum class TokenType : std::uint8_t {
    Identifier = 0,
    Integer = 1,
    Float = 2,
    String = 3,
    LeftParen = 4,
    RightParen = 5,
    LeftBracket = 6,
    RightBracket = 7,
    Comma = 8,
    Semicolon = 9,
    Newline = 10,
    Plus = 11,
    Minus = 12,
    Star = 13,
    Slash = 14,
    Percent = 15,
    Bang = 16,
    Assign = 17,
    EqualEqual = 18,
    BangEqual = 19,
    LessToken = 20,
    LessEqualToken = 21,
    GreaterToken = 22,
    GreaterEqualToken = 23,
    AmpAmp = 24,
    PipePipe = 25,
    KeywordIf = 26,
    KeywordElsif = 27,
    KeywordElse = 28,
    KeywordEnd = 29,
    KeywordWhile = 30,
    KeywordDef = 31,
    KeywordReturn = 32,
    KeywordTrue = 33,
    KeywordFalse = 34,
    KeywordNil = 35,
    KeywordThen = 36,
    KeywordDo = 37,
    KeywordAnd = 38,
    KeywordOr = 39,
    KeywordNot = 40,
    EndOfFile = 42,
};

struct Token {
    TokenType kind = TokenType::EndOfFile;
    /// Position of the first character; lines and columns start at 1, columns count bytes.
    std::uint32_t line = 1;
    std::size_t column = 1;
    /// Spelling of a name, number or operator; decoded contents of a string literal. Points into the source text or
    /// into the lexer's store of decoded literals.
    std::string_view text;
};

}  // namespace morvel::ruby::internal
