#include "compiler/lexer.h"

#include <array>
#include <limits>

#include "compiler/diagnostics.h"

namespace morvel::ruby::internal {

namespace {

// Character classes of ASCII, independent of any locale.
bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isNameStart(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }

constexpr std::size_t kByteValues = 256;
constexpr unsigned kAsciiValues = 128;

constexpr std::array<bool, kByteValues> kNameBytes = [] {
    std::array<bool, kByteValues> table{};
    for (unsigned c = 0; c < kAsciiValues; ++c) {
        table[c] = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '?' ||
                   c == '!';
    }
    return table;
}();

bool isNameByte(char c) { return kNameBytes[static_cast<unsigned char>(c)]; }

struct Keyword {
    std::string_view spelling;
    TokenType kind;
};

// Ordered by length, so that a name is compared only with the few keywords of its own length.
constexpr std::array kKeywords{
    Keyword{"if", TokenType::KeywordIf},         Keyword{"do", TokenType::KeywordDo},
    Keyword{"or", TokenType::KeywordOr},         Keyword{"end", TokenType::KeywordEnd},
    Keyword{"def", TokenType::KeywordDef},       Keyword{"nil", TokenType::KeywordNil},
    Keyword{"and", TokenType::KeywordAnd},       Keyword{"not", TokenType::KeywordNot},
    Keyword{"else", TokenType::KeywordElse},     Keyword{"true", TokenType::KeywordTrue},
    Keyword{"then", TokenType::KeywordThen},     Keyword{"elsif", TokenType::KeywordElsif},
    Keyword{"while", TokenType::KeywordWhile},   Keyword{"false", TokenType::KeywordFalse},
    Keyword{"return", TokenType::KeywordReturn},
};

constexpr std::size_t kLongestKeyword = 6;

constexpr std::array<std::size_t, kLongestKeyword + 2> findFirstOfLength() {
    std::array<std::size_t, kLongestKeyword + 2> first{};
    for (std::size_t length = 0; length < first.size(); ++length) {
        while (first[length] < kKeywords.size() && kKeywords[first[length]].spelling.size() < length) {
            ++first[length];
        }
    }
    return first;
}

// First keyword of each length; the entry after it is where the next length starts.
constexpr auto kFirstOfLength = findFirstOfLength();

TokenType nameKind(std::string_view name) {
    if (name.size() <= kLongestKeyword) {
        for (std::size_t i = kFirstOfLength[name.size()]; i < kFirstOfLength[name.size() + 1]; ++i) {
            if (kKeywords[i].spelling == name) {
                return kKeywords[i].kind;
            }
        }
    }
    return TokenType::Identifier;
}

}  // namespace

void Lexer::read(std::vector<Token>& tokens, std::size_t count) {
    m_tokens = &tokens;
    const std::size_t wanted = tokens.size() + count;
    while (tokens.size() < wanted && m_position < m_source.size()) {
        readToken();
    }
    if (tokens.size() < wanted) {
        tokens.push_back({TokenType::EndOfFile, m_line, m_column, {}});
    }
}

void Lexer::readToken() {
    const char c = m_source[m_position];
    switch (c) {
        case ' ':
        case '\t':
        case '\v':
        case '\f':
            ++m_position;
            ++m_column;
            return;
        case '\n':
        case '\r':
            readLineBreak();
            return;
        case '#':
            readComment();
            return;
        case '"':
        case '\'':
            readString();
            return;
        default:
            break;
    }
    if (isNameStart(c)) {
        readName();
    } else if (isDigit(c)) {
        readNumber();
    } else {
        readOperator();
    }
}

void Lexer::readLineBreak() {
    m_tokens->push_back({TokenType::Newline, m_line, m_column, "\n"});
    const bool isPair = m_source[m_position] == '\r' && peek(1) == '\n';
    m_position += isPair ? 2U : 1U;
    if (m_line == std::numeric_limits<std::uint32_t>::max()) {
        fail("bytecode image is too large");
    }
    ++m_line;
    m_column = 1;
}

void Lexer::readComment() {
    const std::size_t begin = m_position;
    while (m_position < m_source.size() && m_source[m_position] != '\n' && m_source[m_position] != '\r') {
        ++m_position;
    }
    m_column += m_position - begin;
}

void Lexer::readString() {
    const char quote = m_source[m_position];
    bool escaped = false;
    std::size_t end = m_position + 1;
    while (end < m_source.size() && m_source[end] != quote) {
        if (m_source[end] == '\n' || m_source[end] == '\r') {
            failHere("unterminated string literal");
        }
        if (m_source[end] == '\\') {
            escaped = true;
            ++end;
            if (end == m_source.size()) {
                failHere("unterminated string escape");
            }
        }
        ++end;
    }
    if (end >= m_source.size()) {
        failHere("unterminated string literal");
    }
    const std::size_t begin = m_position + 1;
    const std::string_view text = escaped ? decodeString(begin, end) : m_source.substr(begin, end - begin);
    m_tokens->push_back({TokenType::String, m_line, m_column, text});
    m_column += end + 1 - m_position;
    m_position = end + 1;
}

std::string_view Lexer::decodeString(std::size_t begin, std::size_t end) {
    std::string& decoded = m_decoded.emplace_back();
    decoded.reserve(end - begin);
    for (std::size_t i = begin; i < end; ++i) {
        char c = m_source[i];
        if (c == '\\') {
            c = m_source[++i];
            c = c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c;
        }
        decoded += c;
    }
    return decoded;
}

void Lexer::readNumber() {
    std::size_t length = 0;
    TokenType kind = TokenType::Integer;
    while (isDigit(peek(length))) {
        ++length;
    }
    if (peek(length) == '.' && isDigit(peek(length + 1))) {
        kind = TokenType::Float;
        ++length;
        while (isDigit(peek(length))) {
            ++length;
        }
    }
    emit(kind, length);
}

void Lexer::readName() {
    std::size_t end = m_position + 1;
    while (end < m_source.size() && isNameByte(m_source[end])) {
        ++end;
    }
    const std::size_t length = end - m_position;
    emit(nameKind(rest(length)), length);
}

void Lexer::readOperator() {
    const auto orEqual = [this](TokenType single, TokenType withEqual) {
        const bool equal = peek(1) == '=';
        emit(equal ? withEqual : single, equal ? 2 : 1);
    };
    switch (m_source[m_position]) {
        case '(':
            return emit(TokenType::LeftParen, 1);
        case ')':
            return emit(TokenType::RightParen, 1);
        case '[':
            return emit(TokenType::LeftBracket, 1);
        case ']':
            return emit(TokenType::RightBracket, 1);
        case ',':
            return emit(TokenType::Comma, 1);
        case ';':
            return emit(TokenType::Semicolon, 1);
        case '+':
            return emit(TokenType::Plus, 1);
        case '-':
            return emit(TokenType::Minus, 1);
        case '*':
            return emit(TokenType::Star, 1);
        case '/':
            return emit(TokenType::Slash, 1);
        case '%':
            return emit(TokenType::Percent, 1);
        case '!':
            return orEqual(TokenType::Bang, TokenType::BangEqual);
        case '=':
            return orEqual(TokenType::Assign, TokenType::EqualEqual);
        case '<':
            return orEqual(TokenType::LessToken, TokenType::LessEqualToken);
        case '>':
            return orEqual(TokenType::GreaterToken, TokenType::GreaterEqualToken);
        case '&':
            return readDoubled(TokenType::AmpAmp, "unexpected '&', use '&&'");
        case '|':
            return readDoubled(TokenType::PipePipe, "unexpected '|', use '||'");
        default:
            failHere(std::string("unexpected character '") + m_source[m_position] + "'");
    }
}

void Lexer::readDoubled(TokenType kind, std::string_view message) {
    if (m_position + 1 >= m_source.size() || m_source[m_position + 1] != m_source[m_position]) {
        failHere(message);
    }
    emit(kind, 2);
}

void Lexer::failHere(std::string_view message) const { fail(formatError(m_chunkName, m_line, m_column, message)); }

}  // namespace morvel::ruby::internal
