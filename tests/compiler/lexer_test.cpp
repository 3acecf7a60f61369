#include "compiler/lexer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/runs.h"

namespace morvel::ruby::tests {
namespace {

using internal::Lexer;
using internal::Token;
using internal::TokenType;

/// A token that owns its text.
struct Seen {
    TokenType kind;
    std::string text;
    unsigned line;
    std::size_t column;

    bool operator==(const Seen& other) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Seen& seen) {
    return stream << "kind " << static_cast<int>(seen.kind) << " \"" << seen.text << "\" at " << seen.line << ":"
                  << seen.column;
}

std::vector<Seen> tokens(const std::string& source) {
    const std::string chunkName = "t";
    Lexer lexer(source, chunkName);
    std::vector<Seen> seen;
    std::vector<Token> found;
    lexer.read(found, source.size() + 1);
    for (const Token& token : found) {
        seen.push_back({token.kind, std::string(token.text), token.line, token.column});
    }
    return seen;
}

/// The kinds without the final end-of-file token.
std::vector<TokenType> kinds(const std::string& source) {
    std::vector<TokenType> result;
    for (const Seen& seen : tokens(source)) {
        result.push_back(seen.kind);
    }
    EXPECT_FALSE(result.empty());
    EXPECT_EQ(TokenType::EndOfFile, result.back());
    result.pop_back();
    return result;
}

std::string lexError(const std::string& source) {
    return errorOf([&] { (void)tokens(source); });
}

/// The text of the only token in the source.
std::string onlyText(const std::string& source, TokenType kind) {
    const std::vector<Seen> seen = tokens(source);
    EXPECT_EQ(2u, seen.size()) << source;
    EXPECT_EQ(kind, seen[0].kind) << source;
    return seen[0].text;
}

TEST(Lexer, TokenNumbers) {
    EXPECT_EQ(0, static_cast<int>(TokenType::Identifier));
    EXPECT_EQ(1, static_cast<int>(TokenType::Integer));
    EXPECT_EQ(2, static_cast<int>(TokenType::Float));
    EXPECT_EQ(3, static_cast<int>(TokenType::String));
    EXPECT_EQ(11, static_cast<int>(TokenType::Plus));
    EXPECT_EQ(18, static_cast<int>(TokenType::EqualEqual));
    EXPECT_EQ(25, static_cast<int>(TokenType::PipePipe));
    EXPECT_EQ(26, static_cast<int>(TokenType::KeywordIf));
    EXPECT_EQ(40, static_cast<int>(TokenType::KeywordNot));
    EXPECT_EQ(42, static_cast<int>(TokenType::EndOfFile));
}

TEST(Lexer, EmptySource) { EXPECT_EQ((std::vector<Seen>{{TokenType::EndOfFile, "", 1, 1}}), tokens("")); }

TEST(Lexer, OperatorsInTheOrderOfTheirNumbers) {
    const std::vector<std::string> spellings{"(", ")", "[", "]",  ",",  ";", "\n", "+", "-",  "*",  "/",
                                             "%", "!", "=", "==", "!=", "<", "<=", ">", ">=", "&&", "||"};
    for (std::size_t i = 0; i < spellings.size(); ++i) {
        const std::vector<Seen> seen = tokens(spellings[i]);
        ASSERT_EQ(2u, seen.size()) << spellings[i];
        EXPECT_EQ((Seen{static_cast<TokenType>(4 + i), spellings[i], 1, 1}), seen[0]);
    }
}

TEST(Lexer, KeywordsInTheOrderOfTheirNumbers) {
    const std::vector<std::string> spellings{"if",    "elsif", "else", "end", "while", "def", "return", "true",
                                             "false", "nil",   "then", "do",  "and",   "or",  "not"};
    for (std::size_t i = 0; i < spellings.size(); ++i) {
        const std::vector<Seen> seen = tokens(spellings[i]);
        ASSERT_EQ(2u, seen.size());
        EXPECT_EQ((Seen{static_cast<TokenType>(26 + i), spellings[i], 1, 1}), seen[0]);
    }
}

TEST(Lexer, AnythingElseIsAName) {
    for (const char* name : {"If",
                             "IF",
                             "ends",
                             "en",
                             "i",
                             "elseif",
                             "for",
                             "break",
                             "self",
                             "class",
                             "puts",
                             "_",
                             "__x",
                             "x1",
                             "returns",
                             "nil?",
                             "end!",
                             "string_include?",
                             "file_exists?",
                             "done!",
                             "a?b!c",
                             "averyveryverylongname",
                             "unless",
                             "until",
                             "module"}) {
        EXPECT_EQ(name, onlyText(name, TokenType::Identifier));
    }
}

TEST(Lexer, ExclamationMarksBindToTheNameBefore) {
    EXPECT_EQ((std::vector<Seen>{{TokenType::Identifier, "a!", 1, 1},
                                 {TokenType::Assign, "=", 1, 3},
                                 {TokenType::Identifier, "b", 1, 4},
                                 {TokenType::EndOfFile, "", 1, 5}}),
              tokens("a!=b"));
    EXPECT_EQ((std::vector{TokenType::Identifier, TokenType::BangEqual, TokenType::Identifier}), kinds("a !=b"));
    EXPECT_EQ((std::vector{TokenType::Integer, TokenType::BangEqual, TokenType::Integer}), kinds("1!=2"));
}

TEST(Lexer, NamesDoNotStartWithTheMarks) {
    EXPECT_EQ("t:1:1: unexpected character '?'", lexError("?a"));
    EXPECT_EQ((std::vector{TokenType::Bang, TokenType::Identifier}), kinds("!a"));
}

TEST(Lexer, LongestOperatorsFirst) {
    EXPECT_EQ((std::vector{TokenType::EqualEqual, TokenType::Assign}), kinds("==="));
    EXPECT_EQ((std::vector{TokenType::LessEqualToken, TokenType::Assign}), kinds("<=="));
    EXPECT_EQ((std::vector{TokenType::Assign, TokenType::GreaterToken}), kinds("=>"));
    EXPECT_EQ((std::vector{TokenType::LessToken, TokenType::LessToken}), kinds("<<"));
    EXPECT_EQ((std::vector{TokenType::Bang, TokenType::BangEqual}), kinds("!!="));
    EXPECT_EQ((std::vector{TokenType::Assign, TokenType::Assign}), kinds("= ="));
}

TEST(Lexer, Positions) {
    EXPECT_EQ((std::vector<Seen>{{TokenType::Identifier, "x", 1, 1},
                                 {TokenType::EqualEqual, "==", 1, 3},
                                 {TokenType::String, "a\"", 1, 6},
                                 {TokenType::PipePipe, "||", 1, 11},
                                 {TokenType::Integer, "12", 1, 13},
                                 {TokenType::Newline, "\n", 1, 15},
                                 {TokenType::Float, "1.5", 2, 3},
                                 {TokenType::EndOfFile, "", 2, 6}}),
              tokens("x == \"a\\\"\"||12\n  1.5"));
}

TEST(Lexer, BlanksAdvanceOneColumnEach) { EXPECT_EQ((Seen{TokenType::Identifier, "a", 1, 5}), tokens("\t \v\fa")[0]); }

TEST(Lexer, LineBreaks) {
    for (const std::string lineBreak : {"\n", "\r", "\r\n"}) {
        EXPECT_EQ((std::vector<Seen>{{TokenType::Identifier, "a", 1, 1},
                                     {TokenType::Newline, "\n", 1, 2},
                                     {TokenType::Identifier, "b", 2, 1},
                                     {TokenType::EndOfFile, "", 2, 2}}),
                  tokens("a" + lineBreak + "b"));
    }
    EXPECT_EQ((Seen{TokenType::Identifier, "b", 3, 1}), tokens("\n\rb")[2]);
    EXPECT_EQ((Seen{TokenType::Identifier, "b", 3, 1}), tokens("\r\r\nb")[2]);
    EXPECT_EQ((Seen{TokenType::EndOfFile, "", 2, 1}), tokens("\r\n")[1]);
}

TEST(Lexer, CommentsReachToTheLineBreak) {
    EXPECT_EQ((std::vector<Seen>{{TokenType::EndOfFile, "", 1, 10}}), tokens("# comment"));
    EXPECT_EQ((std::vector<Seen>{{TokenType::Integer, "1", 1, 1},
                                 {TokenType::Newline, "\n", 1, 10},
                                 {TokenType::Integer, "2", 2, 1},
                                 {TokenType::EndOfFile, "", 2, 2}}),
              tokens("1 # \"'&\xff|\n2"));
    EXPECT_EQ((std::vector{TokenType::Newline, TokenType::Integer}), kinds("#\r\n1"));
    EXPECT_EQ((std::vector{TokenType::Newline, TokenType::Integer}), kinds("# a\r1"));
}

TEST(Lexer, StringsOfBothQuotes) {
    EXPECT_EQ("it's", onlyText("'it\\'s'", TokenType::String));
    EXPECT_EQ("it's", onlyText("\"it's\"", TokenType::String));
    EXPECT_EQ("say \"x\"", onlyText("'say \"x\"'", TokenType::String));
    EXPECT_EQ("", onlyText("\"\"", TokenType::String));
    EXPECT_EQ("", onlyText("''", TokenType::String));
    EXPECT_EQ("#{x} # no comment", onlyText("\"#{x} # no comment\"", TokenType::String));
}

TEST(Lexer, EscapesInBothQuotes) {
    for (const std::string quote : {"\"", "'"}) {
        EXPECT_EQ("a\nb\tc\rd", onlyText(quote + "a\\nb\\tc\\rd" + quote, TokenType::String));
        EXPECT_EQ("aqb", onlyText(quote + "a\\qb" + quote, TokenType::String));
        EXPECT_EQ("\\", onlyText(quote + "\\\\" + quote, TokenType::String));
        EXPECT_EQ("\"'", onlyText(quote + "\\\"\\'" + quote, TokenType::String));
        EXPECT_EQ("0x41e", onlyText(quote + "\\0\\x41\\e" + quote, TokenType::String));
        EXPECT_EQ("\\n", onlyText(quote + "\\\\n" + quote, TokenType::String));
    }
}

TEST(Lexer, StringsKeepAnyBytes) {
    EXPECT_EQ("caf\xc3\xa9 \xff\x80", onlyText("\"caf\xc3\xa9 \xff\x80\"", TokenType::String));
    const std::string withNul("\"a\0b\"", 5);
    EXPECT_EQ(std::string("a\0b", 3), onlyText(withNul, TokenType::String));
    EXPECT_EQ("\t\v\x01", onlyText("'\t\v\x01'", TokenType::String));
}

TEST(Lexer, EscapesAdvanceTwoColumns) { EXPECT_EQ((Seen{TokenType::Identifier, "x", 1, 7}), tokens("\"\\n\\q\"x")[1]); }

TEST(Lexer, AnEscapedLineBreakIsABytesWorthAndNoNewLine) {
    const std::vector<Seen> seen = tokens("'a\\\nb' x");
    EXPECT_EQ("a\nb", seen[0].text);
    EXPECT_EQ((Seen{TokenType::Identifier, "x", 1, 8}), seen[1]);
}

TEST(Lexer, Numbers) {
    EXPECT_EQ("0", onlyText("0", TokenType::Integer));
    EXPECT_EQ("007", onlyText("007", TokenType::Integer));
    EXPECT_EQ("99999999999999999999", onlyText("99999999999999999999", TokenType::Integer));
    EXPECT_EQ("3.14", onlyText("3.14", TokenType::Float));
    EXPECT_EQ("00.50", onlyText("00.50", TokenType::Float));
    EXPECT_EQ((std::vector<Seen>{{TokenType::Identifier, "x", 1, 1},
                                 {TokenType::Assign, "=", 1, 3},
                                 {TokenType::Float, "3.14", 1, 5},
                                 {TokenType::EndOfFile, "", 1, 9}}),
              tokens("x = 3.14"));
}

TEST(Lexer, NumbersHaveNoOtherForms) {
    EXPECT_EQ((std::vector{TokenType::Integer, TokenType::Identifier}), kinds("1e5"));
    EXPECT_EQ((std::vector{TokenType::Float, TokenType::Identifier}), kinds("1.5e5"));
    EXPECT_EQ((std::vector{TokenType::Integer, TokenType::Identifier}), kinds("0x1F"));
    EXPECT_EQ((std::vector{TokenType::Integer, TokenType::Identifier}), kinds("1_000"));
    EXPECT_EQ((std::vector{TokenType::Minus, TokenType::Integer}), kinds("-1"));
    EXPECT_EQ("t:1:2: unexpected character '.'", lexError("1."));
    EXPECT_EQ("t:1:2: unexpected character '.'", lexError("1..2"));
    EXPECT_EQ("t:1:2: unexpected character '.'", lexError("7.foo"));
    EXPECT_EQ("t:1:4: unexpected character '.'", lexError("1.2.3"));
    EXPECT_EQ("t:1:1: unexpected character '.'", lexError(".5"));
}

TEST(Lexer, SingleAmpersandsAndBars) {
    EXPECT_EQ("t:1:3: unexpected '&', use '&&'", lexError("a & b"));
    EXPECT_EQ("t:1:3: unexpected '|', use '||'", lexError("a | b"));
    EXPECT_EQ("t:1:1: unexpected '&', use '&&'", lexError("&"));
    EXPECT_EQ("t:2:2: unexpected '|', use '||'", lexError("\n |"));
    EXPECT_EQ("t:1:1: unexpected '&', use '&&'", lexError("&|"));
    EXPECT_EQ("t:1:3: unexpected '&', use '&&'", lexError("&&&"));
}

TEST(Lexer, UnterminatedStrings) {
    EXPECT_EQ("t:1:5: unterminated string literal", lexError("x = \"abc"));
    EXPECT_EQ("t:1:1: unterminated string literal", lexError("\""));
    EXPECT_EQ("t:1:1: unterminated string literal", lexError("'abc\""));
    EXPECT_EQ("t:3:2: unterminated string literal", lexError("\n\n 'abc\n'"));
    EXPECT_EQ("t:1:1: unterminated string literal", lexError("'abc\r'"));
    EXPECT_EQ("t:1:1: unterminated string literal", lexError("\"abc\\\""));
}

TEST(Lexer, ABackslashAsTheLastByte) {
    EXPECT_EQ("t:1:3: unterminated string escape", lexError("x \"abc\\"));
    EXPECT_EQ("t:1:1: unterminated string escape", lexError("'\\"));
}

TEST(Lexer, UnexpectedCharacters) {
    for (const char c : {'@', '$', '^', '~', '`', '{', '}', ':', '.', '\\', '?', '\x01', '\x7f', '\x80', '\xff'}) {
        EXPECT_EQ(std::string("t:1:3: unexpected character '") + c + "'", lexError(std::string("1 ") + c));
    }
    EXPECT_EQ(std::string("t:1:1: unexpected character '\0'", 31), lexError(std::string(1, '\0')));
}

TEST(Lexer, BytesAbove127EndAName) { EXPECT_EQ("t:1:4: unexpected character '\xc3'", lexError("caf\xc3\xa9")); }

TEST(Lexer, TheFirstErrorCounts) { EXPECT_EQ("t:1:1: unexpected character '@'", lexError("@ 'open")); }

TEST(Lexer, ErrorsCarryTheChunkName) {
    const std::string chunkName = "dir/main.rb";
    Lexer lexer("  @", chunkName);
    std::vector<Token> tokens;
    EXPECT_EQ("dir/main.rb:1:3: unexpected character '@'", errorOf([&] { lexer.read(tokens, 10); }));
}

}  // namespace
}  // namespace morvel::ruby::tests
