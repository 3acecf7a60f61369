// The expression half of the compiler.
#include "compiler/compiler.h"

namespace morvel::ruby::internal {

namespace {

OpCode comparisonOp(TokenType kind) {
    // The comparison tokens are numbered in the order of their opcodes, 7 apart.
    constexpr std::uint32_t kDistance = 7;
    return static_cast<OpCode>(static_cast<std::uint32_t>(kind) - kDistance);
}

}  // namespace

void Compiler::compileExpression(int functionIndex) {
    compileAnd(functionIndex);
    while (at(TokenType::PipePipe) || at(TokenType::KeywordOr)) {
        const std::uint32_t line = advance().line;
        compileAnd(functionIndex);
        emit(functionIndex, OpCode::Or, 0, 0, line);
    }
}

void Compiler::compileAnd(int functionIndex) {
    compileEquality(functionIndex);
    while (at(TokenType::AmpAmp) || at(TokenType::KeywordAnd)) {
        const std::uint32_t line = advance().line;
        compileEquality(functionIndex);
        emit(functionIndex, OpCode::And, 0, 0, line);
    }
}

void Compiler::compileEquality(int functionIndex) {
    compileComparison(functionIndex);
    while (at(TokenType::EqualEqual) || at(TokenType::BangEqual)) {
        const Token op = advance();
        compileComparison(functionIndex);
        emit(functionIndex, comparisonOp(op.kind), 0, 0, op.line);
    }
}

void Compiler::compileComparison(int functionIndex) {
    compileTerm(functionIndex);
    while (token().kind >= TokenType::LessToken && token().kind <= TokenType::GreaterEqualToken) {
        const Token op = advance();
        compileTerm(functionIndex);
        emit(functionIndex, comparisonOp(op.kind), 0, 0, op.line);
    }
}

void Compiler::compileTerm(int functionIndex) {
    compileFactor(functionIndex);
    while (at(TokenType::Plus) || at(TokenType::Minus)) {
        const Token op = advance();
        compileFactor(functionIndex);
        emit(functionIndex, op.kind == TokenType::Plus ? OpCode::Add : OpCode::Subtract, 0, 0, op.line);
    }
}

void Compiler::compileFactor(int functionIndex) {
    compileUnary(functionIndex);
    while (at(TokenType::Star) || at(TokenType::Slash) || at(TokenType::Percent)) {
        const Token op = advance();
        compileUnary(functionIndex);
        const OpCode code = op.kind == TokenType::Star    ? OpCode::Multiply
                            : op.kind == TokenType::Slash ? OpCode::Divide
                                                          : OpCode::Modulo;
        emit(functionIndex, code, 0, 0, op.line);
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
    switch (token().kind) {
        case TokenType::Identifier:
            emit(functionIndex, OpCode::LoadName, addText(token().text), 0, line);
            break;
        case TokenType::Integer:
            pushConstant(functionIndex, integerLiteral(), line);
            break;
        case TokenType::Float:
            pushConstant(functionIndex, floatLiteral(), line);
            break;
        case TokenType::String:
            emit(functionIndex, OpCode::PushConst, addText(token().text), 0, line);
            break;
        case TokenType::KeywordTrue:
        case TokenType::KeywordFalse:
            pushConstant(functionIndex, at(TokenType::KeywordTrue), line);
            break;
        case TokenType::KeywordNil:
            pushConstant(functionIndex, nullptr, line);
            break;
        case TokenType::LeftParen:
            advance();
            compileExpression(functionIndex);
            require(TokenType::RightParen, "expected ')' after expression");
            return;
        case TokenType::LeftBracket:
            compileArrayLiteral(functionIndex);
            return;
        default:
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
