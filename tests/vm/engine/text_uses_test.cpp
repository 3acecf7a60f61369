// Where strings are built: chains of additions, and reads that may consume a local.
#include <gtest/gtest.h>

#include <string>

#include "support/assembler.h"
#include "support/engine_facts.h"
#include "vm/engine/append_chains.h"
#include "vm/engine/last_reads.h"

namespace morvel::ruby::tests {
namespace {

using internal::FunctionFacts;
using internal::OpCode;

std::string chainsOf(TranslatedProgram program, std::size_t index) {
    const FunctionFacts facts = program.facts(index);
    std::string text;
    for (const internal::AppendChain& chain : findTextUses(facts.function, facts.flow, facts.globalSlots).chains) {
        text += (text.empty() ? "" : " ") + std::to_string(chain.firstAdd) + "-" + std::to_string(chain.lastAdd);
    }
    return text;
}

/// The chains in a statement of a function with the parameters s, t and l.
std::string chainsIn(const std::string& statement) {
    return chainsOf(TranslatedProgram("def f(s, t, l) " + statement + " end"), 1);
}

TEST(AppendChains, AreTwoAdditionsAndMoreToAVariable) {
    EXPECT_EQ("", chainsIn("s = s + t"));
    EXPECT_EQ("2-4", chainsIn("s = s + t + 1"));
    EXPECT_EQ("2-6", chainsIn("s = s + t + 1 + l"));
    EXPECT_EQ("2-4", chainsOf(TranslatedProgram("s = s + t + 1"), 0));
}

TEST(AppendChains, BeginWithTheVariableThatIsStored) {
    EXPECT_EQ("", chainsIn("s = t + s + 1"));
    EXPECT_EQ("", chainsIn("s = s + (t + 1)"));
    EXPECT_EQ("", chainsIn("t = s + t + 1"));
    EXPECT_EQ("", chainsIn("s = s - t + 1"));
    EXPECT_EQ("", chainsIn("s = s[0] + t + 1"));
    EXPECT_EQ("", chainsOf(TranslatedProgram("t = s + t + 1"), 0));
    // A global and a local.
    EXPECT_EQ("", chainsIn("s = g + t + 1"));
}

TEST(AppendChains, MayHaveSmallerExpressionsAsParts) {
    EXPECT_EQ("3-5", chainsIn("s = s + t() + 1"));
    EXPECT_EQ("5-7", chainsIn("s = s + t(l, 1) + 1"));
    EXPECT_EQ("5-7", chainsIn("s = s + [t, l, 1] + 1"));
    EXPECT_EQ("4-6", chainsIn("s = s + t[l] + 1"));
    EXPECT_EQ("3-5", chainsIn("s = s + -t + 1"));
}

TEST(AppendChains, MayBeginWithAnElementThatIsStored) {
    EXPECT_EQ("6-8", chainsIn("l[s] = l[s] + t + 1"));
    EXPECT_EQ("6-8", chainsIn("l[0] = l[s] + t + 1"));
    EXPECT_EQ("", chainsIn("l[s] = l[s] + t"));
    EXPECT_EQ("", chainsIn("l[s] = t[s] + t + 1"));
    EXPECT_EQ("", chainsIn("l[s] = l + t + 1"));
    EXPECT_EQ("", chainsIn("l[s] = l[s][0] + t + 1"));
}

TEST(AppendChains, OfHandMadeCodeDoNotOverlap) {
    // s = s + 1 + (s = s + 1 + 1), which the compiler never produces: the outer chain counts.
    const auto load = op(OpCode::LoadName, 0);
    const auto one = op(OpCode::PushConst, 1);
    const auto add = op(OpCode::Add);
    const auto store = op(OpCode::StoreName, 0);
    EXPECT_EQ("2-9", chainsOf(TranslatedProgram(makeProgram({"s", 1}, {load, one, add, load, one, add, one, add, store,
                                                                       add, store, op(OpCode::Pop)})),
                              0));
}

/// The instructions that read a local and may consume it.
std::string lastReadsIn(const std::string& body) {
    TranslatedProgram program("def f(s, t) " + body + " end");
    const FunctionFacts facts = program.facts(1);
    std::string text;
    for (std::size_t i = 0; i < facts.lastReads.size(); ++i) {
        if (facts.lastReads[i]) {
            text += (text.empty() ? "" : " ") + std::to_string(i);
        }
    }
    return text;
}

TEST(LastReads, AreThoseOfWhatTheStatementOverwrites) {
    EXPECT_EQ("0", lastReadsIn("s = s + t"));
    EXPECT_EQ("1", lastReadsIn("s = t(s)"));
    EXPECT_EQ("", lastReadsIn("t = s + 1"));
    // It is read again before it is overwritten.
    EXPECT_EQ("", lastReadsIn("s = s + s"));
    EXPECT_EQ("2", lastReadsIn("s = t(s, s)"));
    // The read value is not the left operand.
    EXPECT_EQ("", lastReadsIn("s = t - s"));
    EXPECT_EQ("0", lastReadsIn("s = s - t"));
}

TEST(LastReads, AreThoseBeforeAReturn) {
    EXPECT_EQ("1 2", lastReadsIn("return puts(s, t)"));
    EXPECT_EQ("0", lastReadsIn("return s + t"));
    // Only the second read is the last.
    EXPECT_EQ("2", lastReadsIn("return puts(s, s)"));
    // A call does not take over its callee.
    EXPECT_EQ("1", lastReadsIn("return t(s)"));
    // Subtraction and array literals do not take over their operands.
    EXPECT_EQ("", lastReadsIn("return s - t"));
    EXPECT_EQ("", lastReadsIn("return [s, t]"));
    // The function continues after the call.
    EXPECT_EQ("", lastReadsIn("puts(s, t)"));
}

}  // namespace
}  // namespace morvel::ruby::tests
