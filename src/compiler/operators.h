// The binary operators, listed once: spelling, token, opcode and precedence.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "compiler/opcodes.h"
#include "compiler/token.h"

namespace morvel::ruby::internal {

/// How tightly an operator binds. Operators of equal precedence associate to the left.
enum class Precedence : std::uint8_t { None, Or, And, Equality, Comparison, Term, Factor };

struct OperatorInfo {
    std::string_view spelling;
    TokenType token;
    OpCode op;
    Precedence precedence;
};

inline constexpr std::array kOperators{
    OperatorInfo{"||", TokenType::PipePipe, OpCode::Or, Precedence::Or},
    OperatorInfo{"or", TokenType::KeywordOr, OpCode::Or, Precedence::Or},
    OperatorInfo{"&&", TokenType::AmpAmp, OpCode::And, Precedence::And},
    OperatorInfo{"and", TokenType::KeywordAnd, OpCode::And, Precedence::And},
    OperatorInfo{"==", TokenType::EqualEqual, OpCode::Equal, Precedence::Equality},
    OperatorInfo{"!=", TokenType::BangEqual, OpCode::NotEqual, Precedence::Equality},
    OperatorInfo{"<", TokenType::LessToken, OpCode::Less, Precedence::Comparison},
    OperatorInfo{"<=", TokenType::LessEqualToken, OpCode::LessEqual, Precedence::Comparison},
    OperatorInfo{">", TokenType::GreaterToken, OpCode::Greater, Precedence::Comparison},
    OperatorInfo{">=", TokenType::GreaterEqualToken, OpCode::GreaterEqual, Precedence::Comparison},
    OperatorInfo{"+", TokenType::Plus, OpCode::Add, Precedence::Term},
    OperatorInfo{"-", TokenType::Minus, OpCode::Subtract, Precedence::Term},
    OperatorInfo{"*", TokenType::Star, OpCode::Multiply, Precedence::Factor},
    OperatorInfo{"/", TokenType::Slash, OpCode::Divide, Precedence::Factor},
    OperatorInfo{"%", TokenType::Percent, OpCode::Modulo, Precedence::Factor},
};

}  // namespace morvel::ruby::internal
