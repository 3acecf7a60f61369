// Compiles tokens to stack code in one pass, without a syntax tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "compiler/operators.h"
#include "compiler/program.h"
#include "compiler/token_stream.h"
#include "value/hash.h"
#include "value/short_strings.h"

namespace morvel::ruby::internal {

/// Compiles a whole source text. Throws RubyError "chunk:line:column: message" for the first error, lexical errors
/// before all others, and "bytecode image is too large" for a program that no image can hold. Leaves the derived tables
/// empty: loading the image fills them.
[[nodiscard]] Program compileSource(std::string_view source, const std::string& chunkName);

/// Recursive descent over the tokens. Every operation compiles from the current token into the function with the given
/// index, and leaves the token after what it compiled as the current one. Errors are raised with the position of the
/// token found in place of the expected one; nesting too deep for the native stack fails with "stack overflow".
class Compiler {
public:
    /// Compiles the tokens of `lexer`, which must outlive the compiler.
    Compiler(Lexer& lexer, const std::string& chunkName);

    /// Compiles all statements into the top-level function and hands over the program.
    [[nodiscard]] Program compileProgram();

private:
    // Expressions.
    void compileExpression(int functionIndex);
    /// Compiles an operand and the operators after it that bind at least as tightly as `least`.
    void compileBinary(int functionIndex, Precedence least);
    void compileUnary(int functionIndex);
    void compilePrimary(int functionIndex);
    void compilePostfix(int functionIndex);
    void compileArrayLiteral(int functionIndex);
    /// Compiles expressions separated by commas, none when `closing` comes first; returns their number.
    std::int32_t compileList(int functionIndex, TokenType closing);

    // Statements.
    void compileStatement(int functionIndex);
    void compileWhile(int functionIndex);
    void compileIf(int functionIndex);
    void compileDef(int functionIndex);
    void compileReturn(int functionIndex);
    void compileAssignment(int functionIndex);
    void compileIndexedAssignment(int functionIndex);
    void compileExpressionStatement(int functionIndex);
    [[nodiscard]] std::vector<std::string> parseParameters();
    /// Compiles the condition and branch of an `if` or `elsif`; returns the index of the jump to the end that closes
    /// the branch.
    std::size_t compileBranch(int functionIndex);
    /// Compiles statements up to `end`, or also up to `elsif` and `else`.
    void compileBlock(int functionIndex, bool endsAtElse);
    [[nodiscard]] bool isIndexedAssignment();
    void skipSeparators();
    void skipThenOrDo();

    // Tokens.
    [[nodiscard]] const Token& token() const { return m_tokens.current(); }
    [[nodiscard]] bool at(TokenType kind) const { return token().kind == kind; }
    /// Steps over the current token; the end-of-file token stays current.
    Token advance() { return m_tokens.advance(); }
    Token require(TokenType kind, std::string_view message);
    /// Fails at the current token, unless there is a lexical error further on: lexical errors come first.
    [[noreturn]] void failAtToken(std::string_view message);
    void checkNesting();

    // Code.
    void emit(int functionIndex, OpCode op, std::int32_t a, std::int32_t b, std::uint32_t line);
    [[nodiscard]] std::size_t codeSize(int functionIndex) const;
    void patchJump(int functionIndex, std::size_t instruction);
    /// Appends a constant, never merged with an equal one; returns its index.
    std::int32_t addConstant(RubyValue value);
    /// Appends a string constant. Equal strings usually share their bytes, never their index.
    std::int32_t addText(std::string_view text);
    void pushConstant(int functionIndex, RubyValue value, std::uint32_t line);
    [[nodiscard]] RubyValue integerLiteral();
    [[nodiscard]] RubyValue floatLiteral();

    /// More names than a function of usual length uses.
    static constexpr std::size_t kRecentNames = 128;

    TokenStream m_tokens;
    std::string m_chunkName;
    Program m_program;
    /// The recent short strings, and all long ones.
    ShortStrings<kRecentNames> m_names;
    std::unordered_map<std::string_view, RubyValue, TextHash> m_texts;
};

}  // namespace morvel::ruby::internal
