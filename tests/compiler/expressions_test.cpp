// The code that expressions compile to.
#include <gtest/gtest.h>

#include "compiler/compiler.h"
#include "support/code.h"
#include "support/describe.h"

namespace morvel::ruby::tests {
namespace {

TEST(Expressions, Primaries) {
    EXPECT_EQ("LoadName x; Pop", code("x"));
    EXPECT_EQ("PushConst 5; Pop", code("5"));
    EXPECT_EQ("PushConst 2.5; Pop", code("2.5"));
    EXPECT_EQ("PushConst 2.0; Pop", code("2.0"));
    EXPECT_EQ("PushConst \"a\\nb\"; Pop", code("'a\\nb'"));
    EXPECT_EQ("PushConst true; Pop", code("true"));
    EXPECT_EQ("PushConst false; Pop", code("false"));
    EXPECT_EQ("PushConst nil; Pop", code("nil"));
    EXPECT_EQ("PushConst 5; Pop", code("((5))"));
}

TEST(Expressions, NumbersAreConverted) {
    EXPECT_EQ("PushConst 7; Pop", code("007"));
    EXPECT_EQ("PushConst 9223372036854775807; Pop", code("9223372036854775807"));
    EXPECT_EQ("PushConst 0.1; Pop", code("0.1000"));
    EXPECT_EQ("PushConst 123456789.12345679; Pop", code("123456789.123456789"));
    // A literal between two doubles becomes the nearest one.
    EXPECT_EQ("PushConst 9007199254740992.0; Pop", code("9007199254740992.9"));
    EXPECT_EQ("PushConst 1e-30; Pop", code("0.000000000000000000000000000001"));
}

TEST(Expressions, NumbersOutOfRange) {
    EXPECT_EQ("t:1:5: integer literal is out of range", compileError("x = 9223372036854775808"));
    EXPECT_EQ("t:1:2: integer literal is out of range", compileError("-9223372036854775808"));
    const std::string huge = "1" + std::string(400, '0');
    EXPECT_EQ("t:1:1: integer literal is out of range", compileError(huge));
    EXPECT_EQ("t:2:1: float literal is out of range", compileError("\n" + huge + ".0"));
    // The largest double still fits, and what is too small becomes the nearest double.
    EXPECT_EQ("PushConst 1e+308; Pop", code("1" + std::string(308, '0') + ".0"));
    EXPECT_EQ("PushConst 0.0; Pop", code("0." + std::string(400, '0') + "1"));
    EXPECT_EQ("PushConst 5e-324; Pop", code("0." + std::string(323, '0') + "5"));
}

TEST(Expressions, PrecedenceFromLowToHigh) {
    EXPECT_EQ("PushConst 1; PushConst 2; PushConst 3; Multiply; Add; Pop", code("1 + 2 * 3"));
    EXPECT_EQ("PushConst 1; PushConst 2; Add; PushConst 3; Multiply; Pop", code("(1 + 2) * 3"));
    EXPECT_EQ("LoadName a; LoadName b; LoadName c; And; Or; Pop", code("a or b and c"));
    EXPECT_EQ("LoadName a; LoadName b; And; LoadName c; Or; Pop", code("a && b || c"));
    EXPECT_EQ("LoadName a; LoadName b; LoadName c; Equal; And; Pop", code("a and b == c"));
    EXPECT_EQ("LoadName a; LoadName b; LoadName c; Less; Equal; Pop", code("a == b < c"));
    EXPECT_EQ("LoadName a; LoadName b; LoadName c; Add; Less; Pop", code("a < b + c"));
    EXPECT_EQ("LoadName a; LoadName b; LoadName c; Modulo; Subtract; Pop", code("a - b % c"));
    EXPECT_EQ("LoadName a; LoadName b; Negate; Divide; Pop", code("a / -b"));
}

TEST(Expressions, BinaryOperatorsAssociateToTheLeft) {
    EXPECT_EQ("LoadName a; LoadName b; Subtract; LoadName c; Subtract; Pop", code("a - b - c"));
    EXPECT_EQ("LoadName a; LoadName b; Divide; LoadName c; Multiply; Pop", code("a / b * c"));
    EXPECT_EQ("PushConst 2; PushConst 3; Less; PushConst true; Equal; Pop", code("2 < 3 == true"));
    EXPECT_EQ("LoadName a; LoadName b; Less; LoadName c; GreaterEqual; Pop", code("a < b >= c"));
    EXPECT_EQ("LoadName a; LoadName b; Equal; LoadName c; NotEqual; Pop", code("a == b != c"));
    EXPECT_EQ("LoadName a; LoadName b; Or; LoadName c; Or; Pop", code("a || b or c"));
    EXPECT_EQ("LoadName a; LoadName b; And; LoadName c; And; Pop", code("a and b && c"));
}

TEST(Expressions, EveryBinaryOperator) {
    const std::vector<std::pair<std::string, std::string>> operators{
        {"+", "Add"},           {"-", "Subtract"},  {"*", "Multiply"}, {"/", "Divide"},     {"%", "Modulo"},
        {"==", "Equal"},        {"!=", "NotEqual"}, {"<", "Less"},     {"<=", "LessEqual"}, {">", "Greater"},
        {">=", "GreaterEqual"}, {"&&", "And"},      {"and", "And"},    {"||", "Or"},        {"or", "Or"},
    };
    for (const auto& [spelling, opcode] : operators) {
        EXPECT_EQ("LoadName a; LoadName b; " + opcode + "; Pop", code("a " + spelling + " b"));
    }
}

// Both sides are always evaluated: there is no jump around the right operand.
TEST(Expressions, LogicalOperatorsDoNotShortCircuit) {
    EXPECT_EQ("LoadName x; LoadName y; Call 0; And; Pop", code("x and y()"));
    EXPECT_EQ("LoadName x; LoadName y; Call 0; Or; Pop", code("x || y()"));
}

TEST(Expressions, PrefixOperators) {
    EXPECT_EQ("PushConst 5; Negate; Pop", code("-5"));
    EXPECT_EQ("PushConst 5; Negate; Negate; Pop", code("--5"));
    EXPECT_EQ("LoadName a; Not; Pop", code("!a"));
    EXPECT_EQ("LoadName a; Not; Pop", code("not a"));
    EXPECT_EQ("LoadName a; Negate; Not; Not; Pop", code("!not -a"));
    EXPECT_EQ("LoadName a; Not; LoadName b; Equal; Pop", code("not a == b"));
    EXPECT_EQ("LoadName a; LoadName b; Not; And; Pop", code("a and not b"));
}

TEST(Expressions, PrefixOperatorsTakeThePostfixOnesAlong) {
    EXPECT_EQ("LoadName a; PushConst 1; GetIndex; Negate; Pop", code("-a[1]"));
    EXPECT_EQ("LoadName f; LoadName x; Call 1; Not; Pop", code("!f(x)"));
}

TEST(Expressions, Calls) {
    EXPECT_EQ("LoadName f; Call 0; Pop", code("f()"));
    EXPECT_EQ("LoadName f; PushConst 1; PushConst 2; Call 2; Pop", code("f(1, 2)"));
    EXPECT_EQ("LoadName f; LoadName g; PushConst 1; Call 1; LoadName x; Call 2; Pop", code("f(g(1), x)"));
    EXPECT_EQ("LoadName f; PushConst 2; Call 1; Pop", code("(f)(2)"));
    EXPECT_EQ("PushConst 5; Call 0; Pop", code("5()"));
}

TEST(Expressions, PostfixChains) {
    EXPECT_EQ("LoadName m; LoadName k; GetIndex; PushConst 1; Call 1; PushConst 0; GetIndex; Pop", code("m[k](1)[0]"));
    EXPECT_EQ("LoadName f; Call 0; Call 0; Pop", code("f()()"));
    EXPECT_EQ("PushConst \"abc\"; PushConst 1; GetIndex; Pop", code("'abc'[1]"));
    EXPECT_EQ("PushConst 7; MakeArray 1; PushConst 0; GetIndex; Pop", code("[7][0]"));
}

TEST(Expressions, ArrayLiterals) {
    EXPECT_EQ("MakeArray 0; Pop", code("[]"));
    EXPECT_EQ("PushConst 1; PushConst 2; MakeArray 1; MakeArray 2; Pop", code("[1, [2]]"));
    EXPECT_EQ("LoadName a; LoadName b; Or; PushConst 1; MakeArray 2; Pop", code("[a or b, 1]"));
}

TEST(Expressions, ConstantsAreNeverMerged) {
    EXPECT_EQ("1, \"x\", 1, \"x\"", constants("x = 1\nx = 1"));
    EXPECT_EQ("\"x\", \"x\", \"x\"", constants("x('x', x)"));
    EXPECT_EQ("nil, nil, true, true", constants("[nil, nil, true, true]"));
    EXPECT_EQ("", constants(""));
    // A name is added where its instruction is emitted: after the value that is assigned to it.
    EXPECT_EQ("\"y\", 2, \"x\"", constants("x = y + 2"));
    // An indexed assignment reads and stores through one name constant.
    EXPECT_EQ("\"a\", 0, 1", constants("a[0] = 1"));
}

TEST(Expressions, LinesOfPrimariesAndOperators) {
    // An expression occupies one line: a line break ends it.
    EXPECT_EQ("1 1 1 1 2 2 2 2", lines("a + b\nc * d"));
    EXPECT_EQ("3 3 3 3 3 3 3 3", lines("\n\nf(x, [1])[0]"));
}

TEST(Expressions, MissingOperands) {
    EXPECT_EQ("t:1:6: expected expression", compileError("x = ("));
    EXPECT_EQ("t:1:4: expected expression", compileError("1 +"));
    EXPECT_EQ("t:1:5: expected expression", compileError("1 + * 2"));
    EXPECT_EQ("t:1:1: expected expression", compileError(")"));
    EXPECT_EQ("t:1:3: expected expression", compileError("f(,)"));
    EXPECT_EQ("t:1:5: expected expression", compileError("f(1,)"));
    EXPECT_EQ("t:1:4: expected expression", compileError("[1,]"));
    EXPECT_EQ("t:1:2: expected expression", compileError("[,1]"));
    EXPECT_EQ("t:1:3: expected expression", compileError("a[]"));
    EXPECT_EQ("t:1:2: expected expression", compileError("()"));
    EXPECT_EQ("t:1:5: expected expression", compileError("not "));
    EXPECT_EQ("t:1:6: expected expression", compileError("a and"));
    EXPECT_EQ("t:1:4: expected expression", compileError("1 +\n2"));
    EXPECT_EQ("t:1:5: expected expression", compileError("x ==="));
    EXPECT_EQ("t:1:5: expected expression", compileError("x = if"));
}

TEST(Expressions, MissingClosers) {
    EXPECT_EQ("t:1:3: expected ')' after expression", compileError("(1"));
    EXPECT_EQ("t:1:4: expected ')' after expression", compileError("(1 2)"));
    EXPECT_EQ("t:1:3: expected ')' after expression", compileError("(1\n)"));
    EXPECT_EQ("t:1:3: expected ']' after array literal", compileError("[1"));
    EXPECT_EQ("t:1:4: expected ']' after array literal", compileError("[1 2]"));
    EXPECT_EQ("t:1:2: expected expression", compileError("["));
    EXPECT_EQ("t:1:4: expected ']' after index expression", compileError("a[1"));
    EXPECT_EQ("t:1:5: expected ']' after index expression", compileError("a[1 2]"));
    EXPECT_EQ("t:1:4: expected ')' after arguments", compileError("f(1"));
    EXPECT_EQ("t:1:5: expected ')' after arguments", compileError("f(1 2)"));
    EXPECT_EQ("t:3:9: expected ')' after arguments", compileError("a\nb\nprint(12\n)"));
}

TEST(Expressions, NestingTooDeepIsAnErrorNotACrash) {
    const std::string message = compileError(std::string(1000000, '('));
    ASSERT_GT(message.size(), 14u);
    EXPECT_EQ("t:1:", message.substr(0, 4));
    EXPECT_EQ(": stack overflow", message.substr(message.size() - 16));
    EXPECT_NE(std::string::npos, compileError(std::string(1000000, '-')).find("stack overflow"));
    EXPECT_NE(std::string::npos, compileError(std::string(1000000, '[')).find("stack overflow"));
    std::string ifs;
    for (int i = 0; i < 300000; ++i) {
        ifs += "if a ";
    }
    EXPECT_NE(std::string::npos, compileError(ifs).find("stack overflow"));
}

TEST(Expressions, LongFlatProgramsAreFine) {
    std::string sum = "1";
    for (int i = 0; i < 100000; ++i) {
        sum += " + 1";
    }
    EXPECT_EQ("no error", compileError(sum));
    std::string branches = "if a";
    for (int i = 0; i < 100000; ++i) {
        branches += " elsif a";
    }
    EXPECT_EQ("no error", compileError(branches + " end"));
}

}  // namespace
}  // namespace morvel::ruby::tests
