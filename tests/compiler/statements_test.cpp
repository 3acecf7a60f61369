// The code that statements compile to.
#include <gtest/gtest.h>

#include "compiler/compiler.h"
#include "support/code.h"

namespace morvel::ruby::tests {
namespace {

using internal::Program;

TEST(Statements, AnEmptyProgramHasAnEmptyMain) {
    for (const char* source : {"", "\n", ";;\n;", "# only a comment", "\r\n # a\n\n;"}) {
        const Program program = internal::compileSource(source, "chunk");
        EXPECT_EQ("chunk", program.name);
        ASSERT_EQ(1u, program.functions.size());
        EXPECT_EQ("<main>", program.functions[0].name);
        EXPECT_TRUE(program.functions[0].params.empty());
        EXPECT_TRUE(program.functions[0].code.empty());
        EXPECT_TRUE(program.constants.empty());
    }
}

TEST(Statements, SeparatorsAreOptional) {
    const std::string expected = "PushConst 1; StoreName x; Pop; PushConst 2; StoreName y; Pop";
    EXPECT_EQ(expected, code("x = 1\ny = 2"));
    EXPECT_EQ(expected, code("x = 1 y = 2"));
    EXPECT_EQ(expected, code(";x = 1;;\n;y = 2;"));
    EXPECT_EQ("LoadName a; Pop; LoadName b; Pop", code("a b"));
    EXPECT_EQ("LoadName x; JumpIfFalse 6; PushConst 1; StoreName y; Pop; Jump 6", code("if x then y = 1 end"));
}

TEST(Statements, AnExpressionThatGoesOnTakesTheNextToken) {
    EXPECT_EQ("LoadName a; LoadName b; Subtract; Pop", code("a -b"));
    EXPECT_EQ("LoadName a; PushConst 1; GetIndex; Pop", code("a [1]"));
    EXPECT_EQ("LoadName a; Pop; PushConst 1; MakeArray 1; Pop", code("a\n[1]"));
    EXPECT_EQ("LoadName a; Pop; LoadName b; Pop", code("a\n(b)"));
}

TEST(Assignment, StoresAndPops) {
    EXPECT_EQ("PushConst 1; StoreName x; Pop", code("x = 1"));
    EXPECT_EQ("LoadName x; PushConst 1; Add; StoreName x; Pop", code("x = x + 1"));
    EXPECT_EQ("PushConst 1; StoreName done!; Pop", code("done! = 1"));
    EXPECT_EQ("2 2 2", lines("\nx = 1"));
}

TEST(Assignment, IsNoExpression) {
    EXPECT_EQ("t:1:7: expected expression", compileError("x = y = 1"));
    EXPECT_EQ("t:1:4: expected ')' after expression", compileError("(x = 1)"));
    EXPECT_EQ("t:1:3: expected expression", compileError("5 = 1"));
    EXPECT_EQ("t:1:5: expected expression", compileError("f() = 1"));
    EXPECT_EQ("t:1:5: expected expression", compileError("nil = 1"));
    EXPECT_EQ("t:1:1: expected expression", compileError("= 1"));
    EXPECT_EQ("t:1:4: expected expression", compileError("x ="));
}

TEST(IndexedAssignment, LoadsTheTargetAndStoresItBack) {
    EXPECT_EQ("LoadName a; LoadName i; LoadName v; SetIndex; StoreName a; Pop", code("a[i] = v"));
    EXPECT_EQ("LoadName a; LoadName b; PushConst 0; GetIndex; PushConst 1; SetIndex; StoreName a; Pop",
              code("a[b[0]] = 1"));
    EXPECT_EQ("LoadName a; PushConst 1; MakeArray 1; PushConst 2; SetIndex; StoreName a; Pop", code("a[[1]] = 2"));
    EXPECT_EQ("2 2 2 2 2 2", lines("\na[i] = v"));
}

TEST(IndexedAssignment, BeginsOnlyWhereTheMatchingBracketIsFollowedByTheSign) {
    EXPECT_EQ(
        "LoadName a; PushConst 0; GetIndex; Pop; LoadName b; PushConst 0; PushConst 5; SetIndex; StoreName b; Pop",
        code("a[0] b[0] = 5"));
    EXPECT_EQ("LoadName a; PushConst 0; GetIndex; Pop; PushConst 5; StoreName b; Pop", code("a[0] b = 5"));
    EXPECT_EQ("LoadName a; PushConst 0; GetIndex; PushConst 5; Equal; Pop", code("a[0] == 5"));
    EXPECT_EQ("LoadName a; PushConst 0; GetIndex; Pop; PushConst 5; StoreName b; Pop", code("a[0]\nb = 5"));
}

TEST(IndexedAssignment, TheNextBracketMustCloseBeforeTheLineEnds) {
    EXPECT_EQ("t:1:4: expected ']' after index expression", compileError("a[1\n] = 2"));
    EXPECT_EQ("t:1:4: expected ']' after index expression", compileError("a[1;] = 2"));
    EXPECT_EQ("t:1:7: expected ']' after index expression", compileError("a[[1] = 2"));
}

TEST(IndexedAssignment, OnlyOneIndexIsATarget) {
    EXPECT_EQ("t:1:11: expected expression", compileError("a[1][2]   = 3"));
    EXPECT_EQ("t:1:9: expected expression", compileError("a(1)[2] = 3"));
    EXPECT_EQ("t:1:8: expected expression", compileError("(a)[1] = 3"));
}

TEST(IndexedAssignment, AfterTheShapeIsSeenItsPartsAreRequired) {
    EXPECT_EQ("t:1:3: expected expression", compileError("a[] = 2"));
    EXPECT_EQ("t:1:5: expected ']' after index expression", compileError("a[1 2] = 3"));
    EXPECT_EQ("t:1:8: expected expression", compileError("a[1] = "));
    EXPECT_EQ("t:1:5: expected ']' after index expression", compileError("a[i j[0]] = 1"));
}

TEST(While, JumpsBackAndOut) {
    EXPECT_EQ("LoadName x; JumpIfFalse 3; Jump 0", code("while x do end"));
    EXPECT_EQ("LoadName x; JumpIfFalse 5; LoadName y; Pop; Jump 0; LoadName z; Pop", code("while x y end z"));
    EXPECT_EQ("LoadName a; Pop; LoadName x; JumpIfFalse 5; Jump 2", code("a while x end"));
    EXPECT_EQ("LoadName x; JumpIfFalse 6; LoadName y; JumpIfFalse 5; Jump 2; Jump 0", code("while x while y end end"));
}

TEST(While, ItsOwnInstructionsStandOnItsLine) { EXPECT_EQ("2 2 3 3 2", lines("\nwhile x do\ny\nend\n")); }

TEST(If, WithoutElse) {
    EXPECT_EQ("LoadName a; JumpIfFalse 5; LoadName b; Pop; Jump 5", code("if a then b end"));
    EXPECT_EQ("LoadName a; JumpIfFalse 3; Jump 3", code("if a end"));
}

TEST(If, WithElse) {
    EXPECT_EQ("LoadName a; JumpIfFalse 5; LoadName b; Pop; Jump 7; LoadName c; Pop", code("if a then b else c end"));
    EXPECT_EQ("LoadName a; JumpIfFalse 3; Jump 3", code("if a else end"));
}

TEST(If, WithElsifAndElse) {
    const std::string source = "if a\n  b\nelsif c\n  d\nelse\n  e\nend\nf\n";
    EXPECT_EQ(
        "LoadName a; JumpIfFalse 5; LoadName b; Pop; Jump 12; "
        "LoadName c; JumpIfFalse 10; LoadName d; Pop; Jump 12; "
        "LoadName e; Pop; LoadName f; Pop",
        code(source));
    EXPECT_EQ("1 1 2 2 1 3 3 4 4 3 6 6 8 8", lines(source));
}

TEST(If, EveryEndJumpGoesToTheEnd) {
    EXPECT_EQ("LoadName a; JumpIfFalse 3; Jump 9; LoadName b; JumpIfFalse 6; Jump 9; LoadName c; JumpIfFalse 9; Jump 9",
              code("if a elsif b elsif c end"));
}

TEST(If, NestedBlocks) {
    EXPECT_EQ("LoadName a; JumpIfFalse 6; LoadName b; JumpIfFalse 5; Jump 5; Jump 6", code("if a if b end end"));
    EXPECT_EQ("LoadName a; JumpIfFalse 3; Jump 6; LoadName b; JumpIfFalse 6; Jump 6", code("if a else if b end end"));
}

TEST(If, ElseTakesNoFurtherBranches) {
    EXPECT_EQ("t:1:11: expected expression", compileError("if a else else end"));
    EXPECT_EQ("t:1:11: expected expression", compileError("if a else elsif b end"));
}

TEST(ThenAndDo, AreOneOptionalWordEverywhere) {
    const std::string branch = "LoadName a; JumpIfFalse 5; LoadName b; Pop; Jump 5";
    EXPECT_EQ(branch, code("if a do b end"));
    EXPECT_EQ(branch, code("if a b end"));
    EXPECT_EQ(branch, code("if a then\n;b end"));
    EXPECT_EQ("LoadName a; JumpIfFalse 3; Jump 6; LoadName b; JumpIfFalse 6; Jump 6", code("if a elsif b do end"));
    EXPECT_EQ("LoadName a; JumpIfFalse 3; Jump 5; LoadName c; Pop", code("if a else then c end"));
    EXPECT_EQ("LoadName a; JumpIfFalse 3; Jump 5; LoadName c; Pop", code("if a else do c end"));
    EXPECT_EQ("LoadName x; JumpIfFalse 3; Jump 0", code("while x then end"));
    EXPECT_EQ("LoadName x; Pop", code("def f then x end", 1));
    EXPECT_EQ("LoadName x; Pop", code("def f() do x end", 1));
    EXPECT_EQ("t:1:11: expected expression", compileError("if a then do b end"));
    // Not after a line break: there the word would start a statement, but no statement starts with it.
    for (const char* source : {"if a\nthen b end", "if a elsif b\ndo end", "if a else\nthen b end", "while x\ndo end",
                               "def f()\nthen b end", "def f\ndo b end"}) {
        EXPECT_EQ("t:2:1: expected expression", compileError(source)) << source;
    }
}

TEST(Def, DefinesInTheEnclosingCode) {
    const std::string source = "def f() x = 1 end";
    EXPECT_EQ("DefineFunction f 1", code(source));
    EXPECT_EQ("PushConst 1; StoreName x; Pop", code(source, 1));
    EXPECT_EQ("1, \"x\", \"f\"", constants(source));
}

TEST(Def, Parameters) {
    const auto params = [](const std::string& source) {
        return internal::compileSource(source, "t").functions.at(1).params;
    };
    EXPECT_EQ((std::vector<std::string>{}), params("def f end"));
    EXPECT_EQ((std::vector<std::string>{}), params("def f() end"));
    EXPECT_EQ((std::vector<std::string>{"a"}), params("def f(a) end"));
    EXPECT_EQ((std::vector<std::string>{"a", "b?", "a"}), params("def f(a, b?, a) end"));
    // Without parentheses there are no parameters: the name starts the body.
    EXPECT_EQ((std::vector<std::string>{}), params("def f a end"));
    EXPECT_EQ("LoadName a; Pop", code("def f a end", 1));
}

TEST(Def, FunctionsAreNumberedByTheirDefKeywords) {
    const std::string source = "def outer()\n  def inner() 1 end\n  2\nend\ndef last() 3 end";
    const Program program = internal::compileSource(source, "t");
    ASSERT_EQ(4u, program.functions.size());
    EXPECT_EQ("outer", program.functions[1].name);
    EXPECT_EQ("inner", program.functions[2].name);
    EXPECT_EQ("last", program.functions[3].name);
    EXPECT_EQ("DefineFunction outer 1; DefineFunction last 3", code(source));
    EXPECT_EQ("DefineFunction inner 2; PushConst 2; Pop", code(source, 1));
    EXPECT_EQ("PushConst 1; Pop", code(source, 2));
    EXPECT_EQ("1 5", lines(source));
    EXPECT_EQ("2 3 3", lines(source, 1));
}

TEST(Def, MayStandInAnyBlock) {
    EXPECT_EQ("LoadName a; JumpIfFalse 4; DefineFunction f 1; Jump 4", code("if a def f end end"));
    EXPECT_EQ("DefineFunction f 1; DefineFunction f 2", code("def f end def f end"));
}

TEST(Return, WithAndWithoutAValue) {
    EXPECT_EQ("PushConst 1; PushConst 2; Add; Return", code("return 1 + 2"));
    for (const char* source : {"return", "return\n5", "return;5", "return # nothing"}) {
        EXPECT_EQ("PushConst nil; Return", code(source).substr(0, 21)) << source;
    }
    EXPECT_EQ("PushConst nil; Return", code("def f() return end", 1));
    EXPECT_EQ(
        "LoadName a; JumpIfFalse 5; PushConst nil; Return; Jump 14; "
        "LoadName b; JumpIfFalse 10; PushConst nil; Return; Jump 14; "
        "PushConst 1; Return; LoadName c; Pop",
        code("if a return elsif b return else return 1 c end"));
}

TEST(Return, StandsOnTheLineOfItsWord) {
    EXPECT_EQ("2 2", lines("\nreturn\n"));
    EXPECT_EQ("2 2", lines("\nreturn 1\n"));
}

TEST(Return, TheNextWordIsItsValue) {
    EXPECT_EQ("t:1:12: expected expression", compileError("return     while x end"));
    EXPECT_EQ("t:1:8: expected expression", compileError("return def f end"));
    EXPECT_EQ("t:1:8: expected expression", compileError("return if x end"));
}

TEST(StatementErrors, MissingEnds) {
    EXPECT_EQ("t:1:8: expected 'end' after while block", compileError("while x"));
    EXPECT_EQ("t:1:5: expected 'end' after if block", compileError("if x"));
    EXPECT_EQ("t:3:1: expected 'end' after if block", compileError("if x\n  y\n"));
    EXPECT_EQ("t:1:10: expected 'end' after if block", compileError("if x else"));
    EXPECT_EQ("t:1:8: expected 'end' after function body", compileError("def f()"));
    EXPECT_EQ("t:1:17: expected 'end' after while block", compileError("while x if y end"));
}

TEST(StatementErrors, StrayWords) {
    EXPECT_EQ("t:1:1: expected expression", compileError("end"));
    EXPECT_EQ("t:1:1: expected expression", compileError("else"));
    EXPECT_EQ("t:1:1: expected expression", compileError("elsif x"));
    EXPECT_EQ("t:1:1: expected expression", compileError("then"));
    EXPECT_EQ("t:1:3: expected expression", compileError("x end"));
    EXPECT_EQ("t:1:9: expected expression", compileError("while x else end"));
    EXPECT_EQ("t:1:9: expected expression", compileError("def f() elsif end"));
    EXPECT_EQ("t:2:2: expected expression", compileError("x = 1\n\t]"));
}

TEST(StatementErrors, Functions) {
    EXPECT_EQ("t:1:4: expected function name after 'def'", compileError("def"));
    EXPECT_EQ("t:1:5: expected function name after 'def'", compileError("def 5() end"));
    EXPECT_EQ("t:1:5: expected function name after 'def'", compileError("def if() end"));
    EXPECT_EQ("t:1:5: expected function name after 'def'", compileError("def (a) end"));
    EXPECT_EQ("t:1:7: expected parameter name", compileError("def f(5) end"));
    EXPECT_EQ("t:1:9: expected parameter name", compileError("def f(a,) end"));
    EXPECT_EQ("t:1:7: expected parameter name", compileError("def f(,a) end"));
    EXPECT_EQ("t:1:7: expected parameter name", compileError("def f(\na) end"));
    EXPECT_EQ("t:1:7: expected parameter name", compileError("def f(end) end"));
    EXPECT_EQ("t:1:9: expected ')' after parameter list", compileError("def f(a b) end"));
    EXPECT_EQ("t:1:8: expected ')' after parameter list", compileError("def f(a"));
    EXPECT_EQ("t:1:9: expected ')' after parameter list", compileError("def f(a = 1) end"));
}

TEST(StatementErrors, LexicalErrorsComeFirst) {
    EXPECT_EQ("t:3:1: unexpected character '@'", compileError("end\n\n@"));
}

TEST(StatementErrors, TabsAreOneColumn) { EXPECT_EQ("t:1:3: expected expression", compileError("\t\tend")); }

}  // namespace
}  // namespace morvel::ruby::tests
