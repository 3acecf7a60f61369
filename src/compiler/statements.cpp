// The statement half of the compiler. Control flow becomes jumps with placeholder targets, patched once the target is
// known.
#include "compiler/compiler.h"

namespace morvel::ruby::internal {

namespace {

constexpr std::int32_t kUnpatched = -1;

bool endsStatement(TokenType kind) {
    return kind == TokenType::Semicolon || kind == TokenType::Newline || kind == TokenType::EndOfFile;
}

}  // namespace

void Compiler::compileStatement(int functionIndex) {
    checkNesting();
    if (at(TokenType::Identifier)) {
        if (isIndexedAssignment()) {
            return compileIndexedAssignment(functionIndex);
        }
        if (m_tokens.ahead(1).kind == TokenType::Assign) {
            return compileAssignment(functionIndex);
        }
        return compileExpressionStatement(functionIndex);
    }
    if (at(TokenType::KeywordIf)) {
        return compileIf(functionIndex);
    }
    if (at(TokenType::KeywordReturn)) {
        return compileReturn(functionIndex);
    }
    if (at(TokenType::KeywordWhile)) {
        return compileWhile(functionIndex);
    }
    if (at(TokenType::KeywordDef)) {
        return compileDef(functionIndex);
    }
    compileExpressionStatement(functionIndex);
}

void Compiler::compileWhile(int functionIndex) {
    const std::uint32_t line = token().line;
    const std::int32_t loopStart = toOperand(codeSize(functionIndex));
    advance();
    compileExpression(functionIndex);
    skipThenOrDo();
    skipSeparators();
    const std::size_t exit = codeSize(functionIndex);
    emit(functionIndex, OpCode::JumpIfFalse, kUnpatched, 0, line);
    compileBlock(functionIndex, false);
    emit(functionIndex, OpCode::Jump, loopStart, 0, line);
    require(TokenType::KeywordEnd, "expected 'end' after while block");
    patchJump(functionIndex, exit);
}

void Compiler::compileIf(int functionIndex) {
    std::vector<std::size_t> endJumps;
    endJumps.push_back(compileBranch(functionIndex));
    while (at(TokenType::KeywordElsif)) {
        endJumps.push_back(compileBranch(functionIndex));
    }
    if (at(TokenType::KeywordElse)) {
        advance();
        skipThenOrDo();
        compileBlock(functionIndex, false);
    }
    require(TokenType::KeywordEnd, "expected 'end' after if block");
    for (const std::size_t jump : endJumps) {
        patchJump(functionIndex, jump);
    }
}

std::size_t Compiler::compileBranch(int functionIndex) {
    const std::uint32_t line = advance().line;
    compileExpression(functionIndex);
    skipThenOrDo();
    skipSeparators();
    const std::size_t skip = codeSize(functionIndex);
    emit(functionIndex, OpCode::JumpIfFalse, kUnpatched, 0, line);
    compileBlock(functionIndex, true);
    const std::size_t endJump = codeSize(functionIndex);
    emit(functionIndex, OpCode::Jump, kUnpatched, 0, line);
    patchJump(functionIndex, skip);
    return endJump;
}

void Compiler::compileDef(int functionIndex) {
    const std::uint32_t line = advance().line;
    const std::string_view name = require(TokenType::Identifier, "expected function name after 'def'").text;
    std::vector<std::string> params = parseParameters();
    const std::int32_t index = toOperand(m_program.functions.size());
    CompiledFunction& function = m_program.functions.emplace_back();
    function.name = name;
    function.params = std::move(params);
    skipThenOrDo();
    compileBlock(index, false);
    require(TokenType::KeywordEnd, "expected 'end' after function body");
    emit(functionIndex, OpCode::DefineFunction, addText(name), index, line);
}

std::vector<std::string> Compiler::parseParameters() {
    std::vector<std::string> params;
    if (!at(TokenType::LeftParen)) {
        return params;
    }
    advance();
    if (!at(TokenType::RightParen)) {
        params.emplace_back(require(TokenType::Identifier, "expected parameter name").text);
        while (at(TokenType::Comma)) {
            advance();
            params.emplace_back(require(TokenType::Identifier, "expected parameter name").text);
        }
    }
    require(TokenType::RightParen, "expected ')' after parameter list");
    return params;
}

void Compiler::compileReturn(int functionIndex) {
    const std::uint32_t line = advance().line;
    if (endsStatement(token().kind) || at(TokenType::KeywordElsif) || at(TokenType::KeywordElse) ||
        at(TokenType::KeywordEnd)) {
        pushConstant(functionIndex, nullptr, line);
    } else {
        compileExpression(functionIndex);
    }
    emit(functionIndex, OpCode::Return, 0, 0, line);
}

void Compiler::compileAssignment(int functionIndex) {
    const Token name = advance();
    require(TokenType::Assign, "expected '=' after variable name");
    compileExpression(functionIndex);
    emit(functionIndex, OpCode::StoreName, addText(name.text), 0, name.line);
    emit(functionIndex, OpCode::Pop, 0, 0, name.line);
}

void Compiler::compileIndexedAssignment(int functionIndex) {
    const Token name = require(TokenType::Identifier, "expected variable name");
    const std::int32_t nameConstant = addText(name.text);
    emit(functionIndex, OpCode::LoadName, nameConstant, 0, name.line);
    require(TokenType::LeftBracket, "expected '[' after indexed assignment target");
    compileExpression(functionIndex);
    require(TokenType::RightBracket, "expected ']' after index expression");
    require(TokenType::Assign, "expected '=' after indexed assignment target");
    compileExpression(functionIndex);
    emit(functionIndex, OpCode::SetIndex, 0, 0, name.line);
    emit(functionIndex, OpCode::StoreName, nameConstant, 0, name.line);
    emit(functionIndex, OpCode::Pop, 0, 0, name.line);
}

void Compiler::compileExpressionStatement(int functionIndex) {
    const std::uint32_t line = token().line;
    compileExpression(functionIndex);
    emit(functionIndex, OpCode::Pop, 0, 0, line);
}

void Compiler::compileBlock(int functionIndex, bool endsAtElse) {
    skipSeparators();
    while (!at(TokenType::KeywordEnd) && !at(TokenType::EndOfFile) &&
           !(endsAtElse && (at(TokenType::KeywordElsif) || at(TokenType::KeywordElse)))) {
        compileStatement(functionIndex);
        skipSeparators();
    }
}

bool Compiler::isIndexedAssignment() {
    std::size_t next = 1;
    if (m_tokens.ahead(next).kind != TokenType::LeftBracket) {
        return false;
    }
    std::size_t depth = 0;
    while (true) {
        const TokenType kind = m_tokens.ahead(next).kind;
        ++next;
        if (kind == TokenType::LeftBracket) {
            ++depth;
        } else if (kind == TokenType::RightBracket) {
            --depth;
            if (depth == 0) {
                return m_tokens.ahead(next).kind == TokenType::Assign;
            }
        } else if (endsStatement(kind)) {
            return false;
        }
    }
}

void Compiler::skipSeparators() {
    while (at(TokenType::Semicolon) || at(TokenType::Newline)) {
        advance();
    }
}

void Compiler::skipThenOrDo() {
    if (at(TokenType::KeywordThen) || at(TokenType::KeywordDo)) {
        advance();
    }
}

}  // namespace morvel::ruby::internal
