// Which locals are definitely assigned, and which globals definitely defined, at the start of each block.
#include "vm/engine/assignment.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "support/engine_facts.h"

namespace morvel::ruby::tests {
namespace {

using internal::DefiniteAssignment;
using internal::FunctionFacts;

class AssignmentIn {
public:
    AssignmentIn(const std::string& source, std::size_t function)
        : m_program(source),
          m_facts(m_program.facts(function)),
          m_assignment(m_facts.function, m_facts.flow, m_program.globals(), m_facts.globalSlots) {}

    DefiniteAssignment& at(std::size_t block) {
        m_assignment.enterBlock(block);
        return m_assignment;
    }
    [[nodiscard]] std::size_t blocks() const { return m_facts.flow.blocks.size(); }
    [[nodiscard]] std::size_t slotOf(const std::string& global) { return m_program.slotOf(global); }

private:
    TranslatedProgram m_program;
    FunctionFacts m_facts;
    DefiniteAssignment m_assignment;
};

TEST(DefiniteAssignment, HoldsWhereAllPathsAssign) {
    // Blocks: the test, the two branches, the code after them. Locals: a, both, one.
    AssignmentIn function("def f(a) if a then both = 1 one = 1 else both = 2 end return both end", 1);
    ASSERT_EQ(4U, function.blocks());
    for (std::size_t block = 0; block < 4; ++block) {
        EXPECT_TRUE(function.at(block).isLocalAssigned(0)) << block;
        EXPECT_EQ(block == 3, function.at(block).isLocalAssigned(1)) << block;
        EXPECT_FALSE(function.at(block).isLocalAssigned(2)) << block;
    }
}

TEST(DefiniteAssignment, IsNotedWithinABlockOnly) {
    AssignmentIn function("def f(a) if a then b = 1 end return a end", 1);
    DefiniteAssignment& assignment = function.at(1);
    EXPECT_FALSE(assignment.isLocalAssigned(1));
    assignment.noteLocal(1);
    EXPECT_TRUE(assignment.isLocalAssigned(1));
    EXPECT_FALSE(function.at(2).isLocalAssigned(1));
}

TEST(DefiniteAssignment, IsNoneInALoopThatMayNotRun) {
    AssignmentIn function("def f(a) while a do b = 1 end return b end", 1);
    ASSERT_EQ(3U, function.blocks());
    EXPECT_FALSE(function.at(0).isLocalAssigned(1));
    EXPECT_FALSE(function.at(1).isLocalAssigned(1));
    EXPECT_FALSE(function.at(2).isLocalAssigned(1));
}

TEST(DefiniteAssignment, AReadDefinesAGlobal) {
    AssignmentIn main("x if x then y = z end x", 0);
    ASSERT_EQ(3U, main.blocks());
    const std::size_t x = main.slotOf("x");
    const std::size_t y = main.slotOf("y");
    const std::size_t z = main.slotOf("z");
    EXPECT_FALSE(main.at(0).isGlobalDefined(x));
    EXPECT_TRUE(main.at(1).isGlobalDefined(x));
    EXPECT_FALSE(main.at(1).isGlobalDefined(z));
    EXPECT_TRUE(main.at(2).isGlobalDefined(x));
    EXPECT_FALSE(main.at(2).isGlobalDefined(y));
    EXPECT_FALSE(main.at(2).isGlobalDefined(z));
    main.at(2).noteGlobal(y);
    // Entering the block again discards the note.
    EXPECT_FALSE(main.at(2).isGlobalDefined(y));
}

TEST(DefiniteAssignment, OfALargeFunctionIsWhatHoldsOnEntry) {
    // Too many locals and blocks for the analysis to be worth its cost.
    std::string body = "first = 1 ";
    for (int i = 0; i < 6000; ++i) {
        const std::string name = "v" + std::to_string(i);
        body += "if a then " + name + " = 1 else " + name + " = 2 end ";
    }
    AssignmentIn function("def f(a) " + body + "return a end", 1);
    DefiniteAssignment& assignment = function.at(0);
    EXPECT_TRUE(assignment.isLocalAssigned(0));
    EXPECT_FALSE(assignment.isLocalAssigned(1));
    assignment.noteLocal(1);
    assignment.noteLocal(2);
    EXPECT_TRUE(assignment.isLocalAssigned(1));
    for (const std::size_t block : {std::size_t{1}, function.blocks() - 1}) {
        EXPECT_TRUE(function.at(block).isLocalAssigned(0));
        EXPECT_FALSE(function.at(block).isLocalAssigned(1));
        EXPECT_FALSE(function.at(block).isLocalAssigned(2));
    }
}

TEST(DefiniteAssignment, OfAMiddlingFunctionIsSolved) {
    std::string body = "first = 1 ";
    for (int i = 0; i < 500; ++i) {
        body += "if a then v" + std::to_string(i) + " = 1 end ";
    }
    AssignmentIn function("def f(a) " + body + "return a end", 1);
    const DefiniteAssignment& assignment = function.at(function.blocks() - 1);
    EXPECT_TRUE(assignment.isLocalAssigned(1));
    EXPECT_FALSE(assignment.isLocalAssigned(2));
}

TEST(DefiniteAssignment, ArgumentsAreInTheFirstLocals) {
    // Two of the three parameters share a local, so the third argument is in that of c.
    AssignmentIn function("def f(a, a, b) c = 1 d = 2 return d end", 1);
    for (const std::int32_t local : {0, 1, 2}) {
        EXPECT_TRUE(function.at(0).isLocalAssigned(local)) << local;
    }
    EXPECT_FALSE(function.at(0).isLocalAssigned(3));
}

}  // namespace
}  // namespace morvel::ruby::tests
