// The expression half of the compiler.
#include <array>
#include <cstddef>

#include "compiler/compiler.h"

namespace morvel::ruby::internal {

namespace {

/// What a token means after an operand; no precedence for a token that is not an operator there.
struct TokenOperator {
    Precedence precedence = Precedence::None;
    OpCode op{};
};

constexpr auto kOperatorsByToken = [] {
    std::array<TokenOperator, static_cast<std::size_t>(TokenType::EndOfFile) + 1> operators{};
    for (const OperatorInfo& row : kOperators) {
        operators[static_cast<std::size_t>(row.token)] = {row.precedence, row.op};
    }
    return operators;
}();

}  // namespace

void Compiler::compileExpression(int functionIndex) { compileBinary(functionIndex, Precedence::Or); }

void Compiler::compileBinary(int functionIndex, Precedence least) {
    compileUnary(functionIndex);
    while (true) {
        const TokenOperator& found = kOperatorsByToken[static_cast<std::size_t>(token().kind)];
        if (found.precedence < least) {
            return;
        }
        const std::uint32_t line = advance().line;
        const auto tighter = static_cast<Precedence>(static_cast<int>(found.precedence) + 1);
        compileBinary(functionIndex, tighter);
        emit(functionIndex, found.op, 0, 0, line);
    }
}

void Compiler::compileUnary(int functionIndex) {
    checkNesting();
    const bool negates = at(TokenType::Minus);
    if (negates || at(TokenType::Bang) || at(TokenType::KeywordNot)) {
        const std::uint32_t line = advance().line;
        compileUnary(functionIndex);
        emit(functionIndex, negates ? OpCode::Negate : OpCode::Not, 0, 0, line);
        return;
    }
    compilePrimary(functionIndex);
    compilePostfix(functionIndex);
}

void Compiler::compilePrimary(int functionIndex) {
    const std::uint32_t line = token().line;
    if (at(TokenType::Identifier)) {
        emit(functionIndex, OpCode::LoadName, addText(token().text), 0, line);
    } else if (at(TokenType::Integer)) {
        pushConstant(functionIndex, integerLiteral(), line);
    } else if (at(TokenType::String)) {
        emit(functionIndex, OpCode::PushConst, addText(token().text), 0, line);
    } else if (at(TokenType::LeftParen)) {
        advance();
        compileExpression(functionIndex);
        require(TokenType::RightParen, "expected ')' after expression");
        return;
    } else if (at(TokenType::LeftBracket)) {
        return compileArrayLiteral(functionIndex);
    } else if (at(TokenType::KeywordTrue) || at(TokenType::KeywordFalse)) {
        pushConstant(functionIndex, at(TokenType::KeywordTrue), line);
    } else if (at(TokenType::KeywordNil)) {
        pushConstant(functionIndex, nullptr, line);
    } else if (at(TokenType::Float)) {
        pushConstant(functionIndex, floatLiteral(), line);
    } else {
        failAtToken("expected expression");
    }
    advance();
}

void Compiler::compileArrayLiteral(int functionIndex) {
    const std::uint32_t line = advance().line;
    const std::int32_t count = compileList(functionIndex, TokenType::RightBracket);
    require(TokenType::RightBracket, "expected ']' after array literal");
    emit(functionIndex, OpCode::MakeArray, count, 0, line);
}

void Compiler::compilePostfix(int functionIndex) {
    while (true) {
        if (at(TokenType::LeftBracket)) {
            const std::uint32_t line = advance().line;
            compileExpression(functionIndex);
            require(TokenType::RightBracket, "expected ']' after index expression");
            emit(functionIndex, OpCode::GetIndex, 0, 0, line);
        } else if (at(TokenType::LeftParen)) {
            advance();
            const std::int32_t count = compileList(functionIndex, TokenType::RightParen);
            // A call carries the line of its closing parenthesis.
            const std::uint32_t line = require(TokenType::RightParen, "expected ')' after arguments").line;
            emit(functionIndex, OpCode::Call, count, 0, line);
        } else {
            return;
        }
    }
}

std::int32_t Compiler::compileList(int functionIndex, TokenType closing) {
    std::size_t count = 0;
    if (!at(closing)) {
        compileExpression(functionIndex);
        for (count = 1; at(TokenType::Comma); ++count) {
            advance();
            compileExpression(functionIndex);
        }
    }
    return toOperand(count);
}

}  // namespace morvel::ruby::internal
